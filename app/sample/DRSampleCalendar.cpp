#include "app/sample/DRSampleCalendar.h"

#include "app/sample/DRSampleCalendarTables.h"
#include "app/sample/DRSampleEventTexts.h"
#include "app/sample/DRSampleIPhoneBackup.h"

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kSeed = 20140617;
constexpr std::size_t kEventsPerScale = 150;

std::vector<DRSampleEvent> composeEvents(const DRSampleSettings& settings)
{
    const DRSampleEventTexts texts(settings);
    DRSampleRandom random(kSeed);
    std::vector<DRSampleEvent> events = texts.hardEvents();
    const std::size_t count = kEventsPerScale * static_cast<std::size_t>(settings.scale);
    for (int number = 0; events.size() < count; ++number) {
        events.push_back(texts.compose(number, random));
    }
    return events;
}

} // namespace

bool addIPhoneCalendar(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings)
{
    const auto rows = [&settings](DRDatabase& database) {
        DRSampleCalendarTables tables(database, settings);
        return tables.insertCalendars() && tables.insertEvents(composeEvents(settings));
    };
    return backup.addDatabase({.domain = u"HomeDomain"_s, .path = u"Library/Calendar/Calendar.sqlitedb"_s},
                              {u"iphone_calendar"_s}, rows);
}
