#pragma once

#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "tests/convert/DRConverterFixture.h"

/// An iPhone's bookmarks, written as a line of text.
struct DRBookmarksFixture : DRConverterFixture {
    using DRConverterFixture::DRConverterFixture;

    /// Such as "0: 1 2; 5<0: 3": folder 0 without parent holds the bookmarks 1 and 2, folder 5 in it the bookmark 3.
    static DRBookmarkFolders folders(const QString& text)
    {
        DRBookmarkFolders made;
        for (const QString& part : text.split(u';', Qt::SkipEmptyParts)) {
            const QString head = part.section(u':', 0, 0).trimmed();
            const QString parent = head.section(u'<', 1);
            DRIBookmarkFolder folder{.folderId = head.section(u'<', 0, 0).toLongLong()};
            folder.title = QStringLiteral("F%1").arg(folder.folderId);
            if (!parent.isEmpty()) {
                folder.parentFolderId = parent.toLongLong();
            }
            for (const QString& id : part.section(u':', 1).split(u' ', Qt::SkipEmptyParts)) {
                folder.bookmarkIds.append(id.toLongLong());
            }
            made.push_back(folder);
        }
        return made;
    }

    /// Bookmarks 1 to `count`, called B1 and so on.
    static DRBookmarkMap bookmarks(int count)
    {
        DRBookmarkMap made;
        for (int id = 1; id <= count; ++id) {
            made[id] = {.title = QStringLiteral("B%1").arg(id), .url = QStringLiteral("http://%1/").arg(id)};
        }
        return made;
    }

    [[nodiscard]] std::shared_ptr<DRMigrateIPhoneBookmarks> source(const DRBookmarkMap& bookmarks,
                                                                   const DRBookmarkFolders& folders) const
    {
        auto made = std::make_shared<DRMigrateIPhoneBookmarks>(test.services);
        made->setContent(bookmarks, folders);
        return made;
    }
};
