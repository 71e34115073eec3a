#include "platform/sqlite/DRResultSet.h"

#include "platform/core/DRUtf8.h"
#include "platform/sqlite/DRStatementHandle.h"

#include <sqlite3.h>

#include <utility>

DRResultSet::DRResultSet() = default;

DRResultSet::DRResultSet(std::shared_ptr<DRStatementHandle> handle)
    : m_handle(std::move(handle)), m_runNumber(m_handle->runNumber)
{
}

DRResultSet::DRResultSet(DRResultSet&& other) noexcept = default;

DRResultSet& DRResultSet::operator=(DRResultSet&& other) noexcept
{
    std::swap(m_handle, other.m_handle);
    std::swap(m_runNumber, other.m_runNumber);
    return *this;
}

/// A statement that lives on must not keep its lock on the database because somebody stopped reading early.
DRResultSet::~DRResultSet()
{
    if (m_handle && m_handle->runNumber == m_runNumber) {
        m_handle->stop();
    }
}

bool DRResultSet::next()
{
    return m_handle && m_handle->runNumber == m_runNumber && m_handle->step();
}

bool DRResultSet::hasFailed() const
{
    return !m_handle || m_handle->hasFailed;
}

bool DRResultSet::isNull(const char* column) const
{
    return isNullAt(columnIndex(column).value_or(kNoColumn));
}

qint64 DRResultSet::integer(const char* column) const
{
    return integerAt(columnIndex(column).value_or(kNoColumn));
}

double DRResultSet::real(const char* column) const
{
    return realAt(columnIndex(column).value_or(kNoColumn));
}

QString DRResultSet::string(const char* column) const
{
    return stringAt(columnIndex(column).value_or(kNoColumn));
}

QByteArray DRResultSet::bytes(const char* column) const
{
    return bytesAt(columnIndex(column).value_or(kNoColumn));
}

int DRResultSet::columnCount() const
{
    return m_handle ? sqlite3_column_count(m_handle->statement) : 0;
}

QString DRResultSet::columnName(int index) const
{
    if (index < 0 || index >= columnCount()) {
        return {};
    }
    const char* name = sqlite3_column_name(m_handle->statement, index);
    return name != nullptr ? DRUtf8::decode(QByteArrayView(name)) : QString();
}

std::optional<int> DRResultSet::columnIndex(const char* column) const
{
    const int count = columnCount();
    for (int index = 0; index < count; ++index) {
        const char* name = sqlite3_column_name(m_handle->statement, index);
        if (name != nullptr && sqlite3_stricmp(name, column) == 0) {
            return index;
        }
    }
    return std::nullopt;
}

// SQLite answers NULL for a position that the result does not have, and while there is no row.

bool DRResultSet::isNullAt(int index) const
{
    return !m_handle || sqlite3_column_type(m_handle->statement, index) == SQLITE_NULL;
}

qint64 DRResultSet::integerAt(int index) const
{
    return m_handle ? sqlite3_column_int64(m_handle->statement, index) : 0;
}

double DRResultSet::realAt(int index) const
{
    return m_handle ? sqlite3_column_double(m_handle->statement, index) : 0.0;
}

QString DRResultSet::stringAt(int index) const
{
    if (isNullAt(index)) {
        return {};
    }
    const unsigned char* text = sqlite3_column_text(m_handle->statement, index);
    const int size = sqlite3_column_bytes(m_handle->statement, index);
    return DRUtf8::decode(QByteArrayView(text, text != nullptr ? size : 0));
}

QByteArray DRResultSet::bytesAt(int index) const
{
    if (isNullAt(index)) {
        return {};
    }
    const void* blob = sqlite3_column_blob(m_handle->statement, index);
    const int size = sqlite3_column_bytes(m_handle->statement, index);
    return blob == nullptr ? QByteArray("") : QByteArray(static_cast<const char*>(blob), size);
}
