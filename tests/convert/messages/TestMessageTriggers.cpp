#include "convert/messages/DRMessagesTemplate.h"
#include "convert/messages/DRMessageTriggers.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/support/DRTestTable.h"

#include <QSet>
#include <QTemporaryDir>

#include <algorithm>
#include <iterator>
#include <optional>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned kSeeds = 5;

const QString kSmsHead = u"CREATE TRIGGER t1 AFTER INSERT ON sms BEGIN "_s;
const QString kPduHead =
    u"CREATE TRIGGER t2 AFTER INSERT ON pdu WHEN new.m_type=132 OR new.m_type=130 OR new.m_type=128 BEGIN "_s;
const QString kPartHead = u"CREATE TRIGGER t3 AFTER INSERT ON part "
                          "WHEN new.ct != 'text/plain' AND new.ct != 'application/smil' BEGIN "_s;

/// As the public sources of Android 4 word them: the subselects join the table that is updated.
const QString kCount = u"UPDATE threads SET message_count = (SELECT COUNT(sms._id) FROM sms LEFT JOIN threads ON "
                       "threads._id = thread_id WHERE thread_id = new.thread_id AND sms.type != 3) + "
                       "(SELECT COUNT(pdu._id) FROM pdu LEFT JOIN threads ON threads._id = thread_id WHERE thread_id = "
                       "new.thread_id AND (m_type=132 OR m_type=130 OR m_type=128) AND msg_box != 3) "
                       "WHERE threads._id = new.thread_id; "_s;
const QString kRead = u"UPDATE threads SET read = CASE (SELECT COUNT(*) FROM %1 WHERE read = 0 AND thread_id = "
                      "threads._id) WHEN 0 THEN 1 ELSE 0 END WHERE threads._id = new.thread_id; "_s;
const QString kPublic =
    kSmsHead +
    u"UPDATE threads SET date = (strftime('%s','now') * 1000), snippet = new.body, snippet_cs = 0 "
    "WHERE threads._id = new.thread_id; "_s +
    kCount + kRead.arg(u"sms"_s) + u"END;"_s + kPduHead +
    u"UPDATE threads SET date = (strftime('%s','now') * 1000), snippet = new.sub, snippet_cs = new.sub_cs "
    "WHERE threads._id = new.thread_id; "_s +
    kCount + kRead.arg(u"pdu"_s) + u"END;"_s + kPartHead +
    u"UPDATE threads SET has_attachment=1 WHERE _id IN (SELECT pdu.thread_id FROM part JOIN pdu ON pdu._id=part.mid "
    "WHERE part._id=new._id LIMIT 1); END;"_s;

QString onSms(const QString& statements)
{
    return kSmsHead + statements + u"; END;"_s;
}

QString onPart(const QString& assignment)
{
    return kPartHead +
           u"UPDATE threads SET %1 WHERE _id IN (SELECT thread_id FROM pdu WHERE pdu._id = new.mid); END;"_s.arg(
               assignment);
}

/// A trigger that sets columns of the new message's thread.
QString settingThread(const QString& assignments)
{
    return onSms(u"UPDATE threads SET %1 WHERE _id = new.thread_id"_s.arg(assignments));
}

/// The triggers of the template are kept only for `WithTriggers`.
enum class Base { WithTriggers, Bare };

/// The template with these statements run on it, and with threads that hold read and unread messages.
std::optional<DRDatabase> makePhone(const QString& path, Base base, const QString& script)
{
    if (!writeEmptyMessagesDatabase(path)) {
        return std::nullopt;
    }
    auto database = DRDatabase::open(path, DRDatabase::Profile::Phone);
    QString drops = u"PRAGMA synchronous = OFF; BEGIN;"_s;
    if (base == Base::Bare) {
        DRResultSet rows = database->executeQuery(u"SELECT name FROM sqlite_master WHERE type = 'trigger'"_s);
        while (rows.next()) {
            drops += u"DROP TRIGGER %1;"_s.arg(rows.string("name"));
        }
    }
    const bool isMade = database->executeScript(
        drops +
        u"CREATE TABLE log (line); INSERT INTO threads (_id) VALUES (1), (2), (3);"
        "INSERT INTO vrnm_threads (_id) VALUES (1), (2);"
        "INSERT INTO sms (thread_id, read, type, body) VALUES (2, 0, 1, 'old'), (3, 1, 1, 'older');"
        "INSERT INTO pdu (thread_id, read, m_type, msg_box) VALUES (1, 0, 132, 1);"_s +
        script + u"; COMMIT"_s);
    return isMade ? std::move(database) : std::nullopt;
}

struct Part {
    int pdu = 0; ///< counted from the first pdu of the run
    QString ct;
};

/// An insert of a run: a part, or else a message.
struct Insert {
    bool isSms = false;
    bool isSent = false;
    int thread = 0;
    std::optional<Part> part;
};

std::vector<Insert> makeRun(std::mt19937& random)
{
    const QStringList types{u"text/plain"_s, u"application/smil"_s, u"image/jpeg"_s, u"audio/amr"_s};
    std::vector<Insert> run;
    std::vector<int> threadsOfPdus;
    for (int i = 0; i < 40; ++i) {
        Insert insert{
            .isSms = random() % 3 == 0, .isSent = random() % 2 == 0, .thread = static_cast<int>(random() % 3) + 1};
        if (!threadsOfPdus.empty() && random() % 2 == 0) {
            const auto pdu = random() % threadsOfPdus.size();
            insert.part = Part{.pdu = static_cast<int>(pdu), .ct = types.at(static_cast<qsizetype>(random() % 4))};
            insert.thread = threadsOfPdus[pdu];
        } else if (!insert.isSms) {
            threadsOfPdus.push_back(insert.thread);
        }
        run.push_back(insert);
    }
    return run;
}

/// The inserts after which the triggers must have fired.
QSet<size_t> firingInserts(const std::vector<Insert>& run)
{
    QHash<QPair<int, QString>, size_t> firing;
    for (size_t i = 0; i < run.size(); ++i) {
        const Insert& insert = run[i];
        const QString kind = insert.part ? insert.part->ct : insert.isSms ? u"sms"_s : u"pdu"_s;
        if (!insert.part || !firing.contains({insert.thread, kind})) {
            firing.insert({insert.thread, kind}, i);
        }
    }
    return {firing.cbegin(), firing.cend()};
}

bool insertRow(DRDatabase& database, const Insert& insert, std::vector<qint64>& pdus, size_t i)
{
    if (insert.part) {
        return database.executeUpdate(u"INSERT INTO part (mid, ct) VALUES (?, ?)"_s,
                                      {pdus.at(static_cast<size_t>(insert.part->pdu)), insert.part->ct});
    }
    const qint64 thread = insert.thread;
    const auto number = static_cast<qint64>(i);
    if (insert.isSms) {
        return database.executeUpdate(u"INSERT INTO sms (thread_id, date, read, type, body) VALUES (?, ?, 1, ?, ?)"_s,
                                      {thread, number, qint64{insert.isSent ? 0 : 1}, u"text %1"_s.arg(i)});
    }
    const bool isDone =
        database.executeUpdate(u"INSERT INTO pdu (thread_id, date, msg_box, m_type) VALUES (?, ?, ?, ?)"_s,
                               {thread, number, qint64{insert.isSent ? 2 : 1}, qint64{insert.isSent ? 128 : 132}});
    pdus.push_back(database.lastInsertRowId());
    return isDone;
}

QStringList rowsOf(DRDatabase& database)
{
    QStringList lines;
    for (const auto& table :
         {u"threads"_s, u"vrnm_threads"_s, u"sms"_s, u"pdu"_s, u"part"_s, u"pending_msgs"_s, u"log"_s}) {
        DRResultSet rows = database.executeQuery(u"SELECT * FROM "_s + table);
        while (rows.next()) {
            QStringList values{table};
            for (int i = 0; i < rows.columnCount(); ++i) {
                const bool isFromClock = table.endsWith(u"threads"_s) && rows.columnName(i) == u"date"_s;
                values += rows.isNullAt(i) ? u"NULL"_s : isFromClock ? u"set"_s : rows.stringAt(i);
            }
            lines += values.join(u'|');
        }
    }
    return lines;
}

enum class Firing { All, AsFewAsPromised };

/// The rows after two runs with an update between them, as two conversations that share threads make them; none when
/// something fails. The database is left as it was.
QStringList rowsAfterRuns(DRDatabase& database, Firing firing, unsigned seed)
{
    using Triggers = DRDatabase::Triggers;
    std::mt19937 random(seed);
    bool isDone = database.executeUpdate(u"BEGIN"_s);
    for (int runNumber = 0; runNumber < 2; ++runNumber) {
        const std::vector<Insert> run = makeRun(random);
        const QSet<size_t> fires = firingInserts(run);
        std::vector<qint64> pdus;
        for (size_t i = 0; i < run.size(); ++i) {
            const bool isOn = firing == Firing::All || fires.contains(i);
            isDone = isDone && database.setTriggers(isOn ? Triggers::On : Triggers::Off) &&
                     insertRow(database, run[i], pdus, i);
        }
        isDone = isDone && database.setTriggers(Triggers::On) &&
                 (runNumber > 0 || database.executeUpdate(u"UPDATE threads SET read = 1, has_attachment = 0"_s));
    }
    const QStringList rows = rowsOf(database);
    return database.executeUpdate(u"ROLLBACK"_s) && isDone ? rows : QStringList();
}

struct Case {
    const char* name;
    bool isAccepted;
    QString script;
    Base base = Base::Bare;
};

std::vector<Case> acceptedCases()
{
    return {
        // clang-format off
        {"none", true, {}},
        {"template", true, {}, Base::WithTriggers},
        {"public 4.x", true, kPublic},
        {"quoted names, comments, letter case", true, u"create trigger IF NOT EXISTS main.[after] /* AFTER */ After Insert On \"SMS\" For Each Row -- x\n BEGIN "
            "UPDATE `Threads` SET [snippet] = NEW.\"body\", \"read\"=/*read+*/1 WHERE new.thread_id == \"threads\".[_ID]; END"_s},
        {"functions, main., distinct", true, settingThread(u"snippet = ifnull(substr(new.body, 1, 20), ''), error = (SELECT count(DISTINCT type) FROM main.sms WHERE main.sms.thread_id = main.threads._id)"_s)},
        {"nested subselects", true, settingThread(u"message_count = (SELECT COUNT(*) FROM part WHERE mid IN (SELECT _id FROM pdu WHERE thread_id = threads._id))"_s)},
        {"sms and pdu set different columns", true, settingThread(u"snippet = new.body, error = 1"_s) +
            u"CREATE TRIGGER t2 AFTER INSERT ON pdu BEGIN UPDATE threads SET type = new.msg_box, error = 2, message_count = (SELECT max(date) FROM sms) WHERE _id = new.thread_id; END;"_s},
        {"never fires for ours", true, u"CREATE TRIGGER t AFTER INSERT ON pdu WHEN new.m_type IN (130, '135') BEGIN INSERT INTO log VALUES (new.m_type); END"_s},
        {"fires for unread only", true, u"CREATE TRIGGER t AFTER INSERT ON sms WHEN new.read = 0 BEGIN UPDATE threads SET error = error + 1; END"_s},
        {"always fires, compared as text", true, u"CREATE TRIGGER t AFTER INSERT ON sms WHEN new.\"type\" < '2' BEGIN UPDATE threads SET snippet = new.body WHERE _id = new.thread_id; END"_s},
        {"part without condition", true, u"CREATE TRIGGER t AFTER INSERT ON part BEGIN UPDATE vrnm_threads SET snippet_type = NULL WHERE _id = (SELECT thread_id FROM pdu WHERE new.mid = _id); END"_s},
        {"part with LIKE and comma join", true, u"CREATE TRIGGER t AFTER INSERT ON part WHEN new.ct LIKE 'image/%' BEGIN UPDATE threads SET type = 'a' WHERE threads._id IN (SELECT DISTINCT thread_id FROM part, pdu WHERE new._id = part._id AND mid = pdu._id); END"_s},
        {"update of what is not assigned", true, settingThread(u"snippet = new.body"_s) + u"CREATE TRIGGER u AFTER UPDATE OF read, error ON threads BEGIN INSERT INTO log VALUES (1); END"_s},
        {"update of a table that is not assigned", true, settingThread(u"snippet = new.body"_s) + u"CREATE TRIGGER u AFTER UPDATE ON vrnm_threads BEGIN INSERT INTO log VALUES (1); END"_s},
        {"triggers of other events and tables", true, u"CREATE TRIGGER a BEFORE DELETE ON sms BEGIN INSERT INTO log VALUES (1); END; CREATE TRIGGER b INSERT ON threads BEGIN SELECT RAISE(ABORT, 'no'); END;"
            "CREATE TRIGGER c INSTEAD OF INSERT ON pdu_with_recipient_threads BEGIN INSERT INTO log VALUES (1); END; CREATE TRIGGER d AFTER UPDATE ON sms BEGIN INSERT INTO log VALUES (1); END"_s},
        // clang-format on
    };
}

std::vector<Case> refusedCases()
{
    const QString ownRead = u"read = (SELECT COUNT(*) = 0 FROM sms WHERE sms.thread_id = threads._id AND read = 0)"_s;
    return {
        // clang-format off
        {"counter", false, settingThread(u"message_count = message_count + 1"_s)},
        {"qualified counter", false, settingThread(u"error = threads.error + 1"_s)},
        {"counter in a quoted name", false, settingThread(u"error = 1 + \"ERROR\""_s)},
        {"own column in a subselect that lacks it", false, settingThread(u"error = (SELECT COUNT(*) + snippet_cs FROM sms)"_s)},
        {"own column through a join", false, settingThread(u"error = (SELECT max(error) FROM sms LEFT JOIN threads ON threads._id = thread_id)"_s)},
        {"own table through an alias", false, settingThread(u"error = (SELECT max(sms.error) + 1 FROM threads sms)"_s)},
        {"own table behind a comma", false, settingThread(u"error = (SELECT max(recipient_ids) FROM sms, threads)"_s)},
        {"own columns through NATURAL", false, settingThread(u"message_count = (SELECT COUNT(*) FROM sms NATURAL JOIN threads)"_s)},
        {"own columns through *", false, settingThread(u"message_count = EXISTS (SELECT * FROM threads)"_s)},
        {"the other derived table", false, settingThread(u"snippet = (SELECT snippet || 'x' FROM vrnm_threads)"_s)},
        {"a view behind a comma that is called like a column", false, settingThread(u"error = (SELECT COUNT(*) FROM sms, body)"_s).prepend(u"CREATE VIEW body AS SELECT error FROM threads WHERE error > 1;"_s)},
        {"a view", false, settingThread(u"error = (SELECT COUNT(*) FROM v)"_s).prepend(u"CREATE VIEW v AS SELECT error FROM threads WHERE error > 1;"_s)},
        {"WITH", false, settingThread(u"error = (WITH s AS (SELECT error FROM threads) SELECT COUNT(*) FROM s)"_s)},
        {"UPDATE FROM", false, onSms(u"UPDATE threads SET error = 1 FROM log WHERE _id = new.thread_id"_s)},
        {"random", false, settingThread(u"error = random()"_s)},
        {"window function", false, settingThread(u"error = (SELECT count(*) OVER () FROM sms)"_s)},
        {"what may fail", false, settingThread(u"error = new.body -> 'x'"_s)},
        {"columns as a list", false, settingThread(u"(error, type) = (SELECT 1, 2)"_s)},
        {"full-text insert", false, onSms(u"INSERT INTO words (_id, index_text) VALUES (new._id, new.body)"_s)},
        {"log behind a good statement", false, onSms(u"UPDATE threads SET %1 WHERE _id = new.thread_id; INSERT INTO log VALUES (1)"_s.arg(ownRead))},
        {"RAISE", false, onSms(u"SELECT RAISE(IGNORE) WHERE new.body = ''"_s)},
        {"condition on the body", false, u"CREATE TRIGGER t AFTER INSERT ON sms WHEN new.body != '' BEGIN UPDATE threads SET snippet = new.body WHERE _id = new.thread_id; END"_s},
        {"condition on the kind", false, u"CREATE TRIGGER t AFTER INSERT ON sms WHEN new.type = 1 BEGIN UPDATE threads SET snippet = new.body WHERE _id = new.thread_id; END"_s},
        {"condition with a subselect", false, u"CREATE TRIGGER t AFTER INSERT ON pdu WHEN new.m_type > (SELECT COUNT(*) FROM pdu) BEGIN UPDATE threads SET snippet = 'x' WHERE _id = new.thread_id; END"_s},
        {"BEFORE", false, u"CREATE TRIGGER t BEFORE INSERT ON sms BEGIN UPDATE threads SET snippet = new.body WHERE _id = new.thread_id; END"_s},
        {"no time, which is BEFORE", false, u"CREATE TRIGGER t INSERT ON sms BEGIN UPDATE threads SET snippet = new.body WHERE _id = new.thread_id; END"_s},
        {"another row", false, onSms(u"UPDATE threads SET snippet = new.body WHERE _id = new.thread_id + 1"_s)},
        {"all rows", false, onSms(u"UPDATE threads SET snippet = new.body"_s)},
        {"the row sometimes", false, onSms(u"UPDATE threads SET snippet = new.body WHERE _id = new.thread_id AND new.body != ''"_s)},
        {"another table", false, onSms(u"UPDATE canonical_addresses SET address = new.address WHERE _id = new.thread_id"_s)},
        {"the thread's ID", false, settingThread(u"_id = new.thread_id"_s)},
        {"the thread's ID by another name", false, settingThread(u"rowid = new.thread_id + 1"_s)},
        {"OR IGNORE", false, onSms(u"UPDATE OR IGNORE threads SET read = 1 WHERE _id = new.thread_id"_s)},
        {"table with a check", false, u"DROP TABLE threads; CREATE TABLE threads (_id INTEGER PRIMARY KEY, snippet CHECK (snippet != ''));"_s + settingThread(u"snippet = new.body"_s)},
        {"unique index", false, u"CREATE UNIQUE INDEX i ON threads (snippet, _id);"_s + settingThread(u"snippet = new.body"_s)},
        {"missing column", false, settingThread(u"absent = 1"_s)},
        {"missing table, even when it never fires", false, u"CREATE TRIGGER t AFTER INSERT ON pdu WHEN new.m_type = 135 BEGIN INSERT INTO absent VALUES (1); END"_s},
        {"set off by the update", false, settingThread(u"snippet = new.body"_s) + u"CREATE TRIGGER u AFTER UPDATE OF read, \"Snippet\" ON threads BEGIN INSERT INTO log VALUES (1); END"_s},
        {"set off by every update", false, settingThread(u"snippet = new.body"_s) + u"CREATE TRIGGER u BEFORE UPDATE ON threads WHEN new.read = 0 BEGIN INSERT INTO log VALUES (1); END"_s},
        {"part counts", false, onPart(u"has_attachment = has_attachment + 1"_s)},
        {"part sets what it holds", false, onPart(u"snippet = new.cl"_s)},
        {"part sets what messages set", false, settingThread(u"has_attachment = 0"_s) + onPart(u"has_attachment = 1"_s)},
        {"parts set different values", false, onPart(u"error = 1"_s) + onPart(u"error = 2"_s).replace(u"t3"_s, u"t4"_s).replace(u"!= 'text"_s, u"= 'text"_s)},
        {"part with a condition on its name", false, onPart(u"has_attachment = 1"_s).replace(u"WHEN new.ct"_s, u"WHEN new.cl"_s)},
        {"part updates a thread that no table tells", false, onPart(u"has_attachment = 1"_s).replace(u"thread_id FROM pdu WHERE pdu._id = new.mid"_s, u"new.mid"_s)},
        {"part updates other threads", false, onPart(u"has_attachment = 1"_s).replace(u"pdu._id ="_s, u"pdu._id <"_s)},
        // clang-format on
    };
}

std::vector<Case> cases()
{
    std::vector<Case> all = acceptedCases();
    std::ranges::copy(refusedCases(), std::back_inserter(all));
    return all;
}

} // namespace

class TestMessageTriggers : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void judges_data()
    {
        const DRTestTable<QString, bool, bool> add("script", "hasTemplate", "isAccepted");
        for (const Case& row : cases()) {
            add(row.name, row.script, (row.base == Base::WithTriggers), row.isAccepted);
        }
    }

    /// What is accepted is also left out, and must leave the same tables.
    void judges()
    {
        QFETCH(QString, script);
        QFETCH(bool, hasTemplate);
        QFETCH(bool, isAccepted);
        const QTemporaryDir folder;
        auto phone = makePhone(folder.filePath(u"mmssms.db"_s), hasTemplate ? Base::WithTriggers : Base::Bare, script);
        QVERIFY(phone);
        QCOMPARE(DRMessageTriggers::onlyRecompute(*phone), isAccepted);
        for (unsigned seed = 1; isAccepted && seed <= kSeeds; ++seed) {
            const QStringList expected = rowsAfterRuns(*phone, Firing::All, seed);
            QVERIFY(!expected.isEmpty());
            QCOMPARE(rowsAfterRuns(*phone, Firing::AsFewAsPromised, seed), expected);
        }
    }

    void triggersThatAddUpMayNotBeLeftOut_data()
    {
        const DRTestTable<QString> add("script");
        const QStringList addingUp{u"counter"_s,
                                   u"log behind a good statement"_s,
                                   u"part counts"_s,
                                   u"part sets what messages set"_s,
                                   u"parts set different values"_s,
                                   u"condition on the kind"_s};
        for (const Case& row : cases()) {
            if (addingUp.contains(QLatin1StringView(row.name))) {
                add(row.name, row.script);
            }
        }
    }

    /// The comparison above sees what is lost, so that it proves something.
    void triggersThatAddUpMayNotBeLeftOut()
    {
        QFETCH(QString, script);
        const QTemporaryDir folder;
        auto phone = makePhone(folder.filePath(u"mmssms.db"_s), Base::Bare, script);
        QVERIFY(phone);
        bool isSeen = false;
        for (unsigned seed = 1; seed <= kSeeds; ++seed) {
            isSeen = isSeen ||
                     rowsAfterRuns(*phone, Firing::AsFewAsPromised, seed) != rowsAfterRuns(*phone, Firing::All, seed);
        }
        QVERIFY(isSeen);
    }
};

QTEST_APPLESS_MAIN(TestMessageTriggers)
#include "TestMessageTriggers.moc"
