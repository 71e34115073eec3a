#pragma once

#include <optional>

#include <QHash>
#include <QString>
#include <QStringList>

class DRDatabase;

/// The phone's conversations and the addresses in them, by content: tables `canonical_addresses`, `threads` and
/// `vrnm_threads`. What is there is read once, since neither table has an index on what is looked for.
class DRThreadDirectory {
public:
    /// The database must outlive this object; nobody else may change these tables' rows meanwhile.
    explicit DRThreadDirectory(DRDatabase& database);

    /// Whether the tables could be read to their end; without that, what is there would be made once more.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

    /// The addresses' row numbers in order, joined by single spaces; those that are not there yet are inserted. An address
    /// whose insert fails is left out; empty when none remains. Kept: an address with an odd run of single quotes is
    /// never found, so it gets a new row each time.
    [[nodiscard]] QString recipientIds(const QStringList& recipients);

    struct Thread {
        qint64 id = 0;
        qint64 messageCount = 0;
        qint64 newestDate =
            0; ///< of its text messages, milliseconds since 1970, at least 0; multimedia ones do not count: kept
    };

    /// The conversation with exactly these recipients, made when there is none. None when it cannot be made.
    [[nodiscard]] std::optional<Thread> threadFor(const QString& recipientIds);

    /// Remembers that a text message of this date is in the conversation.
    void noteTextMessage(qint64 threadId, qint64 dateMilliseconds);

private:
    [[nodiscard]] std::optional<qint64> addressId(const QString& recipient);
    [[nodiscard]] std::optional<qint64> insertThread(const QString& recipientIds);

    DRDatabase& m_database;
    bool m_isComplete = true;                  ///< set by what the following are read with
    QHash<QString, qint64> m_addressIds;       ///< by address; of equal ones the first row
    QHash<QString, qint64> m_threadIds;        ///< by recipient IDs; of equal ones the first row
    QHash<qint64, qint64> m_newestTextMessage; ///< by thread
};
