#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "tests/app/cli/DRProgramTest.h"

using namespace DRMigrateKeys;
using namespace Qt::StringLiterals;

/// Messages through the program, from the sample's backup to the packet on its phone.
class TestProgramMessages : public DRProgramTest {
    Q_OBJECT

private:
    /// The phone's packet, expanded into a folder of that name.
    [[nodiscard]] QString expanded(const QString& name) const
    {
        QString folder = m_sandbox->path(name);
        const QString packet = m_sandbox->path(u"phone/packets/%1/fullbackupdata"_s.arg(kTelephonyPacket));
        return m_sandbox->run({u"packet"_s, u"expand"_s, packet, folder}).code == 0 ? folder : QString();
    }

    /// What an independent reader misses; empty when nothing is missing.
    [[nodiscard]] QByteArray missing(const QString& after, const QString& before) const
    {
        const QDir backups(m_sandbox->path(u"backups"_s));
        const QString backup = backups.filePath(backups.entryList(QDir::Dirs | QDir::NoDotAndDotDot).front());
        QProcess check;
        check.start(QStringLiteral(PYTHON), {u"-B"_s, QStringLiteral(CHECK_MESSAGES), backup, after, before});
        const auto ended = DRProgramSandbox::wait(check);
        return ended.code == 0 ? QByteArray() : "check: " + ended.out + ended.err;
    }

private Q_SLOTS:

    void everyMessageArrives()
    {
        const QString before = expanded(u"before"_s);
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"messages"_s, u"--json"_s});
        QCOMPARE(ended.code, 0);
        const QJsonValue kind = ended.lines().last()[u"kinds"][kTelephonyPacket];
        QCOMPARE(kind[u"counts"][u"messages"][u"written"], kind[u"counts"][u"messages"][u"found"]);
        const QByteArray found = missing(expanded(u"after"_s), before);
        QVERIFY2(found.isEmpty(), found.constData());
        QVERIFY(!missing(before, before).isEmpty()); // the check notices when nothing arrived
    }

    void packetWithoutManifestIsLeftAlone()
    {
        const QString folder = expanded(u"packet"_s);
        QVERIFY(QFile::remove(folder + u"/apps/%1/_manifest"_s.arg(kTelephonyPacket)));
        const QString packet = m_sandbox->path(u"phone/packets/%1/fullbackupdata"_s.arg(kTelephonyPacket));
        QVERIFY(QFile::remove(packet));
        QCOMPARE(m_sandbox->run({u"packet"_s, u"pack"_s, folder, packet}).code, 0);
        const auto phone = m_sandbox->snapshot(u"phone"_s);

        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"messages"_s, u"--json"_s});
        QCOMPARE(ended.code, 20);
        QVERIFY(ended.out.contains("no manifest"));
        QVERIFY(m_sandbox->snapshot(u"phone"_s) == phone);
    }
};

QTEST_GUILESS_MAIN(TestProgramMessages)
#include "TestProgramMessages.moc"
