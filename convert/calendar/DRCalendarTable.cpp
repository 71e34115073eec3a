#include "convert/calendar/DRCalendarTable.h"

using namespace Qt::StringLiterals;

bool DRCalendarTable::hasColumn(DRDatabase& database, const char* table, const char* column)
{
    return database.executeQuery(u"SELECT * FROM %1 LIMIT 0"_s.arg(QLatin1StringView(table)))
        .columnIndex(column)
        .has_value();
}

DRResultSet DRCalendarTable::rowsWithKey(DRDatabase& database, const char* table, const char* key)
{
    // What equals a number that stands in a statement: the plus sign makes the cast value as plain as that. Another
    // value, read as a number, would be 0 or cut off.
    return database.executeQuery(
        u"SELECT * FROM %1 WHERE %2=+CAST(%2 AS INTEGER)"_s.arg(QLatin1StringView(table), QLatin1StringView(key)));
}

qint64 DRCalendarTable::rowCount(DRDatabase& database, const char* table)
{
    DRResultSet row = database.executeQuery(u"SELECT COUNT(*) FROM "_s + QLatin1StringView(table));
    return row.next() ? row.integerAt(0) : 0;
}
