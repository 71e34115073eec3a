#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/app/cli/DRPacketCheck.h"
#include "tests/app/cli/DRProgramTest.h"
#include "tests/support/DRTestTable.h"

using namespace DRMigrateKeys;
using namespace Qt::StringLiterals;

namespace {

const QString kStore = u"HomeDomain-Library/Safari/Bookmarks.db"_s;
constexpr int kRestorePhase = 16;
constexpr int kDone = 0;
constexpr int kDoneWithSkips = 20;

} // namespace

/// Bookmarks through the program, from the sample's backup to the packets of both browsers of its phone.
class TestProgramBookmarks : public DRProgramTest {
    Q_OBJECT

private:
    [[nodiscard]] DRPacketCheck check() const { return {*m_sandbox, QStringLiteral(CHECK_BOOKMARKS)}; }

    [[nodiscard]] bool giveChrome(const QByteArray& file) const
    {
        return check().change(kChromePacket, [this, &file](const QString& folder) {
            m_sandbox->write(folder + u"/r/app_chrome/Default/Bookmarks"_s, file);
            return true;
        });
    }

    /// The warnings that come before the phone is written.
    [[nodiscard]] static QStringList earlyWarnings(const DRProgramSandbox::Ended& ended)
    {
        QStringList warnings;
        for (const QJsonObject& line : ended.lines()) {
            if (line[u"phase"].toInt() == kRestorePhase) {
                return warnings;
            }
            if (line[u"type"] == u"warning"_s) {
                warnings << line[u"message"].toString();
            }
        }
        return {};
    }

private Q_SLOTS:
    void everyBookmarkArrives_data()
    {
        // chromeFile: what Chrome has; null for what the sample gives it
        // sql: a change of the iPhone's bookmarks
        // isLoss: of those in Chrome
        const DRTestTable<QByteArray, QString, QString, bool> add("chromeFile", "sql", "warning", "isLoss");
        const QString roots = uR"({"roots":{"bookmark_bar":{"children":[]},"synced":{"children":[%1]}},"version":1})"_s;
        const auto row = [&add](const char* what, const QString& chromeFile, const QString& sql,
                                const QString& warning) {
            add(what, chromeFile.toLatin1(), sql, warning, !sql.isEmpty());
        };
        add("as they are", {}, {}, {}, false);
        row("an empty list in Chrome", roots.arg(u""_s), {}, {});
        row("a checksum at the end", roots.arg(u"{}"_s).chopped(1) + u",\"checksum\":\"0\"}"_s, {}, {});
        row("no list in Chrome", u"{\"roots\":{}}"_s, {}, u"replaced"_s);
        row("Chrome's file is no text", u"{\"synced\": {\"children\": [ \u00FF ]}}"_s, {}, u"replaced"_s);
        row("a double quote", roots.arg(u""_s), u"UPDATE bookmarks SET title = 'say \"yes\"' WHERE title = 'News'"_s,
            u"say \"yes\""_s);
    }

    void everyBookmarkArrives()
    {
        QFETCH(const QByteArray, chromeFile);
        QFETCH(const QString, sql);
        QFETCH(const QString, warning);
        QFETCH(const bool, isLoss);
        QVERIFY(chromeFile.isNull() || giveChrome(chromeFile));
        if (!sql.isEmpty()) {
            auto store = DRDatabase::open(check().stored(kStore), DRDatabase::Profile::Create);
            QVERIFY(store && store->executeUpdate(sql) && store->changedRowCount() > 0);
        }
        m_source = m_sandbox->snapshot(u"backups"_s);

        const QJsonValue inspected = run({u"inspect"_s, u"--json"_s}).document()[u"kinds"][u"bookmarks"];
        QCOMPARE(inspected[u"count"].toInt(), 120);
        QCOMPARE(inspected[u"folders"].toInt(), 22); // without the empty ones and the root

        const QString browserBefore = check().kept(kBrowserPacket);
        const QString chromeBefore = check().kept(kChromePacket);
        const QString began = QString::number(QDateTime::currentMSecsSinceEpoch());
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"bookmarks"_s, u"--json"_s});
        QVERIFY2(ended.code == (isLoss ? kDoneWithSkips : kDone), ended.out.constData());
        const QString warnings = earlyWarnings(ended).join(u'\n');
        QVERIFY2(warning.isNull() ? warnings.isEmpty() : warnings.contains(warning), ended.out.constData());

        const QString browser = check().packet(kBrowserPacket);
        const QString chrome = check().packet(kChromePacket);
        const QStringList given{check().backup(), began};
        const QByteArray found = check().complaints(given + QStringList{browser, browserBefore, chrome, chromeBefore});
        QVERIFY2(found.isEmpty(), found.constData());
        // The check notices when nothing arrived in one of them.
        QVERIFY(!check().complaints(given + QStringList{browserBefore, browserBefore, chrome, chromeBefore}).isEmpty());
        QVERIFY(!check().complaints(given + QStringList{browser, browserBefore, chromeBefore, chromeBefore}).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestProgramBookmarks)
#include "TestProgramBookmarks.moc"
