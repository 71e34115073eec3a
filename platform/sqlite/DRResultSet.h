#pragma once

#include <memory>
#include <optional>

#include <QByteArray>
#include <QString>

struct DRStatementHandle;

/// The rows of a query, one at a time. A column that the result does not have reads as NULL: databases of older systems
/// lack some. Column names are compared without regard to ASCII case. NULL reads as 0, 0.0, a null string, null bytes.
class DRResultSet {
public:
    /// Without rows, failed.
    DRResultSet();
    explicit DRResultSet(std::shared_ptr<DRStatementHandle> handle);
    DRResultSet(DRResultSet&& other) noexcept;
    DRResultSet& operator=(DRResultSet&& other) noexcept;
    ~DRResultSet();

    /// Moves to the next row. False at the end and on failure.
    [[nodiscard]] bool next();

    /// Whether the statement could not be prepared or run to its end, so that rows may be missing.
    [[nodiscard]] bool hasFailed() const;

    [[nodiscard]] bool isNull(const char* column) const;
    [[nodiscard]] qint64 integer(const char* column) const;
    [[nodiscard]] double real(const char* column) const;

    /// Text as UTF-16. Invalid UTF-8 becomes U+FFFD, NUL characters are left out, a leading U+FEFF stays.
    [[nodiscard]] QString string(const char* column) const;
    [[nodiscard]] QByteArray bytes(const char* column) const;

    /// The columns in the order of the result.
    [[nodiscard]] int columnCount() const;
    [[nodiscard]] QString columnName(int index) const;

    /// The position of the column for the accessors by position; none when the result has no such column. Meant for
    /// loops over many rows.
    [[nodiscard]] std::optional<int> columnIndex(const char* column) const;
    [[nodiscard]] bool isNullAt(int index) const;
    [[nodiscard]] qint64 integerAt(int index) const;
    [[nodiscard]] double realAt(int index) const;
    [[nodiscard]] QString stringAt(int index) const;
    [[nodiscard]] QByteArray bytesAt(int index) const;

private:
    static constexpr int kNoColumn = -1;

    std::shared_ptr<DRStatementHandle> m_handle;
    quint64 m_runNumber = 0; ///< the run of the statement whose rows these are
};
