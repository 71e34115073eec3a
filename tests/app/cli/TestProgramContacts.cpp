#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "tests/app/cli/DRPacketCheck.h"
#include "tests/app/cli/DRProgramTest.h"

#include <QJsonArray>

using namespace DRMigrateKeys;
using namespace Qt::StringLiterals;

/// Contacts and calls through the program, from the sample's backup to the packets on its phone.
class TestProgramContacts : public DRProgramTest {
    Q_OBJECT

private:
    [[nodiscard]] DRPacketCheck check() const { return {*m_sandbox, QStringLiteral(CHECK_CARDS)}; }

    /// The vCard file and the call log of a packet on the phone.
    QStringList filesOnPhone(const QString& packetID) const
    {
        const QString folder = m_sandbox->path(u"look/"_s + packetID);
        const auto expanded = m_sandbox->run({u"packet"_s, u"expand"_s, check().packet(packetID), folder});
        if (expanded.code != 0) {
            qWarning("%s", expanded.err.constData());
        }
        const QString files = folder + u"/apps/%1/f/"_s.arg(packetID);
        return {files + u"full_backup_vcard.vcf"_s, files + u"TempCallLogs"_s};
    }

    /// What an independent reader misses in the files; empty when nothing is missing.
    [[nodiscard]] QByteArray missingIn(const QStringList& files) const
    {
        return check().complaints(QStringList{check().backup()} + files);
    }

private Q_SLOTS:

    void nothingIsMissingInEitherPacket()
    {
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"contacts"_s, u"--json"_s});
        QCOMPARE(ended.code, 0);
        for (const QString& packetID : {kContactsImportPacket, kPhonebookPacket}) {
            const QStringList files = filesOnPhone(packetID);
            const QByteArray missing = missingIn(files);
            QVERIFY2(missing.isEmpty(), missing.constData());

            QFile cards(files.front());
            QVERIFY(cards.open(QIODevice::ReadWrite));
            QVERIFY(cards.resize(cards.readAll().lastIndexOf("BEGIN:VCARD")));
            QVERIFY(!missingIn(files).isEmpty()); // the check notices a card that is gone
        }
    }

    /// A phone that cannot hand out one of its two contacts packets still gets everything in the other.
    void oneFailedContactsPacketIsTolerated()
    {
        const QString failing = u"phone/packets/%1/fullbackupdata"_s.arg(kPhonebookPacket);
        QVERIFY(QFile::remove(m_sandbox->path(failing)));
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"contacts,notes"_s, u"--json"_s});
        QCOMPARE(ended.code, 20);
        const QJsonObject kinds = ended.lines().last()[u"kinds"].toObject();
        QVERIFY(kinds[kContactsImportPacket][u"written"].toInteger() > 0);
        QVERIFY(kinds[kNotesPacket][u"written"].toInteger() > 0);
        QCOMPARE(kinds[kPhonebookPacket][u"written"].toInteger(), 0);
        QCOMPARE(kinds[kPhonebookPacket][u"skipped"].toArray().size(), 1);
        QVERIFY(!QFile::exists(m_sandbox->path(failing)));
        QVERIFY(missingIn(filesOnPhone(kContactsImportPacket)).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestProgramContacts)
#include "TestProgramContacts.moc"
