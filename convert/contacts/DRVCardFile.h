#pragma once

#include "convert/contacts/DRContactCard.h"
#include "model/backup_entry/DREntryList.h"

#include <QString>

#include <functional>
#include <vector>

/// The file of vCards, one after another, in which the phone keeps its contacts. It may be larger than the memory, so
/// that cards are found and copied by their place.
namespace DRVCardFile {

struct Contents {
    std::vector<DRPhoneCard> cards; ///< each from its "BEGIN:VCARD" through the next "END:VCARD"
    bool isReadable = false;        ///< false when there is no such file or it is not UTF-8; there are no cards then
    bool isDamaged = false;         ///< whether text stands outside the cards, as that of a card without an end does
    bool didDiskFail = false;       ///< whether it is not readable because the disk did not answer
    QByteArray version;             ///< of the first card, such as "2.1"; empty when there is none
};

/// Finds the cards of a file, in one pass and bounded memory beside the list of their places. Markers are compared with regard to
/// case. Links are not followed.
[[nodiscard]] Contents read(const QString& path);

/// Answers the picture of a card that has one; null when there is none to be had.
using PictureSource = std::function<QByteArray(const DRContactCard& card)>;

/// Writes the file anew, atomically: each `DRPhoneCard` as it stands in the old file, followed by a line feed, and each
/// `DRContactCard` with its picture, in order. One picture at a time is in memory. False when something cannot be read or
/// written; the file is then what it was.
[[nodiscard]] bool write(const QString& path, const DREntryList& cards, const PictureSource& pictureOf);

} // namespace DRVCardFile
