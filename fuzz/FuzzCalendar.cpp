// Calendars, from the iPhone's database into the phone's: each event is one row more.

#include "app/sample/DRSampleCalendar.h"
#include "app/sample/DRSamplePhoneCalendar.h"
#include "convert/calendar/DRMigrateAndroidCalendar.h"
#include "convert/calendar/DRMigrateIPhoneCalendar.h"
#include "fuzz/DRFuzzMove.h"

using namespace Qt::StringLiterals;

void fuzzOne(QByteArrayView bytes)
{
    static DRFuzzBackup backup(addIPhoneCalendar, {u"HomeDomain-Library/Calendar/Calendar.sqlitedb"_s});
    static DRFuzzPhone phone(addPhoneCalendar, u"com.android.providers.calendar"_s, u"db/calendar.db"_s);
    editOneOf(bytes, backup, phone);
    DRFuzzMove move;
    const auto source = move.load<DRMigrateIPhoneCalendar>(backup);
    if (!source) {
        return;
    }
    const auto before = phone.rowCount(u"Events"_s);
    const auto report = move.merge<DRMigrateAndroidCalendar>(*source, phone.path(), phone.packetID());
    const auto after = phone.rowCount(u"Events"_s);
    if (report && before && after) {
        require(*after == *before + report->written, "each event is a row, and the phone's own stay");
    }
}
