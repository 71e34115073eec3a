#pragma once

#include "platform/device/DRDCFileProcessor.h"

#include <memory>

/// Turns a playlist into an M3U file: UTF-8, for each song that reached the phone a line "#EXTINF:seconds,Artist - Title"
/// and its place relative to the playlist's folder. To be copied after its songs, whose "PlaceOnPhone" it reads.
class DRMDFileProcessorCreateM3U final : public DRDCFileProcessor {
public:
    [[nodiscard]] static std::shared_ptr<const DRMDFileProcessorCreateM3U> fileProcessor();

    /// The text for a playlist with "FileReferences" and "TargetPath"; none when no song of it reached the phone.
    [[nodiscard]] std::optional<QByteArray> contentForFile(const DRDCFile& file) const override;
};
