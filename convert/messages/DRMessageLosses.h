#pragma once

#include "model/backup_entry/DRMigrateLosses.h"

#include <QString>

struct DRImportedMessage;

/// Collects what of the messages could not be read or written, for the report.
class DRMessageLosses {
public:
    DRMessageLosses();

    void addMessage(const DRImportedMessage& message, const QString& why);
    void addAttachment(const QString& filename, const QString& why);

    /// Anything else, such as a whole conversation.
    void add(const QString& what, const QString& why);

    [[nodiscard]] qint64 attachmentCount() const { return m_attachmentCount; }

    /// Adds another collection's losses to these.
    void addAll(const DRMessageLosses& others);

    /// Names them all in the report.
    void tell(DRMigrateReport& report) const;

private:
    DRMigrateLosses m_losses;
    qint64 m_attachmentCount = 0;
};
