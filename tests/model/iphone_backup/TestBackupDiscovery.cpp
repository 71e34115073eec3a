#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "model/iphone_backup/DRMigrateBackupDiscovery.h"
#include "model/media/DRMigrateMediaDataType.h"
#include "platform/core/DRDigest.h"
#include "platform/core/DRPropertyList.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestServices.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

QDateTime day(int number)
{
    return {QDate(2014, 1, number), QTime(12, 0), Qt::UTC};
}

/// One backup in short: what latestBackupEntriesFromList decides by.
struct Backup {
    QString name; ///< null: the device name is missing
    int day;
    bool encrypted = false;
};

} // namespace

class TestBackupDiscovery : public QObject {
    Q_OBJECT

private:
    DRTestServices m_test;

    DRMigrateIPhoneBackupEntryPointer entry(const Backup& backup)
    {
        auto made = std::make_shared<DRMigrateIPhoneBackupEntry>(m_test.services);
        made->setDeviceName(backup.name);
        made->setLastBackupDate(day(backup.day));
        made->setEncrypted(backup.encrypted);
        return made;
    }

    [[nodiscard]] QString folder(const QString& name) const { return m_test.root.filePath(name); }

private Q_SLOTS:

    void readsFoldersWithInfo()
    {
        const QVariantMap info{{u"Device Name"_s, u"Robin’s iPhone"_s},
                               {u"Product Version"_s, u"7.1.2"_s},
                               {u"Serial Number"_s, 12},
                               {u"Last Backup Date"_s, day(5)}};
        QVERIFY(writeFile(folder(u"root/b/Info.plist"_s), DRPropertyList::xmlFromDictionary(info)));
        QVERIFY(writeFile(folder(u"root/b/Manifest.plist"_s),
                          DRPropertyList::binaryFromDictionary({{u"IsEncrypted"_s, true}})));
        QVERIFY(writeFile(folder(u"root/a/Info.plist"_s), DRPropertyList::binaryFromDictionary({})));
        QVERIFY(writeFile(folder(u"root/broken/Info.plist"_s), "<plist><dict>"));
        QVERIFY(writeFile(folder(u"root/file"_s), "no folder"));
        QVERIFY(writeFile(folder(u"root/foreign/readme"_s), ""));

        const auto entries = DRMigrateUtils::iPhoneBackupEntriesAtPath(folder(u"root"_s), m_test.services);
        QCOMPARE(entries.size(), 2U);
        QCOMPARE(entries[0]->backupPath(), folder(u"root/a"_s));
        QVERIFY(entries[0]->deviceName().isNull() && !entries[0]->isEncrypted());
        QCOMPARE(entries[1]->deviceName(), u"Robin’s iPhone"_s);
        QVERIFY(entries[1]->serialNumber().isNull());
        QCOMPARE(entries[1]->lastBackupDate(), day(5));
        QVERIFY(entries[1]->isEncrypted());
        QVERIFY(DRMigrateUtils::iPhoneBackupEntriesAtPath(folder(u"missing"_s), m_test.services).empty());
        QVERIFY(DRMigrateUtils::iPhoneBackupEntriesAtPath(QString(), m_test.services).empty());
    }

    void latestOfEachDevice_data()
    {
        const DRTestTable<QList<Backup>, QList<int>> row("list", "latest"); // latest: positions in the list
        const QString one = u"one"_s;
        const QString two = u"two"_s;
        row("newer of one device", {{one, 1}, {one, 2}}, {1});
        row("newest device first", {{one, 1}, {two, 2}}, {1, 0});
        row("equal dates: first stays", {{one, 3}, {one, 3}}, {0});
        row("encrypted newer", {{one, 3}, {one, 4, true}}, {0});
        row("encrypted only", {{one, 3, true}}, {});
        row("no name", {{QString(), 3}, {u""_s, 2}}, {1});
    }

    void latestOfEachDevice()
    {
        QFETCH(QList<Backup>, list);
        QFETCH(QList<int>, latest);
        std::vector<DRMigrateIPhoneBackupEntryPointer> entries;
        for (const Backup& backup : list) {
            entries.push_back(entry(backup));
        }
        const auto answer = DRMigrateUtils::latestBackupEntriesFromList(entries);
        QCOMPARE(static_cast<qsizetype>(answer.size()), latest.size());
        for (std::size_t i = 0; i < answer.size(); ++i) {
            QCOMPARE(answer[i], entries[static_cast<std::size_t>(latest[static_cast<qsizetype>(i)])]);
        }
    }

    void majorVersion_data()
    {
        const DRTestTable<QString, int> row("version", "major");
        row("dotted", u"6.1.3"_s, 6);
        row("no dot", u"10"_s, 10);
        row("missing", {}, 0);
        row("text", u"beta"_s, 0);
        row("trailing text", u"7b.1"_s, 7);
        row("huge", u"99999999999.1"_s, 0);
    }

    void majorVersion()
    {
        QFETCH(QString, version);
        const auto backup = entry({u"one"_s, 1});
        backup->setProductVersion(version);
        QTEST(backup->majorProductVersion(), "major");
    }

    void bytesNeeded()
    {
        const auto media = [this](std::initializer_list<std::pair<quint32, quint64>> kindsAndSizes) {
            DREntryList files;
            for (const auto& [kind, size] : kindsAndSizes) {
                auto file = DRDCFile::fileWithSourcePath(u"/nowhere"_s);
                file->setFileKind(kind);
                file->setFilesize(size);
                files.emplace_back(file);
            }
            auto type = std::make_shared<DRMigrateMediaDataType>(m_test.services);
            type->setEntries(files);
            return type;
        };
        const auto backup = entry({u"one"_s, 1});
        backup->setDataType(media({{0x10, 1000}, {0x08, 20}, {0x20, 3}}), u"images"_s);
        backup->setDataType(media({{0x4, 50000}, {0, 7}}), u"music"_s);

        constexpr quint64 kMegabyte = 1048576;
        QCOMPARE(backup->bytesNeededForSelectedTypes({u"contacts"_s, u"notes"_s, u"calendar"_s}), 3 * kMegabyte);
        QCOMPARE(backup->bytesNeededForSelectedTypes({u"images"_s}), quint64{1000});
        QCOMPARE(backup->bytesNeededForSelectedTypes({u"videos"_s, u"music"_s}), quint64{23 + 50007});
        QCOMPARE(backup->bytesNeededForSelectedTypes({u"voicememos"_s}), quint64{0});
    }

    void backedUpFilesAreFoundByTheirHash()
    {
        const QString path = u"HomeDomain-Library/Notes/notes.sqlite"_s;
        const QString hashed = u"ca3bc056d4da0bbf88b5fb3be254f3b7147e639c"_s;
        QVERIFY(writeFile(folder(u"backup/Manifest.mbdb"_s), "mbdb"));
        QVERIFY(DRIPhoneBackupFiles::pathOfBackedUpFile(folder(u"backup"_s), path).isEmpty());
        QVERIFY(!DRIPhoneBackupFiles::holds(folder(u"backup"_s), path));
        QVERIFY(DRIPhoneBackupFiles::holds(folder(u"gone"_s), path)); // nobody can tell
        QVERIFY(writeFile(folder(u"backup/"_s + hashed), "notes"));
        QVERIFY(DRIPhoneBackupFiles::pathOfBackedUpFile(folder(u"backup"_s), path).endsWith(hashed));

        QVERIFY(QFile::link(folder(u"backup"_s), folder(u"link"_s)));
        QVERIFY(!DRIPhoneBackupFiles::pathOfBackedUpFile(folder(u"link"_s), path).isEmpty());
        const QString linked = folder(u"backup/"_s + sha1HexString(u"HomeDomain-other"_s));
        QVERIFY(QFile::link(u"/etc/passwd"_s, linked));
        QVERIFY(DRIPhoneBackupFiles::pathOfBackedUpFile(folder(u"backup"_s), u"HomeDomain-other"_s).isEmpty());

        QVERIFY(writeFile(folder(u"newer/Manifest.db"_s), ""));
        QVERIFY(writeFile(folder(u"newer/"_s + hashed), "notes"));
        QCOMPARE(DRIPhoneBackupFiles::layoutOfBackup(folder(u"newer"_s)), DRIPhoneBackupFiles::Layout::Database);
        QVERIFY(DRIPhoneBackupFiles::pathOfBackedUpFile(folder(u"newer"_s), path).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBackupDiscovery)
#include "TestBackupDiscovery.moc"
