#include "platform/device/DRDCFilesystem.h"
#include "platform/ui/DRDarkStyle.h"
#include "platform/ui/DRHtmlTextView.h"
#include "tests/app/gui/DRAccessibilityFaults.h"
#include "tests/app/gui/DRAccessibleTree.h"
#include "tests/app/gui/DRRestoreWindowRun.h"
#include "tests/support/DRTestTable.h"
#include "wizard/restore/DRMGRestoreKeys.h"
#include "wizard/widgets/DRMigrateTooltipWindowController.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QTableWidget>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRMGSequenceStepTransfer::Phase;

constexpr int kLongest = 60'000; ///< milliseconds that a transfer of the sample may take on a busy machine
constexpr int kMostKeys = 60;    ///< more places for the focus, and more lines, than any page has

void goOn(const DRWizardRun& run)
{
    run.click(u"next"_s);
}

void goToSelectData(const DRWizardRun& run)
{
    goOn(run);
    QTRY_VERIFY_WITH_TIMEOUT(run.find(u"notes"_s) != nullptr && run.find(u"notes"_s)->text().contains(u"200"),
                             kLongest);
}

void waitForPage(const DRWizardRun& run, const QString& key)
{
    QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), key, kLongest);
}

/// A page, and how a person comes to it.
struct Page {
    const char* name;
    const QString& key;
    void (*prepare)(DRWizardPlaces& places);
    void (*drive)(const DRWizardRun& run);
    const QString& afterEscape; ///< the key of the page to which Escape leads; empty when the wizard ends
};

const QString kEnd;

void leaveAsItIs(DRWizardPlaces& /*places*/) {}

void addAnotherBackup(DRWizardPlaces& places)
{
    places.addBackup(u"Another iPhone"_s, u"6.1"_s);
}

void takeBackupsAway(DRWizardPlaces& places)
{
    places.options.backupsFolder = places.path(u"elsewhere"_s);
}

void takePhoneAway(DRWizardPlaces& places)
{
    places.options.phoneFolder.clear();
}

void agePhone(DRWizardPlaces& places)
{
    places.describePhone(u"androidBaseVersion"_s, 1);
}

void fillPhone(DRWizardPlaces& places)
{
    const DRWizardRun roomy(places);
    auto& storage = roomy.startup.services().deviceController.activeDevice()->preferredFilesystem();
    const quint64 used = storage.memoryUsableCapacity() - storage.memoryFreeBytes();
    places.describePhone(u"memoryUsableCapacity"_s, static_cast<qint64>(used + 4096));
}

void breakPackets(DRWizardPlaces& places)
{
    const QDir packets(places.options.phoneFolder + u"/packets"_s);
    for (const QString& packet : packets.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        DRWizardPlaces::write(packets.filePath(packet + u"/fullbackupdata"_s), "not a packet");
    }
}

void waitForTransfer(const DRWizardRun& run)
{
    goToSelectData(run);
    run.migration->gotoStepForKey(DRMGStepKeys::kTransfer);
}

void transfer(const DRWizardRun& run)
{
    goToSelectData(run);
    goOn(run);
    waitForPage(run, DRMGStepKeys::kComplete);
}

const std::vector<Page>& allPages()
{
    using namespace DRMGStepKeys;
    static const std::vector<Page> all{
        {"welcome", kWelcome, leaveAsItIs, [](const DRWizardRun&) {}, kEnd},
        {"new backup needed", kNewBackupNeeded, takeBackupsAway, goOn, kWelcome},
        {"select backup", kSelectBackup, addAnotherBackup, goOn, kWelcome},
        {"select data", kSelectData, leaveAsItIs, goToSelectData, kWelcome},
        {"phone incompatible", kPhoneIncompatible, agePhone, goOn, kEnd},
        {"connect phone", kConnectPhone, takePhoneAway,
         [](const DRWizardRun& run) {
             goToSelectData(run);
             goOn(run);
             waitForPage(run, kConnectPhone);
         },
         kEnd},
        {"memory warning", kMemoryWarning, fillPhone,
         [](const DRWizardRun& run) {
             goToSelectData(run);
             goOn(run);
             waitForPage(run, kMemoryWarning);
         },
         kSelectData},
        {"transfer without phone", kTransfer, takePhoneAway, waitForTransfer, kEnd},
        {"complete", kComplete, leaveAsItIs, transfer, kComplete},
        {"failed", kComplete, breakPackets, transfer, kComplete},
    };
    return all;
}

} // namespace

/// What a screen reader and the keyboard find in the window, on every page.
class TestWizardAccessibility : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        DRDarkStyle::applyToApplication();
        const QString folder = qEnvironmentVariable("MIGRATE_SCREENSHOTS");
        if (!folder.isEmpty()) {
            QVERIFY(QDir().mkpath(folder));
            m_notes = QDir(folder).filePath(u"accessibility.txt"_s);
            QFile::remove(m_notes);
        }
    }

    void cleanup() { QLocale::setDefault(m_usual); }

    void pages_data()
    {
        QTest::addColumn<std::size_t>("page");
        QTest::addColumn<QLocale>("locale");
        for (std::size_t page = 0; page < allPages().size(); ++page) {
            QTest::addRow("%s, English", allPages()[page].name) << page << QLocale(QLocale::English);
            QTest::addRow("%s, German", allPages()[page].name) << page << QLocale(QLocale::German);
        }
    }

    void pages()
    {
        QFETCH(const std::size_t, page);
        QFETCH(const QLocale, locale);
        QLocale::setDefault(locale);
        DRWizardPlaces places;
        allPages()[page].prepare(places);
        const DRWizardRun run(places);
        allPages()[page].drive(run);
        QCOMPARE(run.pageKey(), allPages()[page].key);
        QCoreApplication::processEvents();

        const DRAccessibleTree tree(*run.window);
        note(QString::fromLatin1(QTest::currentDataTag()), tree);
        const QStringList faults = accessibilityFaults(tree, run.seen());
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
        const auto headings = tree.ofRole(QAccessible::Heading);
        QVERIFY(!headings.empty());
        QCOMPARE(headings.front().name, run.migration->currentStep()->localizedTitle());
        QCOMPARE(tree.elements().front().name, headings.front().name);

        run.window->setFocus(); // Escape closes an open panel first
        run.press(Qt::Key_Escape);
        QCOMPARE(run.pageKey(), allPages()[page].afterEscape);
        QCOMPARE(run.window->isVisible(), !allPages()[page].afterEscape.isEmpty());
    }

    void restorePages_data()
    {
        const DRTestTable<QLocale> row("locale");
        row("English", QLocale(QLocale::English));
        row("German", QLocale(QLocale::German));
    }

    /// The window that puts the apps back: each page, from the closing page of a transfer on.
    void restorePages()
    {
        QFETCH(const QLocale, locale);
        QLocale::setDefault(locale);
        const DRWizardPlaces places;
        const DRWizardRun wizard(places);
        transfer(wizard);
        wizard.window->showPhoneBackups();
        const DRRestoreWindowRun run(*wizard.window->restoreWindow());
        examineRestorePage(run);
        QStringList faults;
        connect(&run.sequence().putBack(), &DRMGRestoreStepPutBack::workPhaseChanged, wizard.window->restoreWindow(),
                [&] {
                    if (run.sequence().putBack().phase() == DRMGRestoreStepPutBack::Phase::BackUp) {
                        faults = accessibilityFaults(DRAccessibleTree(run.widget()), run);
                    }
                });
        run.click(u"next"_s);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGRestoreKeys::kOutcome, kLongest);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
        examineRestorePage(run);
        run.press(Qt::Key_Escape); // there is nothing to cancel
        QVERIFY(run.widget().isVisible());
    }

    void tickBoxes()
    {
        const DRWizardPlaces places;
        const DRWizardRun run(places);
        goToSelectData(run);
        auto* const box = run.find(u"notes"_s);
        QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(box);
        QVERIFY(seen->role() == QAccessible::CheckBox && seen->state().checkable != 0);
        QVERIFY(seen->state().checked != 0);
        QAccessibleActionInterface* const actions = seen->actionInterface();
        QVERIFY(actions != nullptr);
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(seen->state().checked == 0);
        const auto selected = run.migration->parameters().value<QStringList>(DRMGSequence::kSelectedTypes);
        QVERIFY(selected.contains(u"contacts"_s) && !selected.contains(u"notes"_s));
    }

    void listOfBackups()
    {
        DRWizardPlaces places;
        addAnotherBackup(places);
        const DRWizardRun run(places);
        goOn(run);
        auto* const table = run.window->findChild<QTableWidget*>();
        QAccessibleTableInterface* const seen = QAccessible::queryAccessibleInterface(table)->tableInterface();
        QVERIFY(seen != nullptr);
        QCOMPARE(seen->rowCount(), 2);
        for (int column = 0; column < table->columnCount(); ++column) {
            QCOMPARE(seen->columnDescription(column), table->horizontalHeaderItem(column)->text());
            for (int row = 0; row < table->rowCount(); ++row) {
                QAccessibleInterface* const cell = seen->cellAt(row, column);
                QCOMPARE(cell->role(), QAccessible::Cell);
                QVERIFY(cell->text(QAccessible::Name).startsWith(table->item(row, column)->text()));
            }
        }
        run.press(Qt::Key_Down);
        QCOMPARE(seen->selectedRows().size(), 1);
    }

    void explanationsByKeyboard_data()
    {
        QTest::addColumn<std::size_t>("page");
        for (std::size_t page = 0; page < allPages().size(); ++page) {
            if (allPages()[page].key == DRMGStepKeys::kWelcome || allPages()[page].key == DRMGStepKeys::kSelectBackup) {
                QTest::addRow("%s", allPages()[page].name) << page;
            }
        }
    }

    /// The panel over a link opens with the focus, can be read to its end, and closes without leaving the page.
    void explanationsByKeyboard()
    {
        QFETCH(const std::size_t, page);
        DRWizardPlaces places;
        allPages()[page].prepare(places);
        const DRWizardRun run(places);
        allPages()[page].drive(run);
        int explained = 0;
        for (int tabs = 0; tabs < kMostKeys; ++tabs) {
            run.press(Qt::Key_Tab);
            auto* const panel = run.find<DRMigrateTooltipWindowController>(QString());
            if (panel == nullptr) {
                continue;
            }
            ++explained;
            QVERIFY(!QAccessible::queryAccessibleInterface(panel)->text(QAccessible::Name).isEmpty());
            QScrollBar* const scrollBar = panel->textView().verticalScrollBar();
            for (int times = 0; times < kMostKeys; ++times) {
                run.press(Qt::Key_PageDown);
            }
            QCOMPARE(scrollBar->value(), scrollBar->maximum());
            run.press(Qt::Key_Escape);
            QVERIFY(!panel->isVisible());
            QCOMPARE(run.pageKey(), allPages()[page].key);
        }
        QVERIFY(explained > 0);
    }

    void pressingALink()
    {
        DRWizardPlaces places;
        agePhone(places);
        const DRWizardRun run(places);
        goOn(run);
        const auto links = DRAccessibleTree(*run.window).ofRole(QAccessible::Link);
        QCOMPARE(links.size(), std::size_t{1});
        QSignalSpy pressed(run.migration.get(), &DRMGSequence::contactsSetupSelected);
        QVERIFY(
            QRect(run.window->mapToGlobal(QPoint(0, 0)), run.window->size()).contains(links.front().interface->rect()));
        QAccessibleActionInterface* const actions = links.front().interface->actionInterface();
        QVERIFY(actions != nullptr);
        actions->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(pressed.size(), 1);

        const DRWizardRun second(places);
        goOn(second);
        second.press(Qt::Key_Tab);
        second.press(Qt::Key_Escape);
        QVERIFY2(!second.window->isVisible(), "a link without explanation does not keep the key");
    }

private:
    void examineRestorePage(const DRRestoreWindowRun& run)
    {
        QCoreApplication::processEvents();
        const DRAccessibleTree tree(run.widget());
        note(QString::fromLatin1(QTest::currentDataTag()) + u", restore"_s, tree);
        const QStringList faults = accessibilityFaults(tree, run);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
        const auto headings = tree.ofRole(QAccessible::Heading);
        QVERIFY(!headings.empty());
        QCOMPARE(headings.front().name, run.sequence().currentStep()->localizedTitle());
    }

    void note(const QString& page, const DRAccessibleTree& tree) const
    {
        QFile file(m_notes);
        if (!m_notes.isEmpty()) {
            QVERIFY(file.open(QIODevice::Append));
            file.write((u"== "_s + page + u'\n' + tree.toText() + u'\n').toUtf8());
        }
    }

    QLocale m_usual;
    QString m_notes; ///< the file of the trees; empty when nobody wants it
};

QTEST_MAIN(TestWizardAccessibility)

#include "TestWizardAccessibility.moc"
