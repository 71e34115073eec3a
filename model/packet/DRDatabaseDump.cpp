#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRLog.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRSqlText.h"

using namespace Qt::StringLiterals;

namespace {

struct Column {
    QString name;
    QString declaredType;
};

QStringList tableNames(DRDatabase& database)
{
    QStringList names;
    DRResultSet rows = database.executeQuery(u"SELECT name FROM sqlite_master WHERE type='table' ORDER BY name"_s);
    while (rows.next()) {
        names.append(rows.string("name"));
    }
    return names;
}

/// `name` is a plain identifier, so it can stand between quotes.
std::vector<Column> columnsOf(DRDatabase& database, const QString& name)
{
    std::vector<Column> columns;
    DRResultSet rows = database.executeQuery(u"PRAGMA table_info('%1')"_s.arg(name));
    while (rows.next()) {
        columns.push_back({rows.string("name"), rows.string("type")});
    }
    return columns;
}

QString valueText(const DRResultSet& row, const QString& column)
{
    const QByteArray name = column.toUtf8();
    return row.isNull(name.constData()) ? u"(null)"_s : row.string(name.constData());
}

void logRows(DRDatabase& database, const QString& table, const QString& quotedTable, const std::vector<Column>& columns)
{
    DRResultSet rows = database.executeQuery(u"SELECT * FROM %1"_s.arg(quotedTable));
    while (rows.next()) {
        QString text = u"\n\n"_s + table + u":\n"_s;
        for (const Column& column : columns) {
            text += column.name + u" ("_s + column.declaredType + u"): "_s + valueText(rows, column.name) + u'\n';
        }
        qCInfo(lcMigrate).noquote() << text;
    }
}

qint64 countRows(DRDatabase& database, const QString& quotedTable)
{
    DRResultSet rows = database.executeQuery(u"SELECT COUNT(*) FROM %1"_s.arg(quotedTable));
    return rows.next() ? rows.integerAt(0) : 0;
}

/// Logs the table's rows and answers its part of the summary. A table whose name is no plain identifier shows none.
QString dumpTable(DRDatabase& database, const QString& table)
{
    QString summary = u"-----------------------\nTable name:"_s + table + u"\n----\n"_s;
    const std::optional<QString> quotedTable = DRSqlText::quotedName(table);
    if (!quotedTable) {
        return summary + u"Count: 0\n"_s;
    }
    summary += u"Count: %1\n"_s.arg(countRows(database, *quotedTable));
    const std::vector<Column> columns = columnsOf(database, table);
    logRows(database, table, *quotedTable, columns);
    for (const Column& column : columns) {
        summary += column.name + u'\n';
    }
    return summary;
}

} // namespace

void DRMigrateUtils::dumpDatabase(const QString& path)
{
    std::optional<DRDatabase> database = DRDatabase::open(path, DRDatabase::Profile::Source);
    if (!database) {
        qCInfo(lcMigrate).noquote() << u"\n"_s;
        return;
    }
    QString summary;
    const QStringList tables = tableNames(*database);
    for (const QString& table : tables) {
        summary += dumpTable(*database, table);
    }
    qCInfo(lcMigrate).noquote() << summary;
}
