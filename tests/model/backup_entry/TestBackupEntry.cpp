#include "model/backup_entry/DRMigrateBackupEntry.h"
#include "model/backup_entry/DRMigrateBackupEntryDelegate.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRFileNames.h"
#include "platform/core/DRPropertyList.h"
#include "tests/support/DRTestServices.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kMegabyte = 1U << 20U;

/// A data type whose steps answer what the test says.
class ScriptedDataType final : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    bool load() override { return loads; }
    bool save() override { return saves; }
    quint64 bytesToTransfer() const override { return total ? *total : DRMigrateDataType::bytesToTransfer(); }
    quint64 bytesTransferred() const override { return total ? done : DRMigrateDataType::bytesTransferred(); }

    bool loads = true;
    bool saves = true;
    std::optional<quint64> total;
    quint64 done = 0;
};

/// Records which data type finished what, with the flags that were set by then.
class RecordingDelegate final : public DRMigrateBackupEntryDelegate {
public:
    void dataTypeHasBeenLoaded(DRMigrateBackupEntry&, DRMigrateDataType& type) override { note(u"loaded"_s, type); }
    void dataTypeHasBeenMerged(DRMigrateBackupEntry&, DRMigrateDataType& type) override { note(u"merged"_s, type); }
    void dataTypeHasBeenSaved(DRMigrateBackupEntry&, DRMigrateDataType& type) override { note(u"saved"_s, type); }

    QStringList events;

private:
    void note(const QString& step, const DRMigrateDataType& type)
    {
        events.append(u"%1 %2 %3"_s.arg(type.dataTypeKey(), step).arg(type.flags(), 0, 16));
    }
};

DREntryList numbers(std::initializer_list<int> values)
{
    DREntryList list;
    list.assign(values.begin(), values.end());
    return list;
}

QString joined(const DRMigrateDataType& type)
{
    QStringList texts;
    const DREntries entries = type.entries();
    for (const int* number : recordsOf<int>(*entries)) {
        texts.append(QString::number(*number));
    }
    return texts.join(u' ');
}

} // namespace

class TestBackupEntry : public QObject {
    Q_OBJECT

private:
    DRTestServices m_test;

    std::shared_ptr<ScriptedDataType> add(DRMigrateBackupEntry& entry, const QString& key)
    {
        auto type = std::make_shared<ScriptedDataType>(m_test.services);
        type->setDataTypeKey(key);
        entry.setDataType(type, key);
        return type;
    }

    std::shared_ptr<DRMigrateAndroidBackupEntry> phoneEntry()
    {
        return std::make_shared<DRMigrateAndroidBackupEntry>(m_test.services);
    }

private Q_SLOTS:

    void stepsRecordTheirOutcomeBeforeTheDelegateHears()
    {
        auto entry = phoneEntry();
        RecordingDelegate delegate;
        entry->setDelegate(&delegate);
        entry->setBackupPath(u"/backup"_s);
        add(*entry, u"good"_s);
        add(*entry, u"bad"_s)->loads = false;
        QVERIFY(!entry->areAllDataTypesLoaded());

        entry->loadAll();
        entry->loadDataType(u"unknown"_s);
        QVERIFY(delegate.events.isEmpty());
        m_test.queue.runAll();

        QCOMPARE(delegate.events, QStringList({u"bad loaded 8000"_s, u"good loaded 2"_s}));
        QVERIFY(entry->doesDataTypesContainErrors());
        const auto good = entry->dataTypeForKey(u"good"_s);
        QCOMPARE(good->sourcePath(), u"/backup"_s);
        QCOMPARE(good->targetPath(), m_test.services.folders.temporary + u"/TarvexTransfer"_s);
    }

    void failureReplacesAllFlags()
    {
        auto entry = phoneEntry();
        const auto type = add(*entry, u"packet"_s);
        type->setFlags(DRMigrateDataType::kDRMigrateDataTypeFlagBackedUp);
        type->loadWithHandler([](const auto&, bool) {});
        m_test.queue.runAll();
        QCOMPARE(type->flags(), qint64{0x3});

        type->saves = false;
        entry->saveAll();
        m_test.queue.runAll();
        QCOMPARE(type->flags(), qint64{0x8000});
        QVERIFY(type->hasError() && !type->isLoaded());
    }

    void emptyEntryIsDoneAndWithoutErrors()
    {
        const auto entry = phoneEntry();
        QVERIFY(entry->areAllDataTypesLoaded() && entry->areAllDataTypesMerged() && entry->areAllDataTypesSaved());
        QVERIFY(!entry->doesDataTypesContainErrors());
        QVERIFY(!entry->dataTypeForKey(QString()));
        QVERIFY(!entry->dataTypeForPacketID(QString()));
    }

    void baseMergeAppends_data()
    {
        const DRTestTable<DREntryList, DREntryList, QString> row("own", "source", "merged");
        row("both", numbers({1, 2}), numbers({3}), u"1 2 3"_s);
        row("source only", {}, numbers({3}), u"3"_s);
        row("own only", numbers({1}), {}, u"1"_s);
    }

    void baseMergeAppends()
    {
        QFETCH(DREntryList, own);
        QFETCH(DREntryList, source);
        ScriptedDataType target(m_test.services);
        ScriptedDataType from(m_test.services);
        target.setEntries(own);
        from.setEntries(source);
        QVERIFY(target.mergeDataFrom(from));
        QTEST(joined(target), "merged");
    }

    void mergePairsTargetsWithTheirSource()
    {
        auto iPhone = std::make_shared<DRMigrateBackupEntry>(m_test.services);
        add(*iPhone, u"contacts"_s)->setEntries(numbers({7}));
        auto phone = phoneEntry();
        RecordingDelegate delegate;
        phone->setDelegate(&delegate);
        add(*phone, u"packet.one"_s)->setSourceKey(u"contacts"_s);
        add(*phone, u"packet.two"_s)->setSourceKey(u"contacts"_s);
        add(*phone, u"packet.three"_s)->setSourceKey(u"notes"_s);

        QVERIFY(phone->mergeWithBackup(*iPhone));
        m_test.queue.runAll();
        QCOMPARE(delegate.events, QStringList({u"packet.one merged 4"_s, u"packet.two merged 4"_s}));
        QCOMPARE(joined(*phone->dataTypeForKey(u"packet.two"_s)), u"7"_s);
        QVERIFY(!phone->areAllDataTypesMerged());
    }

    void packetBytesGoByHalves_data()
    {
        const DRTestTable<qint64, quint64> row("flags", "done");
        row("nothing", 0, 0);
        row("fetched, loaded", 0x3, 2097152);
        row("fetched, restored", 0x1F, 4194304);
        row("failed", 0x8000, 0);
    }

    void packetBytesGoByHalves()
    {
        QFETCH(qint64, flags);
        ScriptedDataType type(m_test.services);
        type.setFlags(flags);
        QTEST(type.bytesTransferred(), "done");
    }

    void progressBlendsEstimates()
    {
        auto entry = phoneEntry();
        const auto type = add(*entry, u"media"_s);
        type->total = 100 * kMegabyte;
        entry->beginProgress();

        auto progress = entry->progressWithDelta(0.0);
        QCOMPARE(progress.fraction, 0.0);
        QCOMPARE(progress.secondsRemaining, 100 * 1.1);

        type->done = 50 * kMegabyte + 1;
        progress = entry->progressWithDelta(4.0);
        QCOMPARE(progress.secondsRemaining, 100 * 1.1 * 0.95 + 49 * 1.1 * 0.05);

        // More than ten seconds have been spent: the rate changes after this answer, for the next one.
        const double before = entry->progressWithDelta(7.0).secondsRemaining;
        const double rate = 1.1 * 0.99 + 50 / 11.0 * 0.01;
        QCOMPARE(entry->progressWithDelta(0.0).secondsRemaining, before * 0.95 + 49 * rate * 0.05);

        type->done = *type->total;
        progress = entry->progressWithDelta(0.1);
        QCOMPARE(progress.fraction, 1.0);
        QCOMPARE(progress.secondsRemaining, 0.0);
    }

    void progressOfNothingIsZero()
    {
        auto entry = phoneEntry();
        entry->beginProgress();
        QCOMPARE(entry->progressWithDelta(0.1).fraction, 0.0);
    }

    void appsFolderListsRegularFilesOnly()
    {
        ScriptedDataType type(m_test.services);
        type.setTargetPath(m_test.root.path());
        type.setPacketID(u"app"_s);
        QVERIFY(type.filesInAppsFolder().value().isEmpty());
        QFile noFolder(m_test.root.filePath(u"other"_s));
        QVERIFY(noFolder.open(QIODevice::WriteOnly));
        type.setPacketID(u"other"_s);
        QVERIFY(!type.filesInAppsFolder()); // a packet of what can be listed would lack the rest
        type.setPacketID(u"app"_s);
        QVERIFY(!type.checkForManifest());
        QVERIFY(type.manifestMissing());

        const QString app = m_test.root.filePath(u"app/apps/app"_s);
        QVERIFY(QDir().mkpath(app + u"/db/empty"_s));
        for (const QString& name : {u"/_manifest"_s, u"/db/.hidden"_s, u"/db/note.db"_s}) {
            QFile file(app + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        const QByteArray odd = QFile::encodeName(app) + "/odd\xff\xef\xbb\xbf\xc3";
        QVERIFY(::close(::open(odd.constData(), O_CREAT | O_WRONLY, 0600)) == 0);
        QVERIFY(QFile::link(u"/etc/passwd"_s, app + u"/db/link"_s));
        QVERIFY(QFile::link(u"/etc"_s, app + u"/linked"_s));
        QStringList files = type.filesInAppsFolder().value();
        files.sort();
        QCOMPARE(DRFileNames::toBytes(files.takeLast()), QByteArray("apps/app/odd\xff\xef\xbb\xbf\xc3"));
        QCOMPARE(files, QStringList({u"apps/app/_manifest"_s, u"apps/app/db/.hidden"_s, u"apps/app/db/note.db"_s}));
        QVERIFY(type.checkForManifest());
    }

    void ignoredPacketsAreNamed()
    {
        auto entry = phoneEntry();
        const auto ignored = add(*entry, u"one"_s);
        ignored->setPacketID(u"one"_s);
        ignored->setIgnoreDataType(true);
        add(*entry, u"media"_s)->setIgnoreDataType(true);
        add(*entry, u"two"_s)->setPacketID(u"two"_s);
        QCOMPARE(entry->ignoredPacketIDs(), QStringList({u"one"_s}));
        QCOMPARE(entry->packetIDsForAddedDataTypes(), QStringList({u"one"_s, u"two"_s}));
        QCOMPARE(entry->dataTypeForPacketID(u"two"_s)->dataTypeKey(), u"two"_s);
    }

    void savingRenewsTheDescription()
    {
        auto entry = phoneEntry();
        entry->setBackupPath(m_test.root.filePath(u"fetched"_s));
        QVERIFY(QDir().mkpath(entry->backupPath()));
        const QString copy = m_test.services.folders.temporary + u"/TarvexTransfer/BackupData.plist"_s;
        const auto type = add(*entry, u"packet"_s);

        entry->saveAll();
        m_test.queue.runAll();
        QVERIFY(type->isSaved());
        QVERIFY(!QFile::exists(copy));

        QFile description(entry->backupPath() + u"/BackupData.plist"_s);
        QVERIFY(description.open(QIODevice::WriteOnly));
        description.write(DRPropertyList::xmlFromDictionary({{u"BackupName"_s, u"before"_s}}));
        description.close();
        entry->saveAll();
        const auto written = DRPropertyList::readDictionary(copy);
        QVERIFY(written);
        QCOMPARE(written->value(u"BackupName"_s).toString(), u"before"_s);
        QCOMPARE(written->value(u"BackupDate"_s).toDateTime(), m_test.clock.now());
    }
};

QTEST_GUILESS_MAIN(TestBackupEntry)
#include "TestBackupEntry.moc"
