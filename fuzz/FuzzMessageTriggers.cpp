// The proof that a phone's triggers only recompute: where it lets them be left out, the messages' tables must end up as they do
// with all of them firing. The input chooses the triggers.

#include "app/sample/DRSampleMessages.h"
#include "app/sample/DRSamplePhoneTelephony.h"
#include "convert/messages/DRMessageTriggers.h"
#include "convert/messages/DRMigrateAndroidMessages.h"
#include "convert/messages/DRMigrateIPhoneMessages.h"
#include "fuzz/DRFuzzMove.h"
#include "fuzz/DRFuzzTriggerText.h"
#include "platform/sqlite/DRDatabase.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

using Profile = DRDatabase::Profile;

constexpr int kMostTriggers = 3;

/// A trigger of no effect that no proof understands.
const QString kNotUnderstood = u"CREATE TRIGGER not_understood AFTER INSERT ON sms BEGIN SELECT 1; END"_s;

QStringList triggersFrom(QByteArrayView bytes)
{
    DRFuzzInput input(bytes);
    QStringList triggers;
    for (int i = 0; i < kMostTriggers && !input.isAtEnd(); ++i) {
        triggers.append(fuzzTriggerText(input, u"fuzz%1"_s.arg(i)));
    }
    return triggers;
}

/// The phone's database without its own triggers.
QByteArray imageWithoutTriggers(DRFuzzPhone& phone)
{
    phone.reset();
    {
        auto database = DRDatabase::open(phone.database(), Profile::Phone);
        QString script;
        if (database) {
            DRResultSet row = database->executeQuery(u"SELECT name FROM sqlite_master WHERE type = 'trigger'"_s);
            while (row.next()) {
                script += u"DROP TRIGGER %1;"_s.arg(row.string("name"));
            }
        }
        require(!script.isEmpty() && database->executeScript(script), "the phone's triggers can be dropped");
    }
    return contentOf(phone.database());
}

/// Those that SQLite does not accept are left out.
void addTriggers(DRDatabase& database, const QStringList& triggers)
{
    for (const QString& trigger : triggers) {
        static_cast<void>(database.executeUpdate(trigger));
    }
}

/// What the triggers see or change, but for the names that attachments are given by chance.
QStringList contentOfTables(const QString& path)
{
    auto database = DRDatabase::open(path, Profile::Phone);
    require(database.has_value(), "the phone's database can be opened");
    QStringList content;
    for (const QString& table : {u"threads"_s, u"vrnm_threads"_s, u"sms"_s, u"pdu"_s}) {
        DRResultSet row = database->executeQuery(u"SELECT * FROM %1 ORDER BY _id"_s.arg(table));
        while (row.next()) {
            QString line = table;
            for (int i = 0; i < row.columnCount(); ++i) {
                line += u'|' + (row.isNullAt(i) ? u"NULL"_s : row.stringAt(i));
            }
            content.append(line);
        }
    }
    return content;
}

/// The phone of the sample with triggers chosen by the input.
class Trial {
public:
    /// Whether the proof lets the triggers be left out.
    [[nodiscard]] bool isProved(const QStringList& triggers)
    {
        makePhone();
        auto database = DRDatabase::open(m_phone.database(), Profile::Phone);
        require(database && database->executeUpdate(u"BEGIN"_s), "the phone's database can be opened");
        addTriggers(*database, triggers);
        return DRMessageTriggers::onlyRecompute(*database);
    }

    /// The tables after the messages were written.
    [[nodiscard]] QStringList contentAfterMerge(const DRMigrateDataType& source, const QStringList& triggers)
    {
        makePhone();
        {
            auto database = DRDatabase::open(m_phone.database(), Profile::Phone);
            require(database.has_value(), "the phone's database can be opened");
            addTriggers(*database, triggers);
        }
        static_cast<void>(m_move.merge<DRMigrateAndroidMessages>(source, m_phone.path(), m_phone.packetID()));
        return contentOfTables(m_phone.database());
    }

    [[nodiscard]] DRFuzzMove& move() { return m_move; }

private:
    void makePhone()
    {
        m_phone.reset();
        QFile file(m_phone.database());
        require(file.open(QIODevice::WriteOnly) && file.write(m_image) == m_image.size(), "a database can be written");
    }

    DRFuzzPhone m_phone{addPhoneTelephony, u"com.android.providers.telephony"_s, u"db/mmssms.db"_s};
    QByteArray m_image = imageWithoutTriggers(m_phone);
    DRFuzzMove m_move;
};

std::unique_ptr<DRMigrateIPhoneMessages> messagesOfSample(DRFuzzMove& move)
{
    DRFuzzBackup backup(addIPhoneMessages, {u"HomeDomain-Library/SMS/sms.db"_s});
    auto messages = move.load<DRMigrateIPhoneMessages>(backup);
    require(messages != nullptr, "the sample's messages can be read");
    return messages;
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    static Trial trial;
    static const auto messages = messagesOfSample(trial.move());
    const QStringList triggers = triggersFrom(bytes);
    if (!trial.isProved(triggers)) {
        return;
    }
    require(trial.contentAfterMerge(*messages, triggers) ==
                trial.contentAfterMerge(*messages, triggers + QStringList{kNotUnderstood}),
            "leaving triggers out changes nothing");
}
