#pragma once

#include "model/backup_entry/DRMigrateReport.h"

#include <QString>

#include <vector>

struct DRImportedMessage;

/// Collects what of the messages could not be written, for the report. The first of a kind are named one by one, the rest
/// is counted: a database that refuses every message must not make a summary of a million lines.
class DRMessageLosses {
public:
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
    std::vector<DRMigrateSkippedItem> m_named;
    qint64 m_furtherCount = 0;
    qint64 m_attachmentCount = 0;
};
