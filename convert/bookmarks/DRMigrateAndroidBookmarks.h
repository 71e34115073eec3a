#pragma once

#include "model/backup_entry/DRMigrateAppPacket.h"

class DRDatabase;
struct DRBookmarkTree;

/// Appends bookmarks and their folders to the phone's browser, in "db/browser2.db" of its packet.
class DRMigrateAndroidBookmarks final : public DRMigrateAppPacket {
public:
    using DRMigrateAppPacket::DRMigrateAppPacket;

    /// Writes the source's tree, in one transaction; nothing recognises bookmarks that are there already. Rows that the
    /// database refuses are left out, and told. A packet whose database lacks the table or a column that is written, or
    /// takes none of the bookmarks, is ignored from then on, and told. False when the database cannot be opened or the
    /// transaction is lost.
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;

protected:
    [[nodiscard]] Names names() const override;

private:
    [[nodiscard]] bool mergeTree(DRDatabase& database, const DRBookmarkTree& tree, DRMigrateReport& outcome);
};
