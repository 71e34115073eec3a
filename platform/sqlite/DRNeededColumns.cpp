#include "platform/sqlite/DRNeededColumns.h"

#include "platform/sqlite/DRDatabase.h"

using namespace Qt::StringLiterals;

QString DRNeededColumns::lackIn(DRDatabase& database) const
{
    const QString name = QString::fromLatin1(table);
    const DRResultSet rows = database.executeQuery(u"SELECT * FROM %1 LIMIT 0"_s.arg(name));
    for (const char* column : columns) {
        if (!rows.columnIndex(column)) {
            return database.hasTable(name) ? name + u'.' + QString::fromLatin1(column) : name;
        }
    }
    return {};
}

QString DRNeededColumns::firstLackIn(DRDatabase& database, std::span<const DRNeededColumns> tables)
{
    for (const DRNeededColumns& needed : tables) {
        if (QString lack = needed.lackIn(database); !lack.isNull()) {
            return lack;
        }
    }
    return {};
}
