#include "fuzz/DRFuzzTriggerText.h"

#include "fuzz/DRFuzzInput.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// Pieces of text, of which the input chooses by their position.
const QStringList kTimes = u"AFTER AFTER AFTER BEFORE"_s.split(u' ');
const QStringList kEvents = u"INSERT ON sms|INSERT ON pdu|INSERT ON part|INSERT ON threads|UPDATE ON threads|"
                            "UPDATE OF snippet, \"Read\" ON threads|UPDATE ON vrnm_threads|DELETE ON sms"_s.split(u'|');
const QStringList kUpdatedTables = u"threads threads vrnm_threads sms pdu"_s.split(u' ');
const QStringList kAssignedColumns =
    u"message_count read snippet snippet_cs has_attachment date error snippet_type unread_count recipient_ids "
    "_id \"SNIPPET\""_s.split(u' ');
const QStringList kConditionsOfUpdate =
    u"threads._id = new.thread_id|_id = new.thread_id|new.thread_id == vrnm_threads._id|"
    "_id IN (SELECT thread_id FROM pdu WHERE pdu._id = new.mid)|"
    "threads._id IN (SELECT pdu.thread_id FROM part JOIN pdu ON pdu._id=part.mid WHERE part._id=new._id LIMIT 1)|"
    "_id = (SELECT DISTINCT thread_id FROM pdu WHERE new.mid = _id)|_id = new.thread_id AND read = 0|1"_s.split(u'|');
const QStringList kAtoms =
    u"0 1 NULL 'text' 2.5 x'00' new._id new.thread_id new.body new.read new.type new.date new.sub new.m_type "
    "new.msg_box new.ct new.mid old.read _id rowid read date snippet message_count body thread_id "
    "threads._id threads.read threads.snippet vrnm_threads.date sms.read sms.date pdu.msg_box part.ct "
    "main.sms.type \"snippet\" [read] `date` \"text\""_s.split(u' ');
const QStringList kOperators =
    u"+,-,*,/,%,=,!=,<,>=,AND,OR,||,IS,IS NOT,&,|,<<,LIKE,IN,IS DISTINCT FROM,COLLATE nocase =,GLOB,->>"_s.split(u',');
const QStringList kPrefixes = u"|-|NOT |~|+|EXISTS |DISTINCT |CAST "_s.split(u'|');
const QStringList kFunctions =
    u"count max min avg total sum ifnull coalesce nullif length substr lower trim round instr typeof abs "
    "random group_concat changes last_insert_rowid total_changes replace printf quote"_s.split(u' ');
const QStringList kSources =
    u"sms|pdu|part|threads|vrnm_threads|sms LEFT JOIN threads ON threads._id = thread_id|"
    "pdu JOIN part ON pdu._id = part.mid|sms, pdu|sms AS threads|sms NATURAL JOIN pdu|sqlite_master|"
    "pending_msgs|(SELECT 1)"_s.split(u'|');
const QStringList kTails = u"|| LIMIT 1| ORDER BY date| ORDER BY _id DESC LIMIT 1| GROUP BY type"_s.split(u'|');
constexpr int kDeepest = 4;

/// Makes text as the input chooses; at its end it chooses the first of everything, so that texts come to an end.
class Writer {
public:
    explicit Writer(DRFuzzInput& input) : m_input(input) {}

    QString trigger(const QString& name)
    {
        QString text = u"CREATE TRIGGER %1 "_s.arg(name) + word(kTimes) + u' ' + word(kEvents);
        if (m_input.takeByte() % 4 == 1) {
            text += u" WHEN "_s + expression(1);
        }
        text += u" BEGIN "_s;
        for (int statements = m_input.takeByte() % 3; statements >= 0; --statements) {
            text += update() + u"; "_s;
        }
        return text + u"END"_s;
    }

private:
    QString word(const QStringList& words) { return words.at(m_input.takePosition(words.size())); }

    QString update()
    {
        QString text = u"UPDATE "_s + word(kUpdatedTables) + u" SET "_s + assignment();
        for (int more = m_input.takeByte() % 3; more > 0; --more) {
            text += u", "_s + assignment();
        }
        return text + u" WHERE "_s + word(kConditionsOfUpdate);
    }

    QString assignment() { return word(kAssignedColumns) + u" = "_s + expression(0); }

    QString expression(int depth)
    {
        enum class Kind { Atom, Operation, Function, Subselect, Case, Prefixed, Set, Count };
        const auto kind = static_cast<Kind>(m_input.takePosition(static_cast<int>(Kind::Count)));
        const int deeper = depth + 1;
        if (depth >= kDeepest || m_input.isAtEnd()) {
            return word(kAtoms);
        }
        switch (kind) {
        case Kind::Operation: {
            const QString left = expression(deeper);
            const QString operation = word(kOperators);
            return u"(%1 %2 %3)"_s.arg(left, operation, expression(deeper));
        }
        case Kind::Function:
            return function(deeper);
        case Kind::Subselect:
            return u'(' + select(deeper) + u')';
        case Kind::Case: {
            const QString condition = expression(deeper);
            const QString value = expression(deeper);
            return u"CASE WHEN %1 THEN %2 ELSE %3 END"_s.arg(condition, value, expression(deeper));
        }
        case Kind::Prefixed: {
            const QString prefix = word(kPrefixes);
            return prefix + expression(deeper);
        }
        case Kind::Set: {
            const QString value = expression(deeper);
            return u"%1 IN (%2)"_s.arg(value, select(deeper));
        }
        case Kind::Atom:
        case Kind::Count:
            break;
        }
        return word(kAtoms);
    }

    QString function(int depth)
    {
        QString text = word(kFunctions) + u'(';
        const int arguments = m_input.takeByte() % 4;
        if (arguments == 3) {
            return text + u"*)"_s;
        }
        for (int i = 0; i < arguments; ++i) {
            text += (i > 0 ? u", "_s : QString()) + expression(depth);
        }
        return text + u')';
    }

    QString select(int depth)
    {
        const QString value = expression(depth);
        QString text = u"SELECT %1 FROM "_s.arg(value) + word(kSources);
        if (m_input.takeByte() % 2 == 1) {
            text += u" WHERE "_s + expression(depth);
        }
        return text + word(kTails);
    }

    DRFuzzInput& m_input;
};

} // namespace

QString fuzzTriggerText(DRFuzzInput& input, const QString& name)
{
    return Writer(input).trigger(name);
}
