#include "tests/support/DRTestTable.h"
#include "tests/wizard/WizardFixture.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepComplete.h"
#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"
#include "wizard/steps/DRMGSequenceStepSelectData.h"
#include "wizard/steps/DRMGStorageFigures.h"

#include <limits>

using namespace Qt::StringLiterals;
using namespace DRMigrateKeys;

namespace {

using StorageRow = DRMGSequenceStepMemoryWarning::StorageRow;

/// A wizard with a chosen backup of two contacts, a photo, two videos, a song and a memo.
struct Selection : WizardFixture {
    Selection()
        : WizardFixture(u"{\"wizard_nothing_chosen\":\"nothing\",\"wizard_too_little_space\":\"%1 needed, %2 free\"}"_s)
    {
        script.iPhoneEntries[kContacts] = {1, 2};
        script.iPhoneEntries[kImages] = {file(0x10, 100), file(0x08, 1000), file(0x20, 2000)};
        script.iPhoneEntries[kMusic] = {file(DRMigrateFileKinds::kMusic, 10), file(DRMigrateFileKinds::kPlaylist, 1)};
        script.iPhoneEntries[kVoiceMemos] = {file(0, 5)};
        sequence->parameters().setValue(DRMGSequence::kIPhoneBackupEntry, makeEntry());
    }

    template <typename Step> [[nodiscard]] Step& show(const QString& key) const
    {
        sequence->gotoStepForKey(key);
        return *qobject_cast<Step*>(sequence->currentStep());
    }
    [[nodiscard]] QStringList selectedTypes() const
    {
        return sequence->parameters().value<QStringList>(DRMGSequence::kSelectedTypes);
    }
};

/// "key count", with "+" before those that are ticked and the size behind.
QStringList described(const DRMGSelectionBoxes& boxes)
{
    QStringList lines;
    for (const DRMGSelectionBox& box : boxes) {
        const QString size = box.sizeBytes ? u" %1 bytes"_s.arg(*box.sizeBytes) : QString();
        lines.append((box.isTicked ? u"+"_s : u"-"_s) + box.key + u' ' + QString::number(box.count) + size);
    }
    return lines;
}

} // namespace

class TestSelection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsFillInAsDataTypesLoad()
    {
        Selection f;
        const auto& page = f.show<DRMGSequenceStepSelectData>(DRMGStepKeys::kSelectData);
        QCOMPARE(described(page.boxes()),
                 (QStringList{u"+contacts 0"_s, u"+textMessages 0"_s, u"+bookmarks 0"_s, u"+calendar 0"_s,
                              u"+notes 0"_s, u"+images 0"_s, u"+videos 0"_s, u"+music 0"_s}));
        int changes = 0;
        QObject::connect(&page, &DRSequenceStep::contentChanged, &page, [&changes] { ++changes; });
        f.queue.runAll();
        QCOMPARE(changes, 8);
        QCOMPARE(described(page.boxes()),
                 (QStringList{u"+contacts 2"_s, u"+textMessages 0"_s, u"+bookmarks 0"_s, u"+calendar 0"_s,
                              u"+notes 0"_s, u"+images 1"_s, u"+videos 2"_s, u"+music 3"_s}));
    }

    void selectionIsKept()
    {
        Selection f;
        auto& page = f.show<DRMGSequenceStepSelectData>(DRMGStepKeys::kSelectData);
        for (const QString& key : {kContacts, kTextMessages, kBookmarks, kMusic, kVideos}) {
            page.setTicked(key, false);
        }
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        QCOMPARE(f.selectedTypes(), (QStringList{kCalendar, kNotes, kImages}));
        f.sequence->gotoStepForKey(DRMGStepKeys::kSelectData);
        f.queue.runAll();
        QCOMPARE(described(page.boxes()),
                 (QStringList{u"-contacts 2"_s, u"-textMessages 0"_s, u"-bookmarks 0"_s, u"+calendar 0"_s,
                              u"+notes 0"_s, u"+images 1"_s, u"-videos 2"_s, u"-music 3"_s}));
    }

    void musicBringsVoiceMemos()
    {
        QCOMPARE(DRMGSelection::selectedKeys({{.key = kNotes, .isTicked = false, .count = 1, .sizeBytes = {}},
                                              {.key = kMusic, .isTicked = true, .count = 0, .sizeBytes = {}}}),
                 (QStringList{kMusic, kVoiceMemos}));
    }

    void nextNeedsASelectionOnceABoxHasChanged()
    {
        Selection f;
        auto& page = f.show<DRMGSequenceStepSelectData>(DRMGStepKeys::kSelectData);
        for (const DRMGSelectionCategory& category : DRMGSelection::categories()) {
            QCOMPARE(page.stateMask(), 7);
            page.setTicked(category.key, false);
        }
        QCOMPARE(page.stateMask(), 5);
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        f.sequence->gotoStepForKey(DRMGStepKeys::kSelectData);
        QCOMPARE(page.stateMask(), 7);
        QVERIFY(f.selectedTypes().isEmpty());
        f.connectPhone();
        f.queue.runAll();
        f.sequence->pressNext();
        const auto* const complete = qobject_cast<DRMGSequenceStepComplete*>(f.sequence->currentStep());
        QVERIFY(complete != nullptr);
        QCOMPARE(complete->remarks(), QStringList{u"nothing"_s});
    }

    void countsAreDroppedOnceThePageIsLeft()
    {
        Selection f;
        const auto& page = f.show<DRMGSequenceStepSelectData>(DRMGStepKeys::kSelectData);
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        f.queue.runAll();
        QCOMPARE(page.boxes().front().count, 0);
        f.sequence->gotoStepForKey(DRMGStepKeys::kSelectData);
        f.sequence.reset();
        f.queue.runAll();
        QVERIFY2(f.queue.isEmpty(), "loads end also when the wizard is gone");
    }

    void statesOfTheContent()
    {
        Selection f;
        f.script.failingSteps = {u"load contacts"_s, u"load voicememos"_s};
        const auto& page = f.show<DRMGSequenceStepSelectData>(DRMGStepKeys::kSelectData);
        using State = DRKindContent::State;
        const auto states = [&page] {
            QList<State> all;
            for (const DRMGSelectionBox& box : page.boxes()) {
                all << box.state;
            }
            return all;
        };
        QCOMPARE(states(), QList<State>(8, State::Loading));
        f.queue.runAll();
        QVERIFY2(states() == (QList<State>{State::Unreadable, State::Loaded, State::Loaded, State::Loaded,
                                           State::Loaded, State::Loaded, State::Loaded, State::Unreadable}),
                 "memos that cannot be read show at the box that stands for them");
        QCOMPARE(DRMGSelection::contentState(*f.makeEntry(), kNotes), State::NotSupported);
    }

    void nextWaitsForWhatIsLoading_data()
    {
        const DRTestTable<QStringList, QString> row("cleared", "key"); // cleared: while it waits
        row("goes on", {}, u"memoryWarning"_s);
        row("goes on with less", {kNotes}, u"memoryWarning"_s);
        QStringList all;
        for (const DRMGSelectionCategory& category : DRMGSelection::categories()) {
            all << category.key;
        }
        row("stays when nothing is left", all, u"selectData"_s);
    }

    void nextWaitsForWhatIsLoading()
    {
        QFETCH(const QStringList, cleared);
        Selection f;
        f.connectPhone();
        auto& page = f.show<DRMGSequenceStepSelectData>(DRMGStepKeys::kSelectData);
        f.sequence->pressNext();
        QVERIFY(page.isWaitingForContent());
        QCOMPARE(page.stateMask(), 5);
        for (const QString& key : cleared) {
            page.setTicked(key, false);
            QCOMPARE(page.stateMask(), 5);
        }
        for (int i = 0; i < 7; ++i) {
            QVERIFY(f.queue.runOneInBackground() && f.queue.runMain());
            QVERIFY2(f.currentKey() == u"selectData"_s, "one is still loading");
        }
        f.queue.runAll();
        QTEST(f.currentKey(), "key");
        QVERIFY(!page.isWaitingForContent());
        if (f.currentKey() == u"memoryWarning"_s) {
            const auto& warning = *qobject_cast<DRMGSequenceStepMemoryWarning*>(f.sequence->currentStep());
            QVERIFY(described(warning.boxes()).contains(u"+images 1 100 bytes"_s));
            QCOMPARE(warning.storageRows().at(2).sizeBytes, 3000U);
        }
        f.sequence->gotoStepForKey(DRMGStepKeys::kSelectData);
        f.sequence->pressNext();
        f.sequence->pressCancel();
        f.queue.runAll();
        QVERIFY2(f.currentKey() == u"welcome"_s, "who goes back no longer waits");
    }

    void memoryWarningOffersTheMedia()
    {
        Selection f;
        f.choose({kNotes, kImages, kMusic, kVoiceMemos});
        f.device->usableCapacity = 10000;
        f.device->usableFreeBytes = 105;
        f.connectPhone();
        auto& page = f.show<DRMGSequenceStepMemoryWarning>(DRMGStepKeys::kMemoryWarning);
        QCOMPARE(described(page.boxes()),
                 (QStringList{u"+images 1 100 bytes"_s, u"-videos 2 3000 bytes"_s, u"+music 3 10 bytes"_s}));
        QCOMPARE(page.stateMask(), 5);
        QVERIFY(page.storageRows().back() == (StorageRow{StorageRow::Part::Missing, {}, 5}));
        page.setTicked(kMusic, false);
        QVERIFY(page.storageRows().back() == (StorageRow{StorageRow::Part::Free, {}, 5}));
        QCOMPARE(page.stateMask(), 7);
        QVERIFY2(f.selectedTypes() == (QStringList{kNotes, kImages, kVoiceMemos}), "the memos stay selected");
        page.setTicked(kVideos, true);
        QCOMPARE(page.stateMask(), 5);
        f.sequence->pressCancel();
        QCOMPARE(f.currentKey(), u"selectData"_s);
        QCOMPARE(f.selectedTypes(), (QStringList{kNotes, kImages, kVoiceMemos, kVideos}));
    }

    /// What has no box there may be too much, too.
    void memoryWarningSaysWhyItStays()
    {
        Selection f;
        f.choose({kVoiceMemos});
        f.device->freeBytes = 4;
        f.connectPhone();
        auto& page = f.show<DRMGSequenceStepMemoryWarning>(DRMGStepKeys::kMemoryWarning);
        QCOMPARE(page.stateMask(), 7);
        QCOMPARE(page.statusText(), u"5\u00a0bytes needed, 4\u00a0bytes free"_s);
        page.setTicked(kImages, true);
        QVERIFY2(page.statusText().isEmpty(), "the bar says it");
        page.setTicked(kImages, false);
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"memoryWarning"_s);
        QCOMPARE(page.statusText(), u"5\u00a0bytes needed, 4\u00a0bytes free"_s);
        f.device->freeBytes = 5;
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"transfer"_s);
    }

    void storage_data()
    {
        const DRTestTable<quint64, quint64, quint64, quint64, quint64, quint64, bool> row(
            "capacity", "freeBytes", "media", "other", "left", "missing", "isOverfull");
        row("fits", 1000, 400, 399, 600, 1, 0, false);
        row("exactly full", 1000, 400, 400, 600, 0, 0, true);
        row("overflows", 1000, 400, 401, 600, 0, 1, true);
        row("full, no media", 1000, 0, 0, 1000, 0, 0, false);
        row("more free than capacity", 1000, 1500, 200, std::numeric_limits<quint64>::max() - 499, 1300, 0, false);
    }

    void storage()
    {
        QFETCH(const quint64, capacity);
        QFETCH(const quint64, freeBytes);
        QFETCH(const quint64, media);
        const DRMGStorageFigures figures =
            storageFigures(capacity, freeBytes, {.music = 0, .images = media, .videos = 0});
        QTEST(figures.other, "other");
        QTEST(figures.free, "left");
        QTEST(figures.missing(), "missing");
        QTEST(figures.isOverfull(), "isOverfull");
        QCOMPARE(figures.total, capacity);
    }
};

QTEST_GUILESS_MAIN(TestSelection)
#include "TestSelection.moc"
