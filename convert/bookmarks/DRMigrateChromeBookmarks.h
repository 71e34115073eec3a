#pragma once

#include "model/backup_entry/DRMigrateDataType.h"

struct DRBookmarkTree;

/// Puts bookmarks and their folders among Chrome's mobile ones, in "r/app_chrome/Default/Bookmarks" of its packet.
class DRMigrateChromeBookmarks final : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    /// Expands the packet. One without a manifest is ignored from then on: the phone would drop it, so its own stays.
    [[nodiscard]] bool load() override;

    /// Adds the source's tree to the file, or replaces a file that has no place for it; then removes Chrome's own copy
    /// of the file. Warns when Chrome will not read the result. Nothing changes when there is nothing to add. When the
    /// file cannot be written it is left as it was, the packet is ignored from then on, and that is told. Always true.
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;

    /// Packs the packet.
    [[nodiscard]] bool save() override;

private:
    void writeTree(const DRBookmarkTree& tree, DRMigrateReport& outcome);
};
