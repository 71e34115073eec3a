#include "app/gui/DRArtwork.h"
#include "platform/device/DRDCNotifications.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"
#include "platform/ui/DRSpinner.h"
#include "tests/support/DRTestTable.h"
#include "tests/wizard/TransferFixture.h"
#include "wizard/pages/DRMGPages.h"
#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"
#include "wizard/widgets/DRMGSelectDataEntry.h"
#include "wizard/widgets/DRMigrateTooltipWindowController.h"
#include "wizard/widgets/DRMigrateTransmisionAnimation.h"

#include <QAccessible>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

/// The window's English texts, as JSON.
QString englishTexts()
{
    QJsonObject texts;
    const auto english = DRLocalizedStrings::fromFolder(u":/migrate/texts"_s, {u"en"_s});
    for (const QString& identifier : english->identifiers()) {
        texts.insert(identifier, english->text(identifier));
    }
    return QString::fromUtf8(QJsonDocument(texts).toJson());
}

} // namespace

class TestPages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void buttonsOnlyForWhatTheProgramDoes()
    {
        WizardFixture f(englishTexts());
        f.sequence->start();
        bool isAsked = false;
        const std::unique_ptr<QWidget> page(
            DRMGPages::pageFor(*f.sequence->currentStep(), {.context = f.sequence->context(),
                                                            .chooseBackupsFolder = [&isAsked] { isAsked = true; },
                                                            .choosePhone = {}}));
        QCOMPARE(page->findChild<QPushButton*>(u"wizard_choose_phone"_s), nullptr);
        page->findChild<QPushButton*>(u"wizard_choose_backups_folder"_s)->click();
        QVERIFY(isAsked);
    }

    void linksReachTheStep()
    {
        WizardFixture f(englishTexts());
        f.sequence->start();
        const std::unique_ptr<QWidget> page(
            DRMGPages::pageFor(*f.sequence->currentStep(),
                               {.context = f.sequence->context(), .chooseBackupsFolder = {}, .choosePhone = {}}));
        page->show();
        auto* const tooltip = page->findChild<DRMigrateTooltipWindowController*>();
        auto* const view = page->findChildren<DRHtmlTextView*>().at(1);
        Q_EMIT view->shouldDisplayCustomTooltip(u"1"_s, QPoint(50, 50));
        QVERIFY(tooltip->isVisible());
        QCOMPARE(tooltip->x(), 70); // beside the pointer
        QVERIFY(tooltip->textView().toPlainText().contains(f.strings.text(u"IDD_MOREINFO"_s)));
        Q_EMIT view->shouldHideCustomTooltip(u"1"_s);
        QVERIFY(!tooltip->isVisible());
        Q_EMIT view->shouldDisplayCustomTooltip(u"1"_s, QPoint(50, 50));
        page->hide();
        QVERIFY2(!tooltip->isVisible(), "leaving the page closes it");
    }

    void tickedMediaShowInTheFigures()
    {
        WizardFixture f(englishTexts());
        f.resources.registerBundle(DRArtwork::folder());
        f.script.iPhoneEntries[DRMigrateKeys::kImages] = {f.file(DRMigrateFileKinds::kPhotos, 2048)};
        f.choose(kEverything);
        f.connectPhone();
        f.sequence->gotoStepForKey(DRMGStepKeys::kMemoryWarning);
        const std::unique_ptr<QWidget> page(
            DRMGPages::pageFor(*f.sequence->currentStep(),
                               {.context = f.sequence->context(), .chooseBackupsFolder = {}, .choosePhone = {}}));
        page->show();
        const auto hasFigure = [&page](const QString& text) {
            const QList<QLabel*> labels = page->findChildren<QLabel*>();
            return std::ranges::any_of(labels, [&text](const QLabel* label) { return label->text() == text; });
        };
        QVERIFY(hasFigure(u"2.00\u00a0KiB"_s));
        QTest::mouseClick(page->findChild<DRMGSelectDataEntry*>(DRMigrateKeys::kImages), Qt::LeftButton);
        QVERIFY(!hasFigure(u"2.00\u00a0KiB"_s));
    }

    void pictureUntilAPhoneIsThere()
    {
        WizardFixture f(englishTexts());
        f.resources.registerBundle(DRArtwork::folder());
        f.device->stateFlags = 0;
        f.sequence->gotoStepForKey(DRMGStepKeys::kConnectPhone);
        const std::unique_ptr<QWidget> page(
            DRMGPages::pageFor(*f.sequence->currentStep(),
                               {.context = f.sequence->context(), .chooseBackupsFolder = {}, .choosePhone = {}}));
        page->show();
        auto* const spinner = page->findChild<DRSpinner*>();
        auto* const picture = page->findChild<DRIconLabel*>();
        QVERIFY(picture->isVisible() && !spinner->isVisible());
        f.connectPhone();
        f.center.post({.name = DRDCNotifications::kActiveDeviceWillFinishInit, .object = {}, .userInfo = {}});
        QVERIFY(!picture->isVisible() && spinner->isVisible());
    }

    void transferIsFollowed()
    {
        TransferFixture f;
        const std::unique_ptr<QWidget> page(DRMGPages::pageFor(
            f.step(), {.context = f.sequence->context(), .chooseBackupsFolder = {}, .choosePhone = {}}));
        page->show();
        f.begin(kEverything);
        f.advanceTo(DRMGSequenceStepTransfer::Phase::Merge);
        f.timers.advance(std::chrono::milliseconds(100));
        QVERIFY(page->findChild<DRMigrateTransmisionAnimation*>()->offset() > 0);
        auto* const bar = page->findChild<QProgressBar*>();
        QCOMPARE(bar->value(), static_cast<int>(std::lround(f.step().progressFraction() * bar->maximum())));
        QVERIFY(bar->value() > 0);
        QVERIFY(page->findChild<DRHtmlTextView*>(QString(), Qt::FindDirectChildrenOnly)
                    ->toPlainText()
                    .startsWith(u"about "_s));
    }
};

QTEST_MAIN(TestPages)

#include "TestPages.moc"
