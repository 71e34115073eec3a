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
    DRFuzzMove().moveRows<DRMigrateIPhoneCalendar, DRMigrateAndroidCalendar>(
        bytes, backup, phone, {u"Events"_s}, [](const DRMigrateReport& report) { return report.written; });
}
