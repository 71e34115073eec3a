#include "platform/core/DRLocalizedStrings.h"
#include "platform/ui/DRDarkPalette.h"
#include "tests/support/DRTestTable.h"
#include "tests/wizard/widgets/DRWidgetFixture.h"
#include "wizard/widgets/DRMigrateMemoryWarningBar.h"
#include "wizard/widgets/DRMigrateMemoryWarningShapes.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

const QString kTable = QColor::fromRgb(DRDarkPalette::kTable).name();

/// A bar of 200 by 20 points: of 1000 bytes 250 are in use, 200 music, 100 videos, 50 photos, 400 free.
struct Bar : DRWidgetFixture {
    Bar()
    {
        QFile file(folder.filePath(u"texts.json"_s));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(R"({"memory_bar_music": "Music", "memory_bar_videos": "Videos", "memory_bar_images": "Photos",
                           "memory_bar_other": "In use", "wizard_storage_free": "Free"})");
        }
        file.close();
        strings = DRLocalizedStrings::fromFile(file.fileName()).value_or(DRLocalizedStrings());
        bar.emplace(strings);
        bar->resize(200, 20);
        bar->updateParts(DRMigrateMemoryWarningBar::figuresOf(storage));
    }

    QTemporaryDir folder;
    DRLocalizedStrings strings;
    DRMGStorageFigures storage{.music = 200, .images = 50, .videos = 100, .other = 250, .free = 400, .total = 1000};
    std::optional<DRMigrateMemoryWarningBar> bar;
};

} // namespace

class TestMemoryWarningBar : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void placesFollowTheBounds()
    {
        const auto shapes = DRMigrateMemoryWarningShapes::forBounds({0, 0, 200, 20});
        QCOMPARE(shapes.outline, QRectF(0, 0, 200, 20));
        QCOMPARE(shapes.hilite, QRectF(1, 1, 198, 16));
        QCOMPARE(shapes.shadow, QRectF(1, 3, 198, 16));
        QCOMPARE(shapes.body, QRectF(2, 2, 196, 16));
        QCOMPARE(shapes.cornerRadius, 8.0);
        const std::vector<QRectF> expected{{0, 0, 50, 20}, {50, 0, 40, 20}, {90, 0, 0, 20}, {90, 0, 10, 20}};
        QCOMPARE(memoryWarningRects({250, 200, 0, 50}, 1000, {0, 0, 200, 20}), expected);
    }

    /// Brighter than half: the hilite is capped. Grey has no hue.
    void colorsAreDerived()
    {
        for (const auto& [color, shadow, hilite] : {std::array{u"#80402010"_s, u"#ff100804"_s, u"#ff804020"_s},
                                                    std::array{u"#ffc86432"_s, u"#ff32190d"_s, u"#ffff8040"_s},
                                                    std::array{u"#ff404040"_s, u"#ff101010"_s, u"#ff808080"_s}}) {
            auto part = DRMigrateMemoryWarningPart::partWithKey(u"any"_s);
            part.color = QColor(color);
            part.makeShadowAndHiliteColor();
            QCOMPARE(part.shadow.name(QColor::HexArgb), shadow);
            QCOMPARE(part.hilite.name(QColor::HexArgb), hilite);
        }
    }

    void pixelsAreColored_data()
    {
        const DRTestTable<int, QStringList, QString> row("x", "colors", "tooltip"); // colors: hilite, body, shadow
        row("other", 30, {u"#e3c6fb"_s, u"#c68df1"_s, u"#a25ac9"_s}, u"In use"_s);
        row("music", 70, {u"#dbedaa"_s, u"#abd75e"_s, u"#81b946"_s}, u"Music"_s);
        row("videos", 100, {u"#eeb5cc"_s, u"#e0709d"_s, u"#c54377"_s}, u"Videos"_s);
        row("photos", 115, {u"#c2e4ff"_s, u"#86c3f9"_s, u"#528bd1"_s}, u"Photos"_s);
        row("free", 125, {kTable, kTable, kTable}, {});
    }

    void pixelsAreColored()
    {
        QFETCH(int, x);
        QFETCH(QStringList, colors);
        Bar bar;
        for (const int density : {1, 2}) {
            const QImage image = Bar::pictureOf(*bar.bar, density);
            const auto at = [&](int y) { return image.pixelColor(x * density, y * density).name(); };
            QCOMPARE((QStringList{at(1), at(10), at(18)}), colors);
            QCOMPARE((QStringList{at(0), at(19)}), (QStringList{kTable, kTable}));
            QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        }
        QTEST(bar.bar->tooltipAt(QPointF(x, 10)), "tooltip");
        bar.bar->setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(Bar::pictureOf(*bar.bar, 1).pixelColor(199 - x, 10).name(), colors.at(1));
        QTEST(bar.bar->tooltipAt(QPointF(200 - x, 10)), "tooltip");
    }

    void emptyAndOverfullBarsHaveNoParts()
    {
        Bar bar;
        QCOMPARE(bar.bar->accessibleDescription().replace(QChar::Nbsp, QChar::Space),
                 u"In use: 250 bytes, Music: 200 bytes, Videos: 100 bytes, Photos: 50 bytes, Free: 400 bytes"_s);
        bar.storage.free = 0;
        bar.bar->updateParts(DRMigrateMemoryWarningBar::figuresOf(bar.storage));
        QImage image = Bar::pictureOf(*bar.bar, 1);
        for (const int x : {30, 125, 190}) {
            QCOMPARE(image.pixelColor(x, 1).name(), u"#efb5b4"_s);
            QCOMPARE(image.pixelColor(x, 10).name(), u"#e2706e"_s);
            QCOMPARE(image.pixelColor(x, 18).name(), u"#c74240"_s);
            QCOMPARE(bar.bar->tooltipAt(QPointF(x, 10)), QString());
        }
        QVERIFY(bar.bar->accessibleDescription().endsWith(u"Free: 0\u00a0bytes"_s));
        bar.bar->updateParts({{DRMigrateMemoryWarningKeys::kMusic, 1}});
        QCOMPARE(bar.bar->parts()[DRMigrateMemoryWarningKeys::kMusic].value, quint64{1});
        QCOMPARE(bar.bar->parts()[DRMigrateMemoryWarningKeys::kOther].value, quint64{250});
        image = Bar::pictureOf(*bar.bar, 1);
        QCOMPARE(image.pixelColor(30, 10).name(), kTable);
        QCOMPARE(bar.bar->accessibleDescription().replace(QChar::Nbsp, QChar::Space), QString());
    }

    void usedSpaceBeyondTheTotalIsClipped()
    {
        Bar bar;
        bar.bar->updateParts(DRMigrateMemoryWarningBar::figuresOf(storageFigures(1000, 1500, {.music = 100})));
        QCOMPARE(bar.bar->free(), quint64{1400});
        const QImage image = Bar::pictureOf(*bar.bar, 2);
        QCOMPARE(image.pixelColor(300, 20).name(), u"#c68df1"_s);
    }
};

QTEST_MAIN(TestMemoryWarningBar)

#include "TestMemoryWarningBar.moc"
