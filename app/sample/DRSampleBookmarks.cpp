#include "app/sample/DRSampleBookmarks.h"

#include "app/sample/DRSampleGuid.h"
#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSampleRandom.h"
#include "app/sample/DRSampleResources.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRDatabase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kSeed = 20140619;
constexpr qint64 kBookmarksPerScale = 120;
constexpr int kBookmarksPerFolder = 12;
constexpr qint64 kBookmark = 0;
constexpr qint64 kFolder = 1;

/// Fills the table from texts/bookmarks.json: the tree that stands there, then further folders in its menu.
class Composer {
public:
    Composer(DRDatabase& database, const DRSampleSettings& settings)
        : m_settings(settings),
          m_texts(QJsonDocument::fromJson(sampleResource(u"texts/bookmarks.json"_s)).object()),
          m_insert(database.prepare(
              u"INSERT INTO bookmarks (id, special_id, parent, type, title, url, num_children, editable, deletable, "
              "order_index, external_uuid, last_modified) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?8, ?9, ?10, ?11)"_s))
    {
    }

    [[nodiscard]] bool run() { return insertNode({.node = m_texts[u"root"], .parent = {}, .order = 0}); }

private:
    struct Place {
        QJsonValue node;
        DRSqlValue parent; ///< NULL for the root
        qint64 order;
    };

    [[nodiscard]] bool insertNode(const Place& place)
    {
        const QJsonValue node = place.node;
        const qint64 id = m_nextId++;
        const QJsonValue children = node[u"children"];
        const bool isFolder = children.isArray();
        const bool isSystems = !node[u"special"].isUndefined();
        const QJsonArray content = isSystems ? withUsualFolders(node) : children.toArray();
        m_bookmarkCount += isFolder ? 0 : 1;
        return m_insert.update({id, node[u"special"].toInteger(), place.parent, isFolder ? kFolder : kBookmark,
                                textOf(node[u"title"]), textOf(node[u"url"]), qint64{content.size()},
                                qint64{!isSystems}, place.order, sampleGuid(u"bookmark %1"_s.arg(id)),
                                DRDates::toReferenceSeconds(m_settings.moment.addDays(-id % 300 - 1))}) &&
               insertChildren(content, id);
    }

    /// Neighbours change places, so that the order of a folder is not the order of its rows.
    [[nodiscard]] bool insertChildren(const QJsonArray& children, qint64 parent)
    {
        qint64 place = 0;
        for (const QJsonValue child : children) {
            if (!insertNode({.node = child, .parent = parent, .order = place++ ^ 1})) {
                return false;
            }
        }
        return true;
    }

    /// The menu comes last and holds what is missing to the wanted count.
    [[nodiscard]] QJsonArray withUsualFolders(const QJsonValue& node)
    {
        QJsonArray content = node[u"children"].toArray();
        if (!node[u"holdsUsualOnes"].toBool()) {
            return content;
        }
        const qint64 wanted = kBookmarksPerScale * m_settings.scale - m_bookmarkCount - bookmarksIn(node);
        for (qint64 left = wanted; left > 0; left -= kBookmarksPerFolder) {
            content += usualFolder(std::min<qint64>(left, kBookmarksPerFolder));
        }
        return content;
    }

    static qint64 bookmarksIn(const QJsonValue& node)
    {
        const QJsonValue children = node[u"children"];
        qint64 count = children.isArray() ? 0 : 1;
        for (const QJsonValue child : children.toArray()) {
            count += bookmarksIn(child);
        }
        return count;
    }

    [[nodiscard]] QJsonObject usualFolder(qint64 count)
    {
        QJsonArray bookmarks;
        for (; count > 0; --count) {
            bookmarks += QJsonObject{{u"title"_s, text(u"titles"_s)}, {u"url"_s, text(u"urls"_s)}};
        }
        return {{u"title"_s, text(u"folders"_s)}, {u"children"_s, bookmarks}};
    }

    [[nodiscard]] QString text(const QString& list)
    {
        QString pattern = m_random.pick(m_texts[list].toVariant().toStringList());
        return pattern.replace(u"{n}"_s, QString::number(1 + m_random.below(900)));
    }

    static DRSqlValue textOf(const QJsonValue& value)
    {
        return value.isString() ? DRSqlValue(value.toString(u""_s)) : DRSqlValue();
    }

    const DRSampleSettings& m_settings;
    QJsonObject m_texts;
    DRSampleRandom m_random{kSeed};
    DRStatement m_insert;
    qint64 m_nextId = 0; // the root's
    qint64 m_bookmarkCount = 0;
};

} // namespace

bool addIPhoneBookmarks(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings)
{
    const auto rows = [&settings](DRDatabase& database) { return Composer(database, settings).run(); };
    return backup.addDatabase({.domain = u"HomeDomain"_s, .path = u"Library/Safari/Bookmarks.db"_s},
                              {u"iphone_bookmarks"_s}, rows);
}
