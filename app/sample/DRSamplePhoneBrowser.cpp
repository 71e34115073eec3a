#include "app/sample/DRSamplePhoneBrowser.h"

#include "app/sample/DRSampleDatabase.h"
#include "app/sample/DRSamplePhone.h"
#include "platform/sqlite/DRDatabase.h"

#include <QDir>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kRoot = 1;
constexpr qint64 kTravelFolder = 3;

struct Bookmark {
    qint64 id;
    QStringView title;
    QStringView url; ///< null for a folder
    qint64 parent;
    qint64 position;
};
constexpr std::array kBookmarks{
    Bookmark{2, u"Vorn Support", u"http://support.vornmobile.example/", kRoot, 0},
    Bookmark{kTravelFolder, u"Travel", {}, kRoot, 1},
    Bookmark{4, u"Timetable \u2013 Z\u00FCrich", u"http://rail.example.ch/plan?from=ZRH&to=BRN", kTravelFolder, 0},
    Bookmark{5, u"News", u"https://news.example.com/", kRoot, 2},
};

bool insertBookmarks(DRDatabase& database, const DRSampleSettings& settings)
{
    DRStatement insert =
        database.prepare(u"INSERT INTO bookmarks (_id, title, url, folder, parent, position, created, modified, dirty) "
                         "VALUES (?1, ?2, ?3, ?3 IS NULL, ?4, ?5, ?6, ?6, 1)"_s);
    const qint64 created = settings.moment.addDays(-30).toMSecsSinceEpoch();
    const bool areInserted =
        std::all_of(kBookmarks.begin(), kBookmarks.end(), [&insert, created](const Bookmark& bookmark) {
            const QString url = bookmark.url.toString();
            return insert.update(
                {bookmark.id, bookmark.title.toString(), url, bookmark.parent, bookmark.position, created});
        });
    return areInserted &&
           database.executeUpdate(
               u"INSERT INTO history (title, url, created, date, visits) VALUES ('News', 'https://news.example.com/', ?1, ?1, 12)"_s,
               {created});
}

} // namespace

bool addPhoneBrowser(DRSamplePhone& phone, const DRSampleSettings& settings)
{
    const DRSampleApp app{.packetId = u"com.android.browser"_s, .versionCode = 19};
    return phone.addPacket(app, [&settings](const QString& appFolder) {
        return QDir().mkpath(appFolder + u"/db"_s) &&
               writeSampleDatabase(appFolder + u"/db/browser2.db"_s, {u"phone_browser"_s}, DRSampleJournal::WriteAhead,
                                   [&settings](DRDatabase& database) { return insertBookmarks(database, settings); });
    });
}
