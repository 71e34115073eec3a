#pragma once

#include "model/backup_entry/DRMigrateAppPacket.h"

class DRDatabase;
struct DRImportedChat;

/// Appends conversations to the phone's message app, in "db/mmssms.db" and "r/app_parts" of its packet.
class DRMigrateAndroidMessages final : public DRMigrateAppPacket {
public:
    using DRMigrateAppPacket::DRMigrateAppPacket;

    /// Expands the packet. One without a manifest is ignored from then on: the phone would drop it, so its own stays.
    /// False when a path is missing, or only a part of a packet with a manifest could be expanded.
    [[nodiscard]] bool load() override;

    /// Appends every conversation of the source, in one transaction; nothing recognises messages that are there already.
    /// A database that is missing, unreadable or without a table `sms` is replaced by an empty one. What cannot be
    /// written is left out, and told. A packet whose database lacks a table or column that is written, or takes none of
    /// the messages, is ignored from then on, and told. False when the database cannot be opened or the transaction is
    /// lost.
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;

    /// A failed step counts only while the packet has a manifest.
    [[nodiscard]] bool hasError() const override { return DRMigrateDataType::hasError() && !manifestMissing(); }

    /// The attachment files that the merge wrote, as paths in the packet.
    [[nodiscard]] const QStringList& freshBackupFiles() const { return m_freshBackupFiles; }
    void setFreshBackupFiles(const QStringList& files) { m_freshBackupFiles = files; }

protected:
    [[nodiscard]] Names names() const override;

private:
    using Chats = std::vector<const DRImportedChat*>;

    [[nodiscard]] bool prepareDatabase(const QString& path, DRMigrateReport& outcome) const;
    [[nodiscard]] bool mergeChats(DRDatabase& database, const Chats& chats, DRMigrateReport& outcome);
    [[nodiscard]] QString writeChats(DRDatabase& database, const Chats& chats, DRMigrateReport& outcome);

    QStringList m_freshBackupFiles;
};
