#pragma once

#include "platform/sqlite/DRDatabase.h"

/// A table of the iPhone's calendar database, which may lack it or some of its columns.
namespace DRCalendarTable {

/// Whether the table exists and has the column.
[[nodiscard]] bool hasColumn(DRDatabase& database, const char* table, const char* column);

/// All rows whose key column equals a whole number, read as an integer, in the order of the table. Ask `hasColumn` first:
/// without the column the result counts as failed.
[[nodiscard]] DRResultSet rowsWithKey(DRDatabase& database, const char* table, const char* key);

/// The number of rows; 0 when there is no such table.
[[nodiscard]] qint64 rowCount(DRDatabase& database, const char* table);

} // namespace DRCalendarTable
