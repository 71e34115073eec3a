#pragma once

#include "convert/messages/DRAttachmentStore.h"
#include "convert/messages/DRImportedChat.h"
#include "convert/messages/DRMessageLosses.h"
#include "convert/messages/DRThreadDirectory.h"
#include "platform/sqlite/DRDatabase.h"

#include <set>
#include <utility>

/// Writes conversations into the phone's message database, inside a transaction of the caller.
///
/// The phone's triggers count a whole conversation anew at every insert. Where `DRMessageTriggers` proves that they only
/// recompute, they are switched off but for the rows whose effect remains, so that the cost of a message does not grow with
/// the conversation; the tables end up the same. Any other triggers run as they are.
class DRMessageWriter {
public:
    /// How much there is to write; decides whether indexes for the triggers' own queries pay.
    struct Amount {
        qint64 chats = 0;
        qint64 messages = 0;
    };

    /// `appFolder` is the app's folder in the expanded packet. The database must outlive this object.
    DRMessageWriter(DRDatabase& database, const QString& appFolder, const QString& packetID, const Amount& amount);

    /// Removes the temporary indexes and switches triggers on again.
    ~DRMessageWriter();
    Q_DISABLE_COPY_MOVE(DRMessageWriter)

    /// Appends a conversation to the one with the same recipients, or makes one. What cannot be written is left out and
    /// noted in `losses`.
    void insertChatIntoAndroidDatabase(const DRImportedChat& chat);

    /// Whether the transaction was lost, so that nothing more may be written.
    [[nodiscard]] bool isLost() const { return !m_database.isInTransaction(); }

    /// Whether the phone's conversations could be read, so that new messages find theirs. Nothing may be written otherwise.
    [[nodiscard]] bool knowsConversations() const { return m_threads.isComplete(); }

    /// Why the last insert failed or the transaction was lost; null when neither happened.
    [[nodiscard]] const QString& reason() const { return m_reason; }

    /// Removes the temporary indexes; to be called before the transaction is committed. False when that fails.
    [[nodiscard]] bool finish();

    struct Counts {
        qint64 chats = 0;
        qint64 messages = 0;
        qint64 attachments = 0;
    };
    [[nodiscard]] const Counts& counts() const { return m_counts; }
    [[nodiscard]] const DRMessageLosses& losses() const { return m_losses; }
    [[nodiscard]] const QStringList& freshBackupFiles() const { return m_attachments.files(); }

private:
    /// What became of a conversation's messages.
    struct Outcome {
        qint64 inserted = 0;
        qint64 attachments = 0;
        QString snippet; ///< text of the last message that was inserted
        qint64 newestDate = 0;
        DRMessageLosses losses;
        bool isExact = true; ///< false when a row whose triggers were needed was not inserted
    };
    enum class Firing { Every, Remaining };

    [[nodiscard]] Outcome insertAllMessages(const DRImportedChat& chat, const DRThreadDirectory::Thread& thread);
    [[nodiscard]] Outcome
    insertMessages(const DRImportedChat& chat, const DRThreadDirectory::Thread& thread, Firing firing);
    [[nodiscard]] bool
    insertMessageIntoAndroidDatabase(const DRImportedMessage& message, qint64 threadId, Outcome& outcome);
    [[nodiscard]] bool insertTextMessage(const DRImportedMessage& message, qint64 threadId);
    [[nodiscard]] bool
    insertMMSIntoAndroidDatabase(const DRImportedMessage& message, qint64 threadId, Outcome& outcome);
    [[nodiscard]] bool insertAttachmentIntoAndroidDatabase(const DRIMessageAttachment& attachment,
                                                           qint64 pduId,
                                                           const QDateTime& date,
                                                           Outcome& outcome);
    [[nodiscard]] bool
    insertPart(DRStatement& statement, const QString& type, const DRSqlValues& values, Outcome& outcome);
    [[nodiscard]] bool insertRow(DRStatement& statement, const DRSqlValues& values);
    void finishChat(const DRImportedChat& chat, const DRThreadDirectory::Thread& thread, const Outcome& outcome);
    void fire(bool isOn);
    [[nodiscard]] bool createIndexes();

    DRDatabase& m_database;
    DRThreadDirectory m_threads;
    DRAttachmentStore m_attachments;
    QString m_packetID;
    Counts m_counts;
    DRMessageLosses m_losses;
    bool m_mayLeaveOutTriggers = false;
    bool m_hasIndexes = false;
    bool m_isFiring = true;
    Firing m_firing = Firing::Every;
    QString m_reason;
    /// The types of parts whose triggers have run for the conversation: whether missing, and the text.
    std::set<std::pair<bool, QString>> m_firedParts;

    DRStatement m_insertSms;
    DRStatement m_insertPdu;
    DRStatement m_insertAttachmentPart;
    DRStatement m_insertTextPart;
    DRStatement m_insertSmilPart;
};
