#pragma once

#include "model/media/DRMigrateMediaDataType.h"

/// What the phone-side media types have in common: nothing to load or save, and the files are those of the iPhone side.
class DRMigrateAndroidMediaDataType : public DRMigrateMediaDataType {
public:
    using DRMigrateMediaDataType::DRMigrateMediaDataType;

    /// Answers true: there is no packet to expand.
    [[nodiscard]] bool load() override;

    /// Takes over the source's files, or none when it has none.
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;

    /// Answers true: there is no packet to write.
    [[nodiscard]] bool save() override;
};
