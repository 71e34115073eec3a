#include "platform/sqlite/DRStatement.h"

#include "platform/sqlite/DRStatementHandle.h"

#include <utility>

DRStatement::DRStatement(std::shared_ptr<DRStatementHandle> handle) : m_handle(std::move(handle)) {}

DRStatement::DRStatement(DRStatement&& other) noexcept = default;

DRStatement& DRStatement::operator=(DRStatement&& other) noexcept = default;

DRStatement::~DRStatement() = default;

DRResultSet DRStatement::query(const DRSqlValues& values)
{
    m_handle->start(values);
    return DRResultSet(m_handle);
}

bool DRStatement::update(const DRSqlValues& values)
{
    m_handle->start(values);
    while (m_handle->step()) {
    }
    return !m_handle->hasFailed;
}
