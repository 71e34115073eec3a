#include "convert/contacts/DRAddressBookValues.h"

#include "platform/sqlite/DRDatabase.h"

using namespace Qt::StringLiterals;

namespace {

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
    values.isComplete = values.isComplete && !row.hasFailed();
}

void readParts(DRDatabase& database, DRAddressBookValues& values)
{
    DRResultSet row = database.executeQuery(u"SELECT * FROM ABMultiValueEntry ORDER BY ROWID"_s);
    while (row.next()) {
        if (!row.isNull("parent_id")) {
            values.partsByValue[row.integer("parent_id")].emplace_back(row.integer("key"), row.string("value"));
        }
    }
    values.isComplete = values.isComplete && !row.hasFailed();
}

} // namespace

DRAddressBookValues DRAddressBookValues::read(DRDatabase& database)
{
    DRAddressBookValues values;
    values.labels = readTexts(database, u"ABMultiValueLabel"_s, values.isComplete);
    values.keys = readTexts(database, u"ABMultiValueEntryKey"_s, values.isComplete);
    readValues(database, values);
    readParts(database, values);
    return values;
}

QString DRAddressBookValues::textAt(const QStringList& list, qint64 position)
{
    return position > 0 && position <= list.size() ? list.at(position - 1) : QString();
}
