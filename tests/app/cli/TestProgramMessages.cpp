#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "tests/app/cli/DRPacketCheck.h"
#include "tests/app/cli/DRProgramTest.h"

using namespace DRMigrateKeys;
using namespace Qt::StringLiterals;

/// Messages through the program, from the sample's backup to the packet on its phone.
class TestProgramMessages : public DRProgramTest {
    Q_OBJECT

private:
    [[nodiscard]] DRPacketCheck check() const { return {*m_sandbox, QStringLiteral(CHECK_MESSAGES)}; }

    /// The phone's packet, expanded into a folder of that name.
    [[nodiscard]] QString expanded(const QString& name) const
    {
        QString folder = m_sandbox->path(name);
        return m_sandbox->run({u"packet"_s, u"expand"_s, check().packet(kTelephonyPacket), folder}).code == 0
                   ? folder
                   : QString();
    }

private Q_SLOTS:

    void everyMessageArrives()
    {
        const QString before = expanded(u"before"_s);
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"messages"_s, u"--json"_s});
        QCOMPARE(ended.code, 0);
        const QJsonValue kind = ended.lines().last()[u"kinds"][kTelephonyPacket];
        QCOMPARE(kind[u"counts"][u"messages"][u"written"], kind[u"counts"][u"messages"][u"found"]);
        const QByteArray found = check().complaints({check().backup(), expanded(u"after"_s), before});
        QVERIFY2(found.isEmpty(), found.constData());
        QVERIFY(!check()
                     .complaints({check().backup(), before, before})
                     .isEmpty()); // the check notices when nothing arrived
    }

    void packetWithoutManifestIsLeftAlone()
    {
        QVERIFY(check().change(kTelephonyPacket, [this](const QString& folder) {
            return QFile::remove(m_sandbox->path(folder + u"/_manifest"_s));
        }));
        const auto phone = m_sandbox->snapshot(u"phone"_s);

        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"messages"_s, u"--json"_s});
        QCOMPARE(ended.code, 20);
        QVERIFY(ended.out.contains("no manifest"));
        QVERIFY(m_sandbox->snapshot(u"phone"_s) == phone);
    }
};

QTEST_GUILESS_MAIN(TestProgramMessages)
#include "TestProgramMessages.moc"
