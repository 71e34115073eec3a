#include "convert/contacts/DRAddressBookValues.h"

#include "platform/sqlite/DRDatabase.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The text at this position, counted from 1; null when there is none.
QString textAt(const QStringList& list, qint64 position)
{
    return position > 0 && position <= list.size() ? list.at(position - 1) : QString();
}

/// Without these columns nothing can be found, whatever the system's version.
bool hasColumns(const DRResultSet& rows, std::initializer_list<const char*> names)
{
    return std::ranges::all_of(names, [&rows](const char* name) { return rows.columnIndex(name).has_value(); });
}

/// In the order of the rows, which the unique index on the texts would otherwise turn into that of the alphabet.
QStringList readTexts(DRDatabase& database, const QString& table, bool& isComplete)
{
    QStringList texts;
    DRResultSet row = database.executeQuery(u"SELECT value FROM "_s + table + u" ORDER BY ROWID"_s);
    while (row.next()) {
        if (!row.isNull("value")) {
            texts.append(row.string("value"));
        }
    }
    isComplete = isComplete && !row.hasFailed();
    return texts;
}

void readValues(DRDatabase& database, DRAddressBookValues& values)
{
    DRResultSet row = database.executeQuery(u"SELECT * FROM ABMultiValue ORDER BY ROWID"_s);
    while (row.next()) {
        if (!row.isNull("record_id")) {
            values.valuesByPerson[row.integer("record_id")].push_back({.uid = row.integer("UID"),
                                                                       .property = row.integer("property"),
                                                                       .label = row.integer("label"),
                                                                       .value = row.string("value")});
        }
    }
    values.isComplete =
        values.isComplete && !row.hasFailed() && hasColumns(row, {"UID", "record_id", "property", "value"});
}

void readParts(DRDatabase& database, DRAddressBookValues& values)
{
    const QStringList keys = readTexts(database, u"ABMultiValueEntryKey"_s, values.isComplete);
    DRResultSet row = database.executeQuery(u"SELECT * FROM ABMultiValueEntry ORDER BY ROWID"_s);
    while (row.next()) {
        const QString key = textAt(keys, row.integer("key"));
        const QString text = row.string("value");
        if (!row.isNull("parent_id") && !key.isEmpty() && !text.isEmpty()) {
            values.partsByValue[row.integer("parent_id")].insert(key, text);
        }
    }
    values.isComplete = values.isComplete && !row.hasFailed() && hasColumns(row, {"parent_id", "key", "value"});
}

} // namespace

DRAddressBookValues DRAddressBookValues::read(DRDatabase& database)
{
    DRAddressBookValues values;
    values.labels = readTexts(database, u"ABMultiValueLabel"_s, values.isComplete);
    readValues(database, values);
    readParts(database, values);
    return values;
}

QString DRAddressBookValues::labelOf(const Value& value) const
{
    return textAt(labels, value.label);
}
