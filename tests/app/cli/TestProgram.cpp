#include "tests/app/cli/DRProgramTest.h"
#include "tests/support/DRTestTable.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

const QString kNotesPacket = u"com.vornmobile.notes"_s;

QDateTime day(int number)
{
    return {QDate(2014, 5, number), QTime(7, 8, 9), Qt::UTC};
}

} // namespace

/// Drives the program as a person or script does: arguments in, exit code, data and messages out.
class TestProgram : public DRProgramTest {
    Q_OBJECT

private Q_SLOTS:
    void usage_data()
    {
        const DRTestTable<QStringList, int, QString> add("arguments", "code", "said");

        const auto row = [&add](const char* arguments, int code, const char* said) {
            add(arguments, QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts), code,
                QString::fromLatin1(said));
        };
        row("", 2, "--help");
        row("frobnicate", 2, "unknown command frobnicate");
        row("backups --frobnicate", 2, "--frobnicate");
        row("backups -x", 2, "-x");
        row("backups extra", 2, "too many arguments: extra");
        row("backups --only notes", 2, "--only does not go with backups");
        row("backups --json=yes", 2, "takes no value");
        row("backups --log", 2, "--log needs a value");
        row("backups --progress fast", 2, "auto, bar, lines or none");
        row("backups --log /no/such/folder/log", 2, "cannot be written");
        row("packet", 2, "packet needs");
        row("packet show", 2, "packet needs");
        row("packet burn a b", 2, "packet needs");
        row("sample", 2, "folder to write to");
        row("sample x --scale 0", 2, "--scale takes");
        row("transfer --only notes,stamps", 2, "unknown kind \"stamps\"");
        row("transfer --only notes --except photos", 2, "exclude each other");
        row("transfer --json --bogus", 2, "--bogus");
        row("--help", 0, "Usage: phone-migrate <command>");
        row("transfer -h", 0, "--dry-run");
        row("-V", 0, "phone-migrate 0.");
        row("--json backups", 0, "\"backups\"");
        row("transfer -ny --only textMessages,images,notes --quiet", 0, "com.vornmobile.notes");
    }

    void usage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, said);

        const auto ended = arguments.isEmpty() ? m_sandbox->run({}) : run(arguments);
        QCOMPARE(ended.code, code);
        const QByteArray& stream = code == 0 ? ended.out : ended.err;
        QVERIFY2(stream.contains(said.toUtf8()), stream.constData());
        QVERIFY(!ended.err.contains('\x1b') && !ended.err.contains('\r'));
        if (code != 0 && arguments.contains(u"transfer"_s) && arguments.contains(u"--json"_s)) {
            QCOMPARE(ended.lines().last().value(u"type").toString(), u"error"_s);
        }
    }

    void unusablePlaces_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");

        const auto row = [](const char* place, const char* arguments, int code) {
            QTest::addRow("%s: %s", place, arguments)
                << QString::fromLatin1(place) << QString::fromLatin1(arguments).split(u' ') << code;
        };
        row("no folder", "backups", 12);
        row("nothing in it", "backups --json", 12);
        row("nothing in it", "transfer --yes", 12);
        row("nothing in it", "doctor", 12);
        row("encrypted", "backups", 0);
        row("encrypted", "transfer --yes", 13);
        row("encrypted", "inspect backups/a", 13);
        row("too old", "transfer 1 -n", 14);
        row("newer layout", "inspect One", 19);
        row("two usable", "transfer --yes", 2);
        row("", "transfer 7 --yes", 12);
        row("", "inspect ./nowhere", 12);
        row("", "transfer --only notes", 2); // nobody to ask
        row("old phone", "transfer --yes --json", 15);
        row("full phone", "transfer --yes --only notes", 11);
        row("full phone", "transfer -n --only notes", 0);
        row("no phone", "phone --json", 18);
        row("no phone", "transfer --yes --json", 18);
        row("no phone", "doctor --json", 18);
        row("shared working folder", "transfer --yes --only notes", 16);
        row("shared working folder", "doctor", 16);
        row("damaged record", "transfer --yes --only notes", 16);
        row("damaged record", "transfer --yes --only notes --again", 0);
    }

    void unusablePlaces()
    {
        QFETCH(QString, place);
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        makePlace(place);
        const auto phone = m_sandbox->snapshot(u"phone"_s);

        const auto ended = run(arguments);
        QVERIFY2(ended.code == code, ended.err.constData());
        const bool isRefused = code != 0 && arguments.front() != u"doctor";
        QCOMPARE(ended.err.contains("Error: ") && ended.err.contains("\nNext: "), isRefused);
        if (arguments.contains(u"transfer"_s) && arguments.contains(u"--json"_s)) {
            QCOMPARE(ended.lines().last().value(u"code").toInt(), code);
            QCOMPARE(ended.lines().last().value(u"type").toString(), u"error"_s);
            QVERIFY(ended.lines().last().value(u"phoneBackup").isNull());
        }
        QVERIFY(code == 0 || m_sandbox->snapshot(u"phone"_s) == phone);
    }

    void backupsAreListedAndChosen()
    {
        QDir(m_sandbox->path(u"backups"_s)).removeRecursively();
        m_sandbox->makeBackup(u"backups/a"_s, u"Same"_s, u"6.1"_s, day(1));
        m_sandbox->makeBackup(u"backups/b"_s, u"Same"_s, u"6.1"_s, day(2));
        m_sandbox->makeBackup(u"backups/c"_s, u"Secret"_s, u"6.1"_s, day(5), true);
        m_sandbox->makeBackup(u"backups/d"_s, {}, u"6.1"_s, day(4));
        m_sandbox->makeBackup(u"backups/e"_s, u"Evil\x1b[31m"_s, u"3.0"_s, day(3));
        QDir().mkpath(m_sandbox->path(u"backups/no-backup"_s));
        m_source = m_sandbox->snapshot(u"backups"_s);

        QStringList rows;
        for (const QJsonValue backup : run({u"backups"_s, u"--json"_s}).document().value(u"backups").toArray()) {
            rows << QFileInfo(backup[u"path"].toString()).fileName() + u' ' + backup[u"reason"].toString(u"usable"_s) +
                        u' ' + backup[u"lastBackupDate"].toString();
            QCOMPARE(backup[u"usable"].toBool(), backup[u"reason"].isNull());
        }
        QCOMPARE(rows, (QStringList{u"c encrypted 2014-05-05T07:08:09Z"_s, u"d noDeviceName 2014-05-04T07:08:09Z"_s,
                                    u"e tooOld 2014-05-03T07:08:09Z"_s, u"b usable 2014-05-02T07:08:09Z"_s,
                                    u"a superseded 2014-05-01T07:08:09Z"_s}));
        QVERIFY(!run({u"backups"_s}).out.contains('\x1b'));

        // The one usable backup is taken; a name means the offered one; an older one is taken when asked for.
        for (const auto& [argument, folder] : std::map<QString, QString>{{u""_s, u"b"_s},
                                                                         {u"Same"_s, u"b"_s},
                                                                         {u"5"_s, u"a"_s},
                                                                         {u"backups/a"_s, u"a"_s},
                                                                         {u"./backups"_s, u"b"_s}}) {
            const auto ended = run(QStringList{u"inspect"_s, u"--json"_s}
                                   << (argument.isEmpty() ? QStringList{} : QStringList{argument}));
            QCOMPARE(ended.code, 0);
            QCOMPARE(QFileInfo(ended.document()[u"backup"][u"path"].toString()).fileName(), folder);
            QCOMPARE(ended.document()[u"kinds"][u"notes"][u"reason"].toString(), u"notInBackup"_s);
        }
        QCOMPARE(run({u"inspect"_s, u"1"_s}).code, 13);
    }

    void inspectAndPhoneDescribe()
    {
        const QJsonObject inspected = run({u"inspect"_s, u"--json"_s}).document();
        QCOMPARE(inspected[u"version"].toInt(), 1);
        QCOMPARE(inspected[u"kinds"].toObject().keys(),
                 (QStringList{u"bookmarks"_s, u"calendar"_s, u"contacts"_s, u"images"_s, u"music"_s, u"notes"_s,
                              u"textMessages"_s, u"videos"_s, u"voicememos"_s}));
        QCOMPARE(inspected[u"kinds"][u"notes"][u"state"].toString(), u"loaded"_s);
        QVERIFY(inspected[u"kinds"][u"notes"][u"count"].toInt() > 0);
        QVERIFY(inspected[u"bytesNeeded"].toInteger() >= 5LL * 1024 * 1024);

        const QJsonObject phone = run({u"phone"_s, u"--json"_s}).document();
        QVERIFY(phone[u"packets"].toArray().contains(kNotesPacket));
        QVERIFY(phone[u"memoryUsableFreeBytes"].toInteger() < phone[u"memoryUsableCapacity"].toInteger());
        QCOMPARE(run({u"doctor"_s}).code, 0);
    }

    void packetsAreShownExpandedAndPacked()
    {
        const QString packet = m_sandbox->path(u"phone/packets/%1/fullbackupdata"_s.arg(kNotesPacket));
        const QJsonObject shown = run({u"packet"_s, u"show"_s, packet, u"--json"_s}).document();
        QCOMPARE(shown[u"header"].toArray(), (QJsonArray{u"ANDROID BACKUP"_s, u"1"_s, u"1"_s, u"none"_s}));
        QCOMPARE(shown[u"packetID"].toString(), kNotesPacket);
        QCOMPARE(shown[u"files"][0][u"path"].toString(), u"apps/%1/_manifest"_s.arg(kNotesPacket));

        const QString folder = m_sandbox->path(u"expanded"_s);
        QCOMPARE(run({u"packet"_s, u"expand"_s, packet, folder}).code, 0);
        QCOMPARE(run({u"packet"_s, u"expand"_s, packet, folder}).code, 16);
        QCOMPARE(run({u"packet"_s, u"expand"_s, packet, folder, u"--force"_s}).code, 0);
        QCOMPARE(run({u"packet"_s, u"expand"_s, packet, m_sandbox->path(u"."_s), u"--force"_s}).code, 16);
        m_sandbox->write(u"expanded/apps/%1/f/.hidden"_s.arg(kNotesPacket), "x");
        const QString packed = m_sandbox->path(u"packed"_s);
        const auto ended = run({u"packet"_s, u"pack"_s, folder, packed});
        QCOMPARE(ended.code, 0);
        QVERIFY(ended.err.contains(".hidden"));
        QCOMPARE(run({u"packet"_s, u"show"_s, packed, u"--json"_s}).document(), shown);

        m_sandbox->write(u"secret"_s, "ANDROID BACKUP\n1\n1\nAES-256\nx");
        for (const auto& [file, why] : std::map<QString, QByteArray>{{u"secret"_s, "encrypted"},
                                                                     {u"nowhere"_s, "cannot be read"},
                                                                     {u"phone/phone.json"_s, "not in the format"}}) {
            const auto refused = run({u"packet"_s, u"show"_s, file});
            QCOMPARE(refused.code, 16);
            QVERIFY2(refused.err.contains(why), refused.err.constData());
        }
    }

    void sampleIsWrittenToAFreshPlaceOnly()
    {
        QCOMPARE(run({u"sample"_s, u"made"_s, u"--quiet"_s}).code, 0);
        const auto made = m_sandbox->snapshot(u"made"_s);
        QCOMPARE(run({u"sample"_s, u"made"_s}).code, 16);
        QCOMPARE(m_sandbox->snapshot(u"made"_s), made);
    }

private:
    void makePlace(const QString& place)
    {
        const auto describePhone = [this](const QByteArray& json) { m_sandbox->write(u"phone/phone.json"_s, json); };
        const auto replaceBackups = [this] { QDir(m_sandbox->path(u"backups"_s)).removeRecursively(); };
        const std::map<QString, std::function<void()>> places{
            {u"no folder"_s, replaceBackups},
            {u"nothing in it"_s, [&] { replaceBackups(), QDir().mkpath(m_sandbox->path(u"backups/other"_s)); }},
            {u"encrypted"_s,
             [&] { replaceBackups(), m_sandbox->makeBackup(u"backups/a"_s, u"One"_s, u"3.1"_s, day(1), true); }},
            {u"too old"_s,
             [&] { replaceBackups(), m_sandbox->makeBackup(u"backups/a"_s, u"One"_s, u"3.1.3"_s, day(1)); }},
            {u"newer layout"_s,
             [&] {
                 replaceBackups(), m_sandbox->makeBackup(u"backups/a"_s, u"One"_s, u"10.2"_s, day(1));
                 m_sandbox->write(u"backups/a/Manifest.db"_s, "SQLite format 3");
             }},
            {u"two usable"_s, [&] { m_sandbox->makeBackup(u"backups/a"_s, u"Other"_s, u"7.0"_s, day(1)); }},
            {u"old phone"_s, [&] { describePhone(R"({"androidBaseVersion":1})"); }},
            {u"full phone"_s, [&] { describePhone(R"({"memoryUsableCapacity":1048576})"); }},
            {u"no phone"_s, [this] { QDir(m_sandbox->path(u"phone"_s)).removeRecursively(); }},
            {u"shared working folder"_s,
             [this] {
                 QDir().mkpath(m_sandbox->path(u"cache/phone-migrate"_s));
                 QFile::setPermissions(m_sandbox->path(u"cache/phone-migrate"_s), QFile::Permissions(0x7777));
             }},
            {u"damaged record"_s, [this] { m_sandbox->write(u"data/phone-migrate/transfers.json"_s, "{"); }},
        };
        if (!place.isEmpty()) {
            places.at(place)();
        }
        m_source = m_sandbox->snapshot(u"backups"_s);
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "TestProgram.moc"
