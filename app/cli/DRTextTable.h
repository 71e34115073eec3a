#pragma once

#include <vector>

#include <QString>
#include <QStringList>

/// Rows of text in aligned columns, for a terminal. Cells may come from strangers: control characters are replaced,
/// over-long cells are cut, empty ones shown as "-".
class DRTextTable {
public:
    explicit DRTextTable(const QStringList& headings) : m_rows{headings} {}

    /// Adds a row with as many cells as there are headings.
    void add(const QStringList& cells);

    /// All rows, each ended by a line feed.
    [[nodiscard]] QString text() const;

private:
    std::vector<QStringList> m_rows;
};
