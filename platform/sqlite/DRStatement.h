#pragma once

#include <memory>

#include "platform/sqlite/DRResultSet.h"
#include "platform/sqlite/DRSqlValue.h"

/// A statement prepared once and run many times with other values. Ends with this object, before its database.
class DRStatement {
public:
    explicit DRStatement(std::shared_ptr<DRStatementHandle> handle);
    DRStatement(DRStatement&& other) noexcept;
    DRStatement& operator=(DRStatement&& other) noexcept;
    ~DRStatement();

    /// The rows for these values, bound in order. The result set before it must be done with: it now shows these rows.
    [[nodiscard]] DRResultSet query(const DRSqlValues& values = {});

    /// Runs the statement to its end with these values, bound in order. False when it fails.
    [[nodiscard]] bool update(const DRSqlValues& values = {});

private:
    std::shared_ptr<DRStatementHandle> m_handle;
};
