#include "platform/sqlite/DRDatabase.h"

#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRUtf8.h"
#include "platform/sqlite/DRConnection.h"
#include "platform/sqlite/DRStatementHandle.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

DRDatabase::DRDatabase(std::shared_ptr<DRConnection> connection) : m_connection(std::move(connection)) {}

DRDatabase::DRDatabase(DRDatabase&& other) noexcept = default;

DRDatabase& DRDatabase::operator=(DRDatabase&& other) noexcept = default;

DRDatabase::~DRDatabase() = default;

std::optional<DRDatabase> DRDatabase::open(const QString& path, Profile profile)
{
    auto connection = DRConnection::open(path, profile);
    if (!connection) {
        return std::nullopt;
    }
    return DRDatabase(std::move(connection));
}

DRResultSet DRDatabase::executeQuery(const QString& sql, const DRSqlValues& values)
{
    return prepare(sql).query(values);
}

bool DRDatabase::executeUpdate(const QString& sql, const DRSqlValues& values)
{
    return prepare(sql).update(values);
}

bool DRDatabase::executeScript(const QString& script)
{
    return m_connection->run(DRUtf8::encode(script).constData());
}

DRStatement DRDatabase::prepare(const QString& sql)
{
    return DRStatement(std::make_shared<DRStatementHandle>(m_connection, sql));
}

bool DRDatabase::setTriggers(Triggers triggers)
{
    const int isOn = triggers == Triggers::On ? 1 : 0;
    return sqlite3_db_config(m_connection->handle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, isOn, nullptr) == SQLITE_OK;
}

bool DRDatabase::persistWriteAheadLog()
{
    int isPersistent = 1;
    return sqlite3_file_control(m_connection->handle(), "main", SQLITE_FCNTL_PERSIST_WAL, &isPersistent) == SQLITE_OK &&
           m_connection->run("PRAGMA journal_size_limit=0"); // so that closing empties it
}

QString DRDatabase::lastErrorMessage() const
{
    const QString message = m_connection->lastError();
    return message.isEmpty() ? u"not an error"_s : message;
}

bool DRDatabase::didComputerFail() const
{
    constexpr std::array kCodes{SQLITE_IOERR, SQLITE_FULL, SQLITE_NOMEM};
    return std::ranges::find(kCodes, m_connection->lastErrorCode()) != kCodes.end();
}

qint64 DRDatabase::lastInsertRowId() const
{
    return sqlite3_last_insert_rowid(m_connection->handle());
}

qint64 DRDatabase::changedRowCount() const
{
    return sqlite3_changes64(m_connection->handle());
}

bool DRDatabase::isInTransaction() const
{
    return sqlite3_get_autocommit(m_connection->handle()) == 0;
}

bool DRDatabase::hasTable(const QString& name)
{
    DRResultSet tables = executeQuery(
        u"SELECT 1 FROM sqlite_master WHERE type IN ('table', 'view') AND name = ? COLLATE NOCASE"_s, {name});
    return tables.next();
}

std::optional<bool> DRDatabase::phoneDatabaseHolds(const QString& path, const QString& name)
{
    auto database = open(path, Profile::Phone);
    if (!database) {
        const auto status = statusWithoutFollowing(path);
        const bool isKeptBack = status ? S_ISREG(status->st_mode) : errno != ENOENT;
        return isKeptBack ? std::nullopt : std::optional(false);
    }
    if (database->executeQuery(u"SELECT * FROM sqlite_master WHERE name=?"_s, {name}).next()) {
        return true;
    }
    return database->didComputerFail() ? std::nullopt : std::optional(false);
}
