#include "app/gui/DRArtwork.h"
#include "platform/ui/DRDarkStyle.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRPageArea.h"
#include "platform/ui/DRSequenceWindow.h"
#include "tests/support/DRScreenshot.h"
#include "tests/support/DRTestTable.h"
#include "tests/wizard/RestoreFixture.h"
#include "tests/wizard/TransferFixture.h"
#include "wizard/pages/DRMGPages.h"

#include <QAbstractButton>
#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QScrollBar>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr double kLongerBy = 0.4;
constexpr QSize kSmallScreen{1024, 768};

/// The text with 40 % more of it, as a translation may have.
QString longer(const QString& text)
{
    static const QString kMore = u" and a few words more that say the very same thing in another language"_s;
    const auto count = static_cast<qsizetype>(static_cast<double>(text.size()) * kLongerBy);
    return text + kMore.repeated(count / kMore.size() + 1).left(count);
}

/// The window's texts as JSON, each changed.
QString textsOf(const QString& language, QString (*changed)(const QString&))
{
    QJsonObject texts;
    const auto table = DRLocalizedStrings::fromFolder(u":/migrate/texts"_s, {language});
    for (const QString& identifier : table->identifiers()) {
        texts.insert(identifier, changed(table->text(identifier)));
    }
    return QString::fromUtf8(QJsonDocument(texts).toJson());
}

QString roomOf(const QWidget& widget, const QSize& needed)
{
    return u"%1 \"%2\": %3 x %4 instead of %5 x %6"_s
        .arg(QString::fromLatin1(widget.metaObject()->className()), widget.objectName())
        .arg(widget.width())
        .arg(widget.height())
        .arg(needed.width())
        .arg(needed.height());
}

/// What the widget needs to show all of its text at the width that it has; nothing is known of other widgets.
QSize neededBy(const QWidget& widget)
{
    if (const auto* const view = qobject_cast<const DRHtmlTextView*>(&widget)) {
        return {0, view->heightForWidth(view->width())};
    }
    const auto* const label = qobject_cast<const QLabel*>(&widget);
    if (label != nullptr && label->wordWrap()) {
        return {0, label->heightForWidth(label->width())};
    }
    if (label != nullptr || qobject_cast<const QAbstractButton*>(&widget) != nullptr) {
        const QSize least = widget.minimumSizeHint();
        return widget.hasHeightForWidth() ? QSize(least.width(), widget.heightForWidth(widget.width())) : least;
    }
    return {};
}

/// The visible texts of the window that are cut off.
QStringList clippedIn(const QWidget& window)
{
    QStringList clipped;
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
        const QSize needed = widget->isVisible() ? neededBy(*widget) : QSize();
        if (widget->width() < needed.width() || widget->height() < needed.height()) {
            clipped.append(roomOf(*widget, needed));
        }
    }
    return clipped;
}

} // namespace

/// Every page in a window of usual size, however long its texts, large its letters, and whichever way its lines run.
class TestPageLooks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DRDarkStyle::applyToApplication(); }

    void showAllTheirTexts_data()
    {
        const DRTestTable<QString, bool, double, Qt::LayoutDirection> row("language", "isLonger", "pointSize",
                                                                          "direction");
        row("english", u"en"_s, false, 10., Qt::LeftToRight);
        row("german", u"de"_s, false, 10., Qt::LeftToRight);
        row("longer", u"en"_s, true, 10., Qt::LeftToRight);
        row("14pt", u"en"_s, false, 14., Qt::LeftToRight);
        row("right-to-left", u"en"_s, false, 10., Qt::RightToLeft);
    }

    void showAllTheirTexts()
    {
        QFETCH(QString, language);
        QFETCH(bool, isLonger);
        QFETCH(double, pointSize);
        QFETCH(Qt::LayoutDirection, direction);
        QFont font = QApplication::font();
        const QFont usualFont = font;
        font.setPointSizeF(pointSize);
        QApplication::setFont(font);
        QGuiApplication::setLayoutDirection(direction);
        const auto changed = isLonger ? longer : +[](const QString& text) { return text; };
        showPages(textsOf(language, changed));
        showRestorePages(textsOf(language, changed));
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QApplication::setFont(usualFont);
    }

private:
    static void showPages(const QString& texts)
    {
        WizardFixture f(texts);
        f.resources.registerBundle(DRArtwork::folder());
        f.addBackup(u"One"_s);
        f.addBackup(u"Two"_s);
        f.choose(kEverything);
        const DRMGPageTools tools{.context = f.sequence->context(), .chooseBackupsFolder = [] {}, .choosePhone = [] {}};
        DRSequenceWindow window(*f.sequence,
                                {.makePage = [&](DRSequenceStep& step) { return DRMGPages::pageFor(step, tools); },
                                 .text = [&f](const QString& identifier) { return f.strings.text(identifier); },
                                 .mayLeave = {},
                                 .settingsPath = {}});
        f.sequence->start();
        window.show();
        window.resize(window.sizeHint().boundedTo(kSmallScreen));
        using namespace DRMGStepKeys;
        for (const QString& key : {kWelcome, kSelectBackup, kSelectData, kConnectPhone, kPhoneIncompatible}) {
            f.sequence->gotoStepForKey(key);
            examine(window, key);
        }
        f.connectPhone();
        f.sequence->gotoStepForKey(kMemoryWarning);
        examine(window, kMemoryWarning);
        for (const auto& [name, entry] :
             {std::pair(u"too-old"_s, f.makeEntry(u"3.1"_s)), std::pair(u"encrypted"_s, f.makeEntry(u"6.1"_s, true))}) {
            f.sequence->gotoNextIPhoneStepWithDevice(f.device, {entry});
            QCOMPARE(f.sequence->currentStep()->key(), kNewBackupNeeded);
            examine(window, name);
        }
    }

    static void showRestorePages(const QString& texts)
    {
        RestoreFixture f(texts);
        f.resources.registerBundle(DRArtwork::folder());
        f.addPhoneBackup(1, u"A phone of another make"_s);
        QVERIFY(QFile::remove(DRPhoneBackup::pathOfPacket(f.addPhoneBackup(2), RestoreFixture::kNotes)));
        QVERIFY(QFile::remove(f.addPhoneBackup(3) + u"/BackupData.plist"_s));
        f.start();
        const DRMGPageTools tools{.context = f.restore->context(), .chooseBackupsFolder = {}, .choosePhone = [] {}};
        DRSequenceWindow window(*f.restore,
                                {.makePage = [&](DRSequenceStep& step) { return DRMGPages::pageFor(step, tools); },
                                 .text = [&f](const QString& identifier) { return f.strings.text(identifier); },
                                 .mayLeave = {},
                                 .settingsPath = {}});
        window.show();
        window.resize(window.sizeHint().boundedTo(kSmallScreen));
        examine(window, u"restore-no-phone"_s);
        f.connectPhone();
        f.timers.advance(std::chrono::milliseconds(1000));
        f.restore->choose().selectRow(1);
        examine(window, u"restore-other-phone"_s);
        f.restore->choose().selectRow(0);
        examine(window, u"restore-in-part"_s);
        f.restore->pressNext();
        examine(window, u"restore-check"_s);
        f.queue.runAll();
        QVERIFY(f.answer(RestoreFixture::packet("new")));
        examine(window, u"restore-writing"_s);
        QVERIFY(f.answer({}));
        QVERIFY(f.answer(RestoreFixture::packet("odd")));
        examine(window, u"restore-failed"_s);
    }

    static void examine(QWidget& window, const QString& name)
    {
        QCoreApplication::processEvents();
        QVERIFY(saveScreenshot(window, QString::fromLatin1(QTest::currentDataTag()) + u'-' + name));
        QCOMPARE(clippedIn(window), QStringList());
        const auto* const area = window.findChild<DRPageArea*>();
        QVERIFY2(area->horizontalScrollBar()->maximum() == 0, qPrintable(name));
        QVERIFY2(area->verticalScrollBar()->maximum() == 0, qPrintable(name));
    }
};

QTEST_MAIN(TestPageLooks)
#include "TestPageLooks.moc"
