#pragma once

#include <optional>
#include <vector>

#include <QByteArray>
#include <QString>

#include "platform/media/DRMP4Box.h"
#include "platform/media/DRMP4Path.h"

class DRAbstractData;
class DRMutableAbstractData;

/// One box ("atom") of an MP4 or QuickTime file, or the file itself as the one that holds all others.
///
/// An atom shares the bytes that it was read from and goes on showing them as they were: after a removal, read again.
class DRMP4Atom {
public:
    /// The file itself. None when its boxes, or those down to the positions of its samples, are not well formed:
    /// nothing may be removed from such a file.
    [[nodiscard]] static std::optional<DRMP4Atom> atomWithAbstractData(const DRAbstractData& data);

    /// The boxes at a path below this one, such as "moov/udta", in the order of the file. A part names a type by its
    /// four characters. Empty when there are none; what is not well formed holds no boxes.
    [[nodiscard]] std::vector<DRMP4Atom> allAtomsWithPath(const QString& path) const;

    /// Removes this box, header and all, from the bytes that it was read from. The sizes of the boxes around it, the
    /// number of a list of sample descriptions that it belonged to, and the positions of the file's samples follow.
    /// False, with nothing changed, for the file itself and when the data has no such box at this place.
    [[nodiscard]] bool removeSelfFromMutableData(DRMutableAbstractData& data) const;

    /// Where the box lies: header and content.
    [[nodiscard]] const DRByteRange& range() const { return m_box.range; }

private:
    DRMP4Atom(QByteArray bytes, const DRMP4Box& box, DRMP4Path path);
    [[nodiscard]] std::vector<DRMP4Atom> childrenOfType(quint32 type) const;

    QByteArray m_bytes;
    DRMP4Box m_box;
    DRMP4Path m_path; ///< of this box; empty for the file
};
