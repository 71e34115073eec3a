#pragma once

#include "model/backup_entry/DRMigrateAppPacket.h"

struct DRBookmarkTree;

/// Puts bookmarks and their folders among Chrome's mobile ones, in "r/app_chrome/Default/Bookmarks" of its packet.
class DRMigrateChromeBookmarks final : public DRMigrateAppPacket {
public:
    using DRMigrateAppPacket::DRMigrateAppPacket;

    /// Adds the source's tree to the file, or replaces a file that has no place for it; then removes Chrome's own copy
    /// of the file. When Chrome will not read the result, that is warned about and nothing counts as written. Nothing changes when there is nothing to add. When the
    /// file cannot be written it is left as it was, the packet is ignored from then on, and that is told. Always true.
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;

protected:
    [[nodiscard]] Names names() const override;

private:
    void writeTree(const DRBookmarkTree& tree, DRMigrateReport& outcome);
};
