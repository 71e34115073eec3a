#include "tests/app/cli/DRHeldProgram.h"
#include "tests/app/cli/DRProgramTest.h"
#include "tests/support/DRTestTable.h"

#include <QJsonArray>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QString kNotes = u"com.vornmobile.notes"_s;
const QString kCalendar = u"com.android.providers.calendar"_s;

} // namespace

/// The undo with the real program: a transfer, and the phone's apps put back as they were.
class TestProgramRestore : public DRProgramTest {
    Q_OBJECT

private:
    /// The bytes of each of the phone's packets.
    [[nodiscard]] std::map<QString, QByteArray> packets() const
    {
        std::map<QString, QByteArray> bytes;
        const QDir folder(m_sandbox->path(u"phone/packets"_s));
        for (const QString& packetID : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            bytes[packetID] = readFile(folder.filePath(packetID + u"/fullbackupdata"_s));
        }
        return bytes;
    }

    /// The phone backups as the list shows them.
    [[nodiscard]] QJsonArray listed() const
    {
        return run({u"phone-backups"_s, u"--json"_s}).document()[u"phoneBackups"].toArray();
    }

    /// The kinds that a transfer of everything would double.
    [[nodiscard]] QStringList repeated() const
    {
        const auto plan = run({u"transfer"_s, u"-n"_s, u"--json"_s, u"--except"_s, u"music"_s});
        return plan.lines().first()[u"repeated"].toVariant().toStringList();
    }

    void moveNotesAndCalendar() const
    {
        QCOMPARE(run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"notes,calendar"_s}).code, 0);
    }

    /// The newest phone backup, as a path in the sandbox.
    [[nodiscard]] QString newest() const
    {
        return QDir(m_sandbox->path(QString())).relativeFilePath(listed()[0][u"path"].toString());
    }

    void describe(const QString& backup, const QString& key, const QVariant& value) const
    {
        const QString file = backup + u"/BackupData.plist"_s;
        auto description = DRPropertyList::readDictionary(m_sandbox->path(file)).value_or(QVariantMap());
        description[key] = value;
        m_sandbox->write(file, DRPropertyList::xmlFromDictionary(description));
    }

private Q_SLOTS:
    void undoAndUndoOfTheUndo()
    {
        const auto before = packets();
        QCOMPARE(run({u"transfer"_s, u"--yes"_s, u"--except"_s, u"music"_s}).code, 0);
        const auto moved = packets();
        const auto media = m_sandbox->snapshot(u"phone/storage"_s);
        for (const auto& [packetID, bytes] : before) {
            QVERIFY2(moved.at(packetID) != bytes, qPrintable(packetID));
        }
        QCOMPARE(run({u"restore"_s, u"1"_s}).code, 2); // nobody can be asked
        QVERIFY(run({u"restore"_s, u"1"_s, u"-n"_s}).out.contains("Nothing was changed"));
        QCOMPARE(packets(), moved);

        const auto undone = run({u"restore"_s, u"1"_s, u"--yes"_s, u"--json"_s});
        QCOMPARE(undone.code, 0);
        const QJsonObject summary = undone.lines().last();
        QCOMPARE(summary[u"type"].toString(), u"summary"_s);
        QCOMPARE(summary[u"packets"][kNotes][u"state"].toString(), u"putBack"_s);
        QVERIFY(summary[u"note"].toString().contains(u"stay"));
        QCOMPARE(packets(), before);
        QCOMPARE(m_sandbox->snapshot(u"phone/storage"_s), media);
        QCOMPARE(repeated(), (QStringList{u"images"_s, u"videos"_s, u"voicememos"_s}));
        QVERIFY(QDir(m_sandbox->path(u"cache/phone-migrate/TarvexTransfer"_s)).isEmpty());

        QCOMPARE(listed().size(), 2);
        const QString kept = summary[u"phoneBackup"][u"path"].toString();
        QCOMPARE(listed()[0][u"path"].toString(), kept);
        QCOMPARE(run({u"restore"_s, kept, u"--yes"_s, u"--only"_s, u"notes"_s}).code, 0);
        QCOMPARE(packets().at(kNotes), moved.at(kNotes));
        QCOMPARE(packets().at(kCalendar), before.at(kCalendar));
        QCOMPARE(repeated(), (QStringList{u"notes"_s, u"images"_s, u"videos"_s, u"voicememos"_s}));
        QCOMPARE(run({u"restore"_s, listed()[0][u"name"].toString(), u"--yes"_s}).code, 0);
        QCOMPARE(packets(), before);
    }

    void refusals_data()
    {
        // harm: done to the phone backup or the phone
        // further: arguments
        using Harm = std::function<void(const QString&)>;
        const DRTestTable<int, QString, QStringList, Harm> row("code", "said", "further", "harm");
        const auto packet = [](const QString& folder) { return u"%1/%2/fullbackupdata"_s.arg(folder, kNotes); };
        row("cut packet", 16, u"content is damaged"_s, {}, [this, packet](const QString& backup) {
            QFile file(m_sandbox->path(packet(backup)));
            QVERIFY(file.resize(file.size() - 20));
        });
        row("foreign packet", 16, u"not in the format"_s, {},
            [this, packet](const QString& backup) { m_sandbox->write(packet(backup), "PK\3\4"); });
        row("no description", 12, u"is missing"_s, {},
            [this](const QString& backup) { QFile::remove(m_sandbox->path(backup + u"/BackupData.plist"_s)); });
        row("hostile description", 16, u"cannot be read"_s, {},
            [this](const QString& backup) { describe(backup, u"Packets"_s, QVariantList{u"../../phone"_s}); });
        row("other phone", 16, u"of another phone (Vorn"_s, {},
            [this](const QString& backup) { describe(backup, u"DeviceIdentifier"_s, u"0123456789abcdef"_s); });
        row("no such kind in it", 16, u"Nothing of what"_s, {u"--only"_s, u"photos"_s}, [](const QString&) {});
        row("old phone", 15, u"too old"_s, {},
            [this](const QString&) { m_sandbox->write(u"phone/phone.json"_s, R"({"androidBaseVersion":1})"); });
        row("full phone", 11, u"not enough space"_s, {u"--only"_s, u"notes"_s}, [this, packet](const QString&) {
            m_sandbox->write(packet(u"phone/packets"_s),
                             "ANDROID BACKUP\n1\n1\nnone\n"); // which the backup's is larger than
            const QJsonObject phone = run({u"phone"_s, u"--json"_s}).document();
            const qint64 used =
                phone[u"memoryUsableCapacity"].toInteger() - phone[u"memoryUsableFreeBytes"].toInteger();
            m_sandbox->write(u"phone/phone.json"_s, "{\"memoryUsableCapacity\":" + QByteArray::number(used) + '}');
        });
        row("no phone", 18, u"no phone"_s, {},
            [this](const QString&) { QDir(m_sandbox->path(u"phone"_s)).removeRecursively(); });
        row("present state cannot be kept", 16, u"could not be kept"_s, {},
            [this, packet](const QString&) { QFile::remove(m_sandbox->path(packet(u"phone/packets"_s))); });
    }

    void refusals()
    {
        using Harm = std::function<void(const QString&)>;
        QFETCH(const Harm, harm);
        QFETCH(const QStringList, further);
        QFETCH(const int, code);
        QFETCH(const QString, said);
        moveNotesAndCalendar();
        const QString backup = newest();
        harm(backup);
        const auto phone = m_sandbox->snapshot(u"phone"_s);
        const auto ended = run(QStringList{u"restore"_s, m_sandbox->path(backup), u"--yes"_s, u"--json"_s} + further);
        QCOMPARE(ended.code, code);
        QVERIFY2(ended.err.contains(said.toUtf8()), ended.err.constData());
        QCOMPARE(ended.lines().last()[u"code"].toInt(), code);
        QCOMPARE(m_sandbox->snapshot(u"phone"_s), phone);
    }

    void missingAppIsSkipped()
    {
        const auto before = packets();
        moveNotesAndCalendar();
        const auto moved = packets();
        QVERIFY(QDir(m_sandbox->path(newest() + u'/' + kCalendar)).removeRecursively());
        const auto ended = run({u"restore"_s, u"1"_s, u"--yes"_s, u"--json"_s});
        QCOMPARE(ended.code, 20);
        QCOMPARE(ended.lines().last()[u"packets"][kCalendar][u"state"].toString(), u"skipped"_s);
        QCOMPARE(packets().at(kNotes), before.at(kNotes));
        QCOMPARE(packets().at(kCalendar), moved.at(kCalendar));
        QCOMPARE(repeated(), QStringList{u"calendar"_s});
    }

    void brokenFoldersAreListed()
    {
        QCOMPARE(run({u"phone-backups"_s}).code, 12);
        moveNotesAndCalendar();
        const QString root = u"data/phone-migrate/phone-backups/"_s;
        m_sandbox->write(root + u"a phone/left/nothing"_s, "x");
        m_sandbox->write(root + u"a phone/foreign/BackupData.plist"_s, "x");
        const auto make = [&](const QString& folder, int day, const QVariantList& packets) {
            m_sandbox->write(root + folder + u"/BackupData.plist"_s,
                             DRPropertyList::xmlFromDictionary(
                                 {{u"DeviceIdentifier"_s, u"a phone"_s},
                                  {u"BackupDate"_s, QDateTime(QDate(2014, 5, day), QTime(7, 8, 9), Qt::UTC)},
                                  {u"Packets"_s, packets}}));
        };
        make(u"a phone/empty"_s, 6, {kNotes});
        make(u"a phone/damaged"_s, 7, {kNotes});
        m_sandbox->write(root + u"a phone/damaged/%1/fullbackupdata"_s.arg(kNotes), "ANDROID BACKUP\n1\n1\nAES-256\n");

        QStringList found;
        const QJsonArray backups = listed();
        for (const auto& backup : backups) {
            found << backup[u"reason"].toString() + u' ' + backup[u"date"].toString().left(10);
        }
        QVERIFY(found.takeFirst().startsWith(u' ')); // the whole one, of today
        QCOMPARE(found, (QStringList{u"damagedPackets 2014-05-07"_s, u"empty 2014-05-06"_s, u"noDescription "_s,
                                     u"unreadableDescription "_s}));
        const auto text = run({u"phone-backups"_s}).out;
        for (const char* part :
             {"encrypted", "holds no app's data", "is missing", "cannot be read", "calendar, notes"}) {
            QVERIFY2(text.contains(part), text.constData());
        }
    }

    void oneRunAtATimeAndInterrupted()
    {
        moveNotesAndCalendar();
        const auto phone = m_sandbox->snapshot(u"phone"_s);
        const QStringList arguments =
            m_sandbox->withPlaces({u"restore"_s, u"1"_s, u"--yes"_s, u"--json"_s, u"--progress=lines"_s});
        HeldProgram program(*m_sandbox, arguments);
        QVERIFY(program.waitFor("Checking"));
        QCOMPARE(m_sandbox->run(arguments).code, 16);
        program.signal(SIGINT);
        const auto ended = program.release();
        QCOMPARE(ended.code, 130);
        QVERIFY2(ended.err.endsWith("\nStopped, nothing was written to the phone.\n"), ended.err.constData());
        QCOMPARE(ended.lines().last()[u"code"].toInt(), 130);
        QCOMPARE(m_sandbox->snapshot(u"phone"_s), phone);
        QCOMPARE(listed().size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestProgramRestore)
#include "TestProgramRestore.moc"
