#pragma once

#include "convert/media/DRVideoCleaner.h"

#include <QString>

/// Takes out of MP4 and QuickTime videos the boxes that the players of old phones stumble over. The cleaned copies lie in
/// the working folder and go with it.
class DRMP4VideoCleaner final : public DRVideoCleaner {
public:
    /// `temporaryFolder`: of the user, in which the working folder lies.
    explicit DRMP4VideoCleaner(QString temporaryFolder);

    /// Replaces the videos (files of exactly one video kind) that hold such boxes by copies without them, with the same
    /// kind, "TargetFileName" and time of last change. A video without such boxes, one that is no well-formed MP4 and one
    /// that cannot be read stay as they are.
    [[nodiscard]] Outcome cleanEntries(const std::vector<DRDCFilePointer>& files) const override;

private:
    QString m_temporaryFolder;
};
