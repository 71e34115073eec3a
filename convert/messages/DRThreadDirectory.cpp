#include "convert/messages/DRThreadDirectory.h"

#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRSqlText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QHash<QString, qint64> rowsByText(DRDatabase& database, const QString& sql, bool& isComplete)
{
    QHash<QString, qint64> rows;
    DRResultSet row = database.executeQuery(sql);
    while (row.next()) {
        const QString text = row.stringAt(1);
        if (!text.isNull() && !rows.contains(text)) {
            rows.insert(text, row.integerAt(0));
        }
    }
    isComplete = isComplete && !row.hasFailed();
    return rows;
}

QHash<qint64, qint64> newestTextMessages(DRDatabase& database, bool& isComplete)
{
    QHash<qint64, qint64> newest;
    DRResultSet row = database.executeQuery(u"SELECT thread_id, MAX(date) FROM sms GROUP BY thread_id"_s);
    while (row.next()) {
        newest.insert(row.integerAt(0), row.integerAt(1));
    }
    isComplete = isComplete && !row.hasFailed();
    return newest;
}

} // namespace

DRThreadDirectory::DRThreadDirectory(DRDatabase& database)
    : m_database(database),
      m_addressIds(rowsByText(database, u"SELECT _id, address FROM canonical_addresses ORDER BY _id"_s, m_isComplete)),
      m_threadIds(rowsByText(database, u"SELECT _id, recipient_ids FROM threads ORDER BY _id"_s, m_isComplete)),
      m_newestTextMessage(newestTextMessages(database, m_isComplete))
{
}

QString DRThreadDirectory::recipientIds(const QStringList& recipients)
{
    QStringList ids;
    for (const QString& recipient : recipients) {
        if (const auto id = addressId(recipient)) {
            ids.append(QString::number(*id));
        }
    }
    return ids.join(u' ');
}

std::optional<qint64> DRThreadDirectory::addressId(const QString& recipient)
{
    const auto wanted = DRSqlText::insideSingleQuotes(recipient);
    if (wanted) {
        if (const auto found = m_addressIds.constFind(*wanted); found != m_addressIds.cend()) {
            return *found;
        }
    }
    if (!m_database.executeUpdate(u"INSERT INTO canonical_addresses (address) VALUES (?)"_s, {recipient}) ||
        m_database.changedRowCount() != 1) {
        return std::nullopt;
    }
    const qint64 id = m_database.lastInsertRowId();
    if (!recipient.isNull() && !m_addressIds.contains(recipient)) {
        m_addressIds.insert(recipient, id);
    }
    return id;
}

std::optional<DRThreadDirectory::Thread> DRThreadDirectory::threadFor(const QString& recipientIds)
{
    const auto known = m_threadIds.constFind(recipientIds);
    if (known == m_threadIds.cend()) {
        const auto id = insertThread(recipientIds);
        return id ? std::optional(Thread{.id = *id}) : std::nullopt;
    }
    DRResultSet row = m_database.executeQuery(u"SELECT message_count FROM threads WHERE _id=?"_s, {*known});
    const bool isThere = row.next();
    return Thread{.id = *known,
                  .messageCount = isThere ? row.integer("message_count") : 0,
                  .newestDate = std::max<qint64>(m_newestTextMessage.value(*known), 0)};
}

std::optional<qint64> DRThreadDirectory::insertThread(const QString& recipientIds)
{
    if (!m_database.executeUpdate(u"INSERT INTO threads (message_count, recipient_ids) VALUES (?, ?)"_s,
                                  {qint64{0}, recipientIds}) ||
        m_database.changedRowCount() != 1) {
        return std::nullopt;
    }
    const qint64 id = m_database.lastInsertRowId();
    m_threadIds.insert(recipientIds, id);
    // The maker's own list of conversations, which other phones do not have.
    static_cast<void>(
        m_database.executeUpdate(u"INSERT INTO vrnm_threads (_id, recipient_ids) VALUES (?, ?)"_s, {id, recipientIds}));
    return id;
}

void DRThreadDirectory::noteTextMessage(qint64 threadId, qint64 dateMilliseconds)
{
    const auto known = m_newestTextMessage.find(threadId);
    if (known == m_newestTextMessage.end()) {
        m_newestTextMessage.insert(threadId, dateMilliseconds);
    } else {
        *known = std::max(*known, dateMilliseconds);
    }
}
