#include "app/gui/DRPhoneRestoreWindow.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/iphone_backup/DRMigrateBackupDiscovery.h"
#include "platform/device/DRDCFilesystem.h"
#include "platform/ui/DRDarkStyle.h"
#include "tests/app/gui/DRWizardRun.h"
#include "tests/support/DRTestTable.h"
#include "wizard/DRMGKindTexts.h"
#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"
#include "wizard/steps/DRMGSequenceStepSelectData.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTableWidget>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using ErrorState = DRMGSequenceStepComplete::ErrorState;
using Phase = DRMGSequenceStepTransfer::Phase;

constexpr quint64 kRoomForSomeMedia = quint64{900} * 1024; ///< bytes: the sample's media without its photos
constexpr int kLongest = 60'000; ///< milliseconds that a transfer of the sample may take on a busy machine

const QString kNext = u"next"_s;
const QString kCancel = u"cancel"_s;

bool showsText(const QWidget& window, const QString& text)
{
    const QList<QLabel*> labels = window.findChildren<QLabel*>();
    return std::ranges::any_of(labels,
                               [&text](const QLabel* label) { return label->isVisible() && label->text() == text; });
}

} // namespace

/// The real window, used as a person uses it.
class TestWizardWindow : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void noteUrl(const QUrl& url) { m_opened.append(url); }

private Q_SLOTS:
    void initTestCase()
    {
        DRDarkStyle::applyToApplication();
        QDesktopServices::setUrlHandler(u"https"_s, this, "noteUrl");
    }

    void init() { m_opened.clear(); }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(u"https"_s); }

    void wholeRoadByKeyboard()
    {
        const DRWizardPlaces places;
        const DRWizardRun run(places);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kWelcome);
        QVERIFY2(run.find(u"wizard_show_phone_backups"_s) == nullptr, "there are none yet");
        QVERIFY(run.takeScreenshot(u"welcome"_s));

        run.press(Qt::Key_Return);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectData);
        auto* const notes = run.find(u"notes"_s);
        QVERIFY(notes != nullptr);
        for (int tabs = 0; tabs < 20 && !notes->hasFocus(); ++tabs) {
            run.press(Qt::Key_Tab);
        }
        QVERIFY(notes->hasFocus());
        run.press(Qt::Key_Space);
        QTRY_VERIFY_WITH_TIMEOUT(run.find(u"contacts"_s)->text().contains(QRegularExpression(u"[1-9]"_s)), kLongest);
        QVERIFY(run.takeScreenshot(u"select-data"_s));

        auto& transfer = run.step<DRMGSequenceStepTransfer>(DRMGStepKeys::kTransfer);
        connect(&transfer, &DRMGSequenceStepTransfer::progressPhaseChanged, run.window.get(), [&] {
            if (transfer.progressPhase() == Phase::TransferMedia) {
                QVERIFY(saveScreenshot(*run.window, u"transfer"_s));
            }
        });
        run.press(Qt::Key_N, Qt::AltModifier);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGStepKeys::kComplete, kLongest);
        QCOMPARE(run.errorState(), ErrorState::Success);
        QVERIFY(run.takeScreenshot(u"complete"_s));
        QVERIFY(showsText(*run.window, u"Contacts and calls"_s));
        QVERIFY2(!showsText(*run.window, u"Notes"_s), "the box of the notes was cleared");

        run.press(Qt::Key_Return);
        QVERIFY(!run.window->isVisible());
    }

    /// The second time, with the same backup and phone, the window asks first.
    void wholeRoadByMouseAndOnceMore()
    {
        const DRWizardPlaces places;
        {
            const DRWizardRun first(places);
            goToSelectData(first);
            first.click(kNext);
            QTRY_COMPARE_WITH_TIMEOUT(first.pageKey(), DRMGStepKeys::kComplete, kLongest);
            QCOMPARE(first.errorState(), ErrorState::Success);
            first.step<DRMGSequenceStepComplete>(DRMGStepKeys::kComplete).linkClicked(u"backup"_s);
            QVERIFY(!first.window->isVisible());
            QVERIFY(first.window->restoreWindow()->isVisible());
        }
        const DRWizardRun second(places);
        goToSelectData(second);
        second.click(kNext);
        QTRY_VERIFY_WITH_TIMEOUT(second.window->findChild<QMessageBox*>() != nullptr, kLongest);
        auto* const question = second.window->findChild<QMessageBox*>();
        QVERIFY(saveScreenshot(*question, u"repeat-question"_s));
        QCOMPARE(second.pageKey(), DRMGStepKeys::kSelectData);
        QTest::keyClick(question, Qt::Key_Escape);
        QTRY_VERIFY(second.window->findChild<QMessageBox*>() == nullptr);
        QCOMPARE(second.pageKey(), DRMGStepKeys::kSelectData);

        second.click(kNext);
        QTRY_VERIFY_WITH_TIMEOUT(second.window->findChild<QMessageBox*>() != nullptr, kLongest);
        QTest::mouseClick(second.window->findChild<QMessageBox*>()->buttons().front(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(second.pageKey(), DRMGStepKeys::kComplete, kLongest);
        QCOMPARE(second.errorState(), ErrorState::Success);
    }

    void severalBackups()
    {
        const DRWizardPlaces places;
        places.addBackup(u"Another iPhone"_s, u"6.1"_s);
        places.addBackup(u"An old iPhone"_s, u"3.1"_s);
        const DRWizardRun run(places);
        run.press(Qt::Key_Return);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectBackup);
        auto* const table = run.window->findChild<QTableWidget*>();
        QVERIFY(table->hasFocus());
        QCOMPARE(table->rowCount(), 3);
        QVERIFY(!run.find(kNext)->isEnabled());
        run.press(Qt::Key_End);
        QCOMPARE(table->currentRow(), 2);

        for (int row = 0; row < table->rowCount(); ++row) {
            table->setCurrentCell(row, 0);
            if (table->item(row, 0)->text() == u"An old iPhone") {
                break;
            }
        }
        QVERIFY(run.find(kNext)->isEnabled());
        QVERIFY(run.takeScreenshot(u"select-backup"_s));
        run.click(kNext);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kNewBackupNeeded);
        QVERIFY(run.takeScreenshot(u"new-backup-needed-too-old"_s));

        run.press(Qt::Key_Escape);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectBackup);
        QVERIFY(table->selectedItems().isEmpty());
        run.press(Qt::Key_Escape);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kWelcome);
    }

    void nothingUsable_data()
    {
        const DRTestTable<QString> row("version"); // version: of the only backup; empty for no backup
        row("no-backup", {});
        row("too-old", u"3.0"_s);
    }

    /// Another folder with a backup leads on.
    void nothingUsable()
    {
        QFETCH(QString, version);
        DRWizardPlaces places;
        const QString usable = std::exchange(places.options.backupsFolder, places.path(u"elsewhere"_s));
        if (!version.isEmpty()) {
            places.addBackup(u"iPhone"_s, version);
        }
        const DRWizardRun run(places);
        run.click(kNext);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kNewBackupNeeded);
        QVERIFY(run.takeScreenshot(u"new-backup-needed-"_s + QString::fromLatin1(QTest::currentDataTag())));
        run.click(kNext);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kNewBackupNeeded);

        run.click(u"wizard_choose_backups_folder"_s);
        auto* const dialog = run.window->findChild<QFileDialog*>();
        QVERIFY(dialog != nullptr);
        Q_EMIT dialog->fileSelected(usable);
        dialog->close();
        QVERIFY(showsText(*run.window, u"Looked in: "_s + QDir::toNativeSeparators(usable)));
        run.click(kNext);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectData);
    }

    /// Lists leave encrypted backups out, so only a list from elsewhere leads here.
    void encrypted()
    {
        const DRWizardPlaces places;
        places.addBackup(u"Secret"_s, u"7.1"_s, true);
        const DRWizardRun run(places);
        auto list = DRMigrateUtils::iPhoneBackupEntriesAtPath(places.options.backupsFolder, run.startup.services());
        std::erase_if(list, [](const auto& entry) { return !entry->isEncrypted(); });
        QCOMPARE(list.size(), std::size_t{1});
        run.migration->gotoNextIPhoneStepWithDevice(nullptr, list);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kNewBackupNeeded);
        QVERIFY(run.takeScreenshot(u"new-backup-needed-encrypted"_s));
        run.click(kNext);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectData);
    }

    void otherLanguages_data()
    {
        const DRTestTable<QLocale, Qt::LayoutDirection> row("locale", "direction");
        row("german", QLocale(QLocale::German), Qt::LeftToRight);
        row("right-to-left", QLocale(QLocale::English), Qt::RightToLeft);
    }

    /// The boxes stand where lines begin, with the counts of the language.
    void otherLanguages()
    {
        QFETCH(const QLocale, locale);
        QFETCH(const Qt::LayoutDirection, direction);
        const QLocale usual;
        QLocale::setDefault(locale);
        QGuiApplication::setLayoutDirection(direction);
        const DRWizardPlaces places;
        const DRWizardRun run(places);
        goToSelectData(run);
        QTRY_VERIFY_WITH_TIMEOUT(run.find(u"notes"_s)->text().endsWith(u": 200"_s), kLongest);
        for (const DRMGSelectionCategory& category : DRMGSelection::categories()) {
            const QString name = DRMGKindTexts::name(run.migration->context().strings, category.key);
            QVERIFY2(run.find(category.key)->text().startsWith(name), qPrintable(category.key));
        }
        const bool isFirstColumnLeft = run.find(u"contacts"_s)->x() < run.find(u"music"_s)->x();
        QCOMPARE(isFirstColumnLeft, direction == Qt::LeftToRight);
        QVERIFY(run.takeScreenshot(u"select-data-"_s + QString::fromLatin1(QTest::currentDataTag())));
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QLocale::setDefault(usual);
    }

    void phoneTooOld()
    {
        const DRWizardPlaces places;
        places.describePhone(u"androidBaseVersion"_s, 1);
        const DRWizardRun run(places);
        run.click(kNext);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kPhoneIncompatible);
        QVERIFY(!run.find(kNext)->isEnabled());
        QVERIFY(run.takeScreenshot(u"phone-incompatible"_s));
        run.step<DRMGSequenceStep>(DRMGStepKeys::kPhoneIncompatible).linkClicked(u"ContactsSetup"_s);
        QVERIFY(!run.window->isVisible());
        QCOMPARE(m_opened, QList<QUrl>{QUrl(run.migration->context().supportAddress)});
    }

    void phoneChosenOnTheWay()
    {
        DRWizardPlaces places;
        const QString phone = std::exchange(places.options.phoneFolder, QString());
        const DRWizardRun run(places);
        goToSelectData(run);
        run.click(kNext);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGStepKeys::kConnectPhone, kLongest);
        QVERIFY(run.takeScreenshot(u"connect-phone"_s));

        run.window->usePhone(places.options.backupsFolder);
        auto* const box = run.window->findChild<QMessageBox*>();
        QVERIFY2(box != nullptr, "a folder without a phone");
        box->close();
        QCOMPARE(run.pageKey(), DRMGStepKeys::kConnectPhone);
        run.window->usePhone(phone);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGStepKeys::kComplete, kLongest);
        QCOMPARE(run.errorState(), ErrorState::Success);
    }

    void notEnoughSpace()
    {
        const DRWizardPlaces places;
        {
            const DRWizardRun roomy(places);
            auto& storage = roomy.startup.services().deviceController.activeDevice()->preferredFilesystem();
            const quint64 used = storage.memoryUsableCapacity() - storage.memoryFreeBytes();
            places.describePhone(u"memoryUsableCapacity"_s, static_cast<qint64>(used + kRoomForSomeMedia));
        }
        const DRWizardRun run(places);
        goToSelectData(run);
        run.click(kNext);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGStepKeys::kMemoryWarning, kLongest);
        QVERIFY(!run.find(kNext)->isEnabled());
        QVERIFY(run.find(DRMigrateKeys::kImages)->text().contains(u"\u00a0KiB"));
        QVERIFY(run.takeScreenshot(u"memory-warning-full"_s));
        run.click(DRMigrateKeys::kImages);
        QVERIFY(run.find(kNext)->isEnabled());
        QVERIFY(run.takeScreenshot(u"memory-warning-fits"_s));
        run.click(DRMigrateKeys::kVideos);
        run.click(DRMigrateKeys::kMusic);
        run.click(kNext); // what has no box here is too much
        QCOMPARE(run.pageKey(), DRMGStepKeys::kMemoryWarning);
        QVERIFY(run.takeScreenshot(u"memory-warning-stays"_s));
        run.click(kCancel);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectData);
        QVERIFY(!run.find(DRMigrateKeys::kMusic)->isChecked());
    }

    void failures_data()
    {
        // broken: a path of the phone that becomes an unreadable file
        const DRTestTable<QString, ErrorState> row("broken", "errorState");
        row("before the phone is written", u"packets"_s, ErrorState::BackupFailed);
        row("while files are copied", u"storage"_s, ErrorState::RestoreFailed);
    }

    void failures()
    {
        QFETCH(QString, broken);
        QFETCH(ErrorState, errorState);
        const DRWizardPlaces places;
        const QString path = QDir(places.options.phoneFolder).filePath(broken);
        if (broken == u"storage") {
            QVERIFY(QDir(path).removeRecursively());
            places.write(path, "not a folder");
        } else {
            for (const QString& packet : QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
                places.write(path + u'/' + packet + u"/fullbackupdata"_s, "not a packet");
            }
        }
        const DRWizardRun run(places);
        goToSelectData(run);
        run.click(kNext);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGStepKeys::kComplete, kLongest);
        QCOMPARE(run.errorState(), errorState);
        QVERIFY(!run.find(kCancel));
        QVERIFY(run.takeScreenshot(u"complete-failed-"_s + QString::number(static_cast<int>(errorState))));
        run.step<DRMGSequenceStepComplete>(DRMGStepKeys::kComplete).linkClicked(u"vorn"_s);
        QCOMPARE(m_opened, QList<QUrl>{QUrl(run.migration->context().supportAddress)});
    }

private:
    static void goToSelectData(const DRWizardRun& run)
    {
        run.click(kNext);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectData);
    }

    QList<QUrl> m_opened;
};

QTEST_MAIN(TestWizardWindow)

#include "TestWizardWindow.moc"
