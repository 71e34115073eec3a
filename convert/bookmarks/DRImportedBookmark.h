#pragma once

#include <QString>

#include <map>

/// One bookmark, on its way from the iPhone to the phone.
struct DRImportedBookmark {
    QString title; ///< null when the iPhone has none
    QString url;   ///< as the iPhone keeps it; null when it has none

    bool operator==(const DRImportedBookmark&) const = default;
};

/// Bookmarks by their number on the iPhone.
using DRBookmarkMap = std::map<qint64, DRImportedBookmark>;
