// The cost of a note must not depend on how many there are: reading and merging 1,000 and 20,000 notes, per note.

#include "convert/notes/DRImportedNote.h"
#include "convert/notes/DRMigrateAndroidNotes.h"
#include "convert/notes/DRMigrateIPhoneNotes.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/support/DRTestServices.h"

#include <QDir>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

const QString kNotesDatabase = u"HomeDomain-Library/Notes/notes.sqlite"_s;

bool writeBackup(const QString& folder, qint64 notes)
{
    QDir().mkpath(folder);
    auto database = DRDatabase::open(folder + u'/' + sha1HexString(kNotesDatabase), DRDatabase::Profile::Create);
    if (!database ||
        !database->executeScript(u"CREATE TABLE ZNOTE(Z_PK INTEGER PRIMARY KEY, ZTITLE, ZCREATIONDATE REAL);"
                                 "CREATE TABLE ZNOTEBODY(Z_PK INTEGER PRIMARY KEY, ZOWNER INTEGER, ZCONTENT);"
                                 "CREATE INDEX owner ON ZNOTEBODY(ZOWNER)"_s)) {
        return false;
    }
    DRTransaction transaction(*database);
    DRStatement note = database->prepare(u"INSERT INTO ZNOTE VALUES (?, ?, ?)"_s);
    DRStatement body = database->prepare(u"INSERT INTO ZNOTEBODY(ZOWNER, ZCONTENT) VALUES (?, ?)"_s);
    const QString content = u"<div>Milk &amp; bread</div><div>2&nbsp;kg <b>apples</b></div>"_s.repeated(8);
    for (qint64 id = 1; id <= notes; ++id) {
        if (!note.update({id, u"Note %1"_s.arg(id), static_cast<double>(id)}) || !body.update({id, content})) {
            return false;
        }
    }
    return transaction.commit();
}

void readAndMergeNotes(benchmark::State& state)
{
    DRTestServices test;
    if (!writeBackup(test.root.filePath(u"backup"_s), state.range(0))) {
        state.SkipWithError("the backup cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        DRMigrateIPhoneNotes source(test.services);
        source.setSourcePath(test.root.filePath(u"backup"_s));
        DRMigrateAndroidNotes target(test.services);
        target.setTargetPath(test.root.filePath(u"work"_s));
        target.setPacketID(u"com.vornmobile.notes"_s);
        QDir(test.root.filePath(u"work"_s)).removeRecursively();
        if (!source.load() || !target.mergeDataFrom(source) || target.report().written != state.range(0)) {
            state.SkipWithError("the notes were not moved");
            return;
        }
    }
    state.counters["per note"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(readAndMergeNotes)->Arg(1000)->Arg(20000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
