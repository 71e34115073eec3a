// The cost of a contact must not depend on how many there are: reading an address book with four values per person and a
// picture of 200 KB for one in ten, and writing it into the phone's packet, at 1,000 and at 50,000 contacts; once with the
// iPhone's indexes and once without any. The peak of memory is that of the whole process, making the backup included.

#include "convert/contacts/DRMigrateAndroidAddressBook.h"
#include "convert/contacts/DRMigrateIPhoneAddressBook.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QString kPacketID = u"com.vornmobile.android.contactsimport"_s;

constexpr qint64 kPictureBytes = 200'000;
constexpr qint64 kContactsPerPicture = 10;

std::optional<DRDatabase> makeDatabase(const QString& folder, const QString& domainPath, const QString& schema)
{
    auto database = DRDatabase::open(folder + u'/' + sha1HexString(domainPath), DRDatabase::Profile::Create);
    if (database && !database->executeScript(schema)) {
        return std::nullopt;
    }
    return database;
}

bool writePersons(DRDatabase& database, qint64 contacts)
{
    DRTransaction transaction(database);
    DRStatement person = database.prepare(
        u"INSERT INTO ABPerson (ROWID, First, Last, Organization, Note) VALUES (?, ?, ?, 'ACME', ?)"_s);
    DRStatement value =
        database.prepare(u"INSERT INTO ABMultiValue (record_id, property, label, value) VALUES (?, ?, ?, ?)"_s);
    constexpr std::array<qint64, 4> kProperties{3, 3, 4, 22};
    for (qint64 id = 1; id <= contacts; ++id) {
        bool isDone = person.update({id, u"Ada %1"_s.arg(id), u"Falk"_s, u"Met in May; likes tea"_s});
        for (const qint64 property : kProperties) {
            isDone = isDone && value.update({id, property, qint64{1}, u"+1 555 %1 %2"_s.arg(property).arg(id)});
        }
        if (!isDone) {
            return false;
        }
    }
    return transaction.commit();
}

bool writePictures(DRDatabase& database, qint64 contacts)
{
    DRTransaction transaction(database);
    DRStatement image = database.prepare(u"INSERT INTO ABFullSizeImage (record_id, data) VALUES (?, ?)"_s);
    quint64 state = 1;
    for (qint64 id = 1; id <= contacts; id += kContactsPerPicture) {
        QByteArray picture("\xFF\xD8\xFF");
        picture.resize(kPictureBytes);
        for (qsizetype i = 3; i < picture.size(); ++i) { // as incompressible as a picture
            state = state * 6364136223846793005ULL + 1442695040888963407ULL;
            picture[i] = static_cast<char>(state >> 56U);
        }
        if (!image.update({id, picture})) {
            return false;
        }
    }
    return transaction.commit();
}

bool writeBackup(const QString& folder, qint64 contacts, bool isIndexed)
{
    QDir().mkpath(folder);
    auto book = makeDatabase(folder, u"HomeDomain-Library/AddressBook/AddressBook.sqlitedb"_s,
                             u"CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First, Last, Organization, Note);"
                             "CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, "
                             "label INTEGER, value TEXT);"
                             "CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT);"
                             "CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE(value));"
                             "CREATE TABLE ABMultiValueEntryKey (value TEXT, UNIQUE(value));"
                             "INSERT INTO ABMultiValueLabel VALUES ('_$!<Mobile>!$_');"_s);
    auto images = makeDatabase(folder, u"HomeDomain-Library/AddressBook/AddressBookImages.sqlitedb"_s,
                               u"CREATE TABLE ABFullSizeImage (ROWID INTEGER PRIMARY KEY, record_id INTEGER, data);"_s);
    const QString indexes = u"CREATE INDEX one ON ABMultiValue(property, value); CREATE INDEX two ON "
                            "ABMultiValue(label); CREATE INDEX three ON ABMultiValue(record_id);"_s;
    return book && images && (!isIndexed || book->executeScript(indexes)) && writePersons(*book, contacts) &&
           writePictures(*images, contacts);
}

bool writePacket(const DRTestServices& test)
{
    const QString folder = test.root.filePath(u"made"_s);
    const QString manifest = u"apps/%1/_manifest"_s.arg(kPacketID);
    QDir().mkpath(QFileInfo(folder + u'/' + manifest).path());
    QDir().mkpath(test.root.filePath(u"phone/"_s + kPacketID));
    QFile file(folder + u'/' + manifest);
    return file.open(QIODevice::WriteOnly) && file.write("1\n") == 2 && file.flush() &&
           DRMigrateUtils::compressAndroidBackupPacket(folder, {manifest},
                                                       test.root.filePath(u"phone/%1/fullbackupdata"_s.arg(kPacketID)));
}

double peakMebibytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void count(benchmark::State& state)
{
    state.counters["per contact"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["peak MiB"] = peakMebibytes();
}

void readContacts(benchmark::State& state)
{
    DRTestServices test;
    if (!writeBackup(test.root.filePath(u"backup"_s), state.range(0), state.range(1) != 0)) {
        state.SkipWithError("the backup cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        DRMigrateIPhoneAddressBook source(test.services);
        source.setSourcePath(test.root.filePath(u"backup"_s));
        if (!source.load() || source.report().found != state.range(0)) {
            state.SkipWithError("the contacts were not read");
            return;
        }
    }
    count(state);
}

void writeContacts(benchmark::State& state)
{
    DRTestServices test;
    DRMigrateIPhoneAddressBook source(test.services);
    source.setSourcePath(test.root.filePath(u"backup"_s));
    if (!writeBackup(source.sourcePath(), state.range(0), true) || !writePacket(test) || !source.load()) {
        state.SkipWithError("the backup or packet cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        DRMigrateAndroidAddressBook target(test.services);
        target.setSourcePath(test.root.filePath(u"phone"_s));
        target.setTargetPath(test.root.filePath(u"work"_s));
        target.setPacketID(kPacketID);
        if (!target.load() || !target.mergeDataFrom(source) || !target.save() || !target.report().skipped.empty()) {
            state.SkipWithError("the contacts were not written");
            return;
        }
    }
    count(state);
}

} // namespace

BENCHMARK(readContacts)
    ->ArgNames({"contacts", "indexed"})
    ->Args({1000, 1})
    ->Args({50000, 1})
    ->Args({1000, 0})
    ->Args({50000, 0})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(writeContacts)->Arg(1000)->Arg(50000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
