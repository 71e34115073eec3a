#include "app/gui/DRArtwork.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "tests/support/DRTestTable.h"
#include "wizard/steps/DRMGSelectionBox.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <numeric>

using namespace Qt::StringLiterals;

class TestArtwork : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyPictureIsThere_data()
    {
        const DRTestTable<QString> row("name");
        QStringList names =
            u"migrate_iphone_list migrate_iphone_list_encrypted migrate_iphone_list_invalid migrate_connect_phone "
            "migrate_mark_missing migrate_mark_unreadable migrate_transmission_animation tarvex_checkmark tarvex_alert "
            "checkbox-active checkbox-mixed checkbox-passive"_s.split(u' ');
        names.append(DRArtwork::applicationIconName());
        for (const DRMGSelectionCategory& category : DRMGSelection::categories()) {
            names.append(category.iconName);
        }
        for (const QString& name : std::as_const(names)) {
            row(qPrintable(name), name);
        }
    }

    /// Also that a twentieth of its pixels or more is drawn, and nothing at its very corners.
    void everyPictureIsThere()
    {
        QFETCH(QString, name);
        DRSequenceResourceManager resources;
        resources.registerBundle(DRArtwork::folder());
        QSvgRenderer picture(resources.pathForResource(name));
        QVERIFY(picture.isValid());
        QVERIFY(!name.endsWith(u"animation"_s) || picture.defaultSize().width() % 110 == 0);
        QImage image(picture.defaultSize(), QImage::Format_Alpha8);
        image.fill(0);
        QPainter painter(&image);
        picture.render(&painter);
        painter.end();
        qint64 drawn = 0;
        for (int y = 0; y < image.height(); ++y) {
            drawn += std::accumulate(image.constScanLine(y), image.constScanLine(y) + image.width(), qint64{0});
        }
        QVERIFY2(drawn / 255 >= image.width() * image.height() / 20, qPrintable(QString::number(drawn / 255)));
        QCOMPARE(image.constScanLine(0)[0], uchar{0});
    }
};

QTEST_GUILESS_MAIN(TestArtwork)

#include "TestArtwork.moc"
