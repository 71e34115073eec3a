#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/app/cli/DRHeldProgram.h"
#include "tests/app/cli/DRProgramTest.h"
#include "tests/support/DRTestTable.h"

#include <pty.h>
#include <utmp.h>

#include <QJsonArray>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

const QString kNotesPacket = u"com.vornmobile.notes"_s;

} // namespace

/// Transfers with the real program: what they tell, refuse, leave behind, and survive.
class TestProgramTransfer : public DRProgramTest {
    Q_OBJECT

private:
    /// The notes of the iPhone in its backup.
    [[nodiscard]] QString storedNotes() const
    {
        const QDir backups(m_sandbox->path(u"backups"_s));
        return backups.filePath(backups.entryList(QDir::Dirs | QDir::NoDotAndDotDot).front()) + u'/' +
               sha1HexString(u"HomeDomain-Library/Notes/notes.sqlite"_s);
    }

private Q_SLOTS:
    void transferTellsAndIsRemembered()
    {
        const QStringList arguments{u"transfer"_s, u"--yes"_s, u"--only"_s, u"notes"_s, u"--json"_s};
        const qint64 found = run({u"inspect"_s, u"--json"_s}).document()[u"kinds"][u"notes"][u"count"].toInteger();
        const auto first = run(arguments);
        QCOMPARE(first.code, 0);
        QList<int> phases;
        for (const QJsonObject& line : first.lines()) {
            const QString type = line[u"type"].toString();
            QVERIFY2(QStringList({u"phase"_s, u"status"_s, u"warning"_s, u"summary"_s}).contains(type),
                     first.out.constData());
            if (type == u"phase") {
                phases << line[u"phase"].toInt();
            }
        }
        QCOMPARE(phases, (QList<int>{1, 2, 4, 8, 16, 32, 16384}));
        const QJsonObject summary = first.lines().last();
        const QJsonValue notes = summary[u"kinds"][kNotesPacket];
        QCOMPARE(notes[u"flags"].toInt(), 0x1f);
        QCOMPARE(notes[u"written"].toInteger(), found);
        QVERIFY(summary[u"phoneBackup"][u"name"].toString().startsWith(u"Tarvex Transfer "));
        QVERIFY(
            QFile::exists(summary[u"phoneBackup"][u"path"].toString() + u'/' + kNotesPacket + u"/fullbackupdata"_s));
        QVERIFY(QDir(m_sandbox->path(u"cache/phone-migrate/TarvexTransfer"_s)).isEmpty());

        const auto phone = m_sandbox->snapshot(u"phone"_s);
        const auto second = run(arguments);
        QCOMPARE(second.code, 16);
        QVERIFY(second.err.contains("notes"));
        QVERIFY(m_sandbox->snapshot(u"phone"_s) == phone);
        QVERIFY(run({u"transfer"_s, u"-n"_s, u"--only"_s, u"notes"_s}).out.contains("would be refused"));
        QCOMPARE(run(QStringList(arguments) << u"--again"_s << u"--keep-work"_s).code, 0);
        QVERIFY(!QDir(m_sandbox->path(u"cache/phone-migrate/TarvexTransfer"_s)).isEmpty());
    }

    void whatCannotMoveIsNamed_data()
    {
        const DRTestTable<QString, bool, QString> row("notesFile", "hasApp", "reason");

        row("not in the backup", u"missing"_s, true, u"not in the backup"_s);
        row("unreadable", u"damaged"_s, true, u"cannot be read"_s);
        row("no app", u"good"_s, false, u"the phone has no app for notes"_s);
    }

    void whatCannotMoveIsNamed()
    {
        QFETCH(QString, notesFile);
        QFETCH(bool, hasApp);
        QFETCH(QString, reason);
        const QString backup =
            u"backups/"_s + QDir(m_sandbox->path(u"backups"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot).front();
        const QString notes = backup + u'/' + sha1HexString(u"HomeDomain-Library/Notes/notes.sqlite"_s);
        QVERIFY(QFile::exists(m_sandbox->path(notes)));
        if (notesFile != u"good") {
            QVERIFY(QFile::remove(m_sandbox->path(notes)));
        }
        if (notesFile == u"damaged") {
            m_sandbox->write(notes, QByteArray(5000, 'x'));
        }
        if (!hasApp) {
            QDir(m_sandbox->path(u"phone/packets/"_s + kNotesPacket)).removeRecursively();
        }
        m_source = m_sandbox->snapshot(u"backups"_s);

        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"notes"_s});
        QCOMPARE(ended.code, 16);
        QVERIFY2(ended.err.contains(reason.toUtf8()), ended.err.constData());
    }

    void failureNamesItsReason_data()
    {
        const DRTestTable<QByteArray, QString> row("packet", "reason");
        row("foreign", "PK\3\4", u"not in the format"_s);
        row("newer", "ANDROID BACKUP\n5\n1\nnone\n", u"version is 5"_s);
        row("encrypted", "ANDROID BACKUP\n1\n1\nAES-256\n", u"encrypted"_s);
        row("damaged", "ANDROID BACKUP\n1\n1\nnone\nx", u"damaged"_s);
    }

    void failureNamesItsReason()
    {
        QFETCH(QByteArray, packet);
        QFETCH(QString, reason);
        m_sandbox->write(u"phone/packets/%1/fullbackupdata"_s.arg(kNotesPacket), packet);
        const auto phone = m_sandbox->snapshot(u"phone"_s);
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"notes"_s, u"--json"_s});
        QCOMPARE(ended.code, 16);
        const QJsonObject last = ended.lines().last();
        QCOMPARE(last[u"errorCode"].toInt(), 18);
        QCOMPARE(last[u"errorState"].toInt(), 1);
        QVERIFY2(last[u"message"].toString().contains(reason), qPrintable(last[u"message"].toString()));
        QCOMPARE(m_sandbox->snapshot(u"phone"_s), phone);
    }

    void restoreThatDoesNotFitLeavesThePhone()
    {
        {
            auto notes = DRDatabase::open(storedNotes(), DRDatabase::Profile::Create);
            // Two megabytes that do not become smaller than one.
            QVERIFY(notes &&
                    notes->executeUpdate(u"UPDATE ZNOTEBODY SET ZCONTENT=hex(randomblob(1200000)) WHERE Z_PK=1"_s));
        }
        m_source = m_sandbox->snapshot(u"backups"_s);
        constexpr int kRoomForTheCheckButNotForThePacket = 1200 * 1024;
        m_sandbox->write(u"phone/phone.json"_s, QByteArray("{\"memoryUsableCapacity\": ") +
                                                    QByteArray::number(kRoomForTheCheckButNotForThePacket) + '}');
        const auto phone = m_sandbox->snapshot(u"phone"_s);
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--json"_s, u"--only"_s, u"notes"_s});
        QCOMPARE(ended.code, 17);
        const QJsonObject last = ended.lines().last();
        QCOMPARE(last[u"errorCode"].toInt(), 19);
        QCOMPARE(last[u"errorState"].toInt(), 2);
        QCOMPARE(last[u"kinds"][kNotesPacket][u"written"].toInt(), 0);
        QVERIFY(last[u"message"].toString().contains(u"not enough space on the phone"_s));
        QCOMPARE(m_sandbox->snapshot(u"phone"_s), phone);
    }

    void dryRunLeavesNoTrace()
    {
        const auto phone = m_sandbox->snapshot(u"phone"_s);
        const auto ended = run({u"transfer"_s, u"--dry-run"_s, u"--json"_s});
        QCOMPARE(ended.code, 0);
        QCOMPARE(ended.lines().first()[u"type"].toString(), u"plan"_s);
        QCOMPARE(ended.lines().last()[u"type"].toString(), u"summary"_s);
        QCOMPARE(run({u"inspect"_s}).code, 0);
        QVERIFY(m_sandbox->snapshot(u"phone"_s) == phone);
        for (const QString& folder : {u"data"_s, u"cache"_s, u"state"_s, u"home"_s}) {
            QVERIFY(!QFileInfo::exists(m_sandbox->path(folder)));
        }
    }

    void oneRunAtATime()
    {
        const QStringList arguments =
            m_sandbox->withPlaces({u"transfer"_s, u"--yes"_s, u"--only"_s, u"notes"_s, u"--json"_s});
        HeldProgram first(*m_sandbox, arguments);
        QVERIFY(first.waitFor("Reading "));
        QCOMPARE(m_sandbox->run(arguments).code, 16);
        const auto ended = first.release();
        QVERIFY2(ended.code == 0, ended.err.constData());
    }

    void interruptedBeforeTheRestore()
    {
        const auto phone = m_sandbox->snapshot(u"phone"_s);
        HeldProgram program(*m_sandbox, m_sandbox->withPlaces({u"transfer"_s, u"--yes"_s, u"--only"_s, u"notes"_s,
                                                               u"--json"_s, u"--progress=lines"_s}));
        QVERIFY(program.waitFor("Backing up"));
        const QString left = u"cache/phone-migrate/TarvexTransfer/packet/db"_s;
        m_sandbox->write(left, "private");
        program.signal(SIGINT);
        const auto ended = program.release();
        QCOMPARE(ended.code, 130);
        QVERIFY2(ended.err.endsWith("\nStopped, nothing was written to the phone.\n"), ended.err.constData());
        QCOMPARE(ended.lines().last()[u"code"].toInt(), 130);
        QVERIFY(m_sandbox->snapshot(u"phone"_s) == phone);
        QVERIFY(!QFileInfo::exists(m_sandbox->path(left)));
        QVERIFY(!QFileInfo::exists(m_sandbox->path(u"data/phone-migrate/transfers.json"_s)));
    }

    void askedOnATerminal()
    {
        for (const auto& [answer, code] : std::map<QByteArray, int>{{"\n", 16}, {"\x03", 130}, {"y\n", 0}}) {
            int master = -1;
            int slave = -1;
            QCOMPARE(::openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
            QProcess process;
            m_sandbox->prepare(process,
                               m_sandbox->withPlaces({u"transfer"_s, u"--only"_s, u"notes"_s, u"--no-color"_s}));
            process.setChildProcessModifier([slave] {
                ::login_tty(slave); // makes Ctrl-C a signal to the program
            });
            process.start();
            ::close(slave);
            QByteArray shown;
            std::array<char, 512> bytes{};
            const auto readSome = [&] {
                const ssize_t count = ::read(master, bytes.data(), bytes.size());
                shown.append(bytes.data(), std::max<ssize_t>(count, 0));
                return count > 0;
            };
            while (!shown.contains("[y/N] ") && readSome()) {
            }
            QCOMPARE(::write(master, answer.constData(), static_cast<std::size_t>(answer.size())),
                     ssize_t{answer.size()});
            while (readSome()) {
            }
            QCOMPARE(DRProgramSandbox::wait(process).code, code);
            QVERIFY2(shown.contains(code == 0 ? "moved" : "nothing was written to the phone.") &&
                         !shown.contains('\x1b'),
                     shown.constData());
            ::close(master);
        }
    }

    void killedRunIsCleanedUp()
    {
        const QStringList arguments =
            m_sandbox->withPlaces({u"transfer"_s, u"--yes"_s, u"--only"_s, u"notes"_s, u"--json"_s});
        HeldProgram killed(*m_sandbox, arguments);
        QVERIFY(killed.waitFor("Reading "));
        killed.signal(SIGKILL);
        QCOMPARE(killed.release().code, -1);
        m_sandbox->write(u"cache/phone-migrate/TarvexTransfer/left"_s, "private");
        QFile::setPermissions(m_sandbox->path(u"cache/phone-migrate/TarvexTransfer"_s), QFile::Permissions(0x7700));

        const auto ended = m_sandbox->run(arguments);
        QVERIFY2(ended.code == 0, ended.err.constData());
        QVERIFY(QDir(m_sandbox->path(u"cache/phone-migrate/TarvexTransfer"_s)).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestProgramTransfer)
#include "TestProgramTransfer.moc"
