#pragma once

#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QFile>

#include <utility>

/// An iPhone's bookmarks, written as a line of text, and the working folder of an app's packet.
struct DRBookmarksFixture {
    explicit DRBookmarksFixture(QString id = {}) : packetID(std::move(id)) {}

    DRTestServices test;
    QString packetID;

    [[nodiscard]] QString path(const QString& relative) const { return test.root.filePath(relative); }
    [[nodiscard]] QString inApp(const QString& file) const
    {
        return path(QStringLiteral("work/%1/apps/%1/%2").arg(packetID, file));
    }

    template <typename T> [[nodiscard]] std::shared_ptr<T> phoneSide() const
    {
        auto phone = std::make_shared<T>(test.services);
        phone->setSourcePath(path(QStringLiteral("phone")));
        phone->setTargetPath(path(QStringLiteral("work")));
        phone->setPacketID(packetID);
        return phone;
    }

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

    static QByteArray contentsOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Makes the folders above, too.
    static bool write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
               file.write(bytes) == bytes.size();
    }
};
