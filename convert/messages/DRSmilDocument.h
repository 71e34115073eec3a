#pragma once

#include <QString>

#include <vector>

/// The presentation of a multimedia message: a slide of five seconds for each picture, video or sound, and the text on the
/// last one.
namespace DRSmilDocument {

/// An attachment as the presentation sees it.
struct Item {
    QString mimeType;
    QString filename; ///< stands in the document as it is
};

/// The document for the attachments, in order. Those that are no picture, video or sound are not shown. Kept: names are
/// not escaped.
[[nodiscard]] QString documentOf(const std::vector<Item>& items);

} // namespace DRSmilDocument
