#pragma once

#include <QString>

#include <vector>

class DRDatabase;

/// A row of the iPhone's table `message`, with the columns of both layouts; those that a database lacks are 0 or null.
struct DRMessageRow {
    qint64 rowId = 0;
    qint64 date = 0; ///< seconds since 2001 in the conversation layout, since 1970 in the group layout
    bool isDateNull = false;
    bool isFromMe = false;       ///< conversation layout
    bool hasGroup = false;       ///< group layout: whether `groupId` is not NULL
    bool hasAssociation = false; ///< group layout: whether `associationId` is not NULL
    qint64 handleId = 0;         ///< conversation layout
    qint64 flags = 0;            ///< group layout
    qint64 groupId = 0;          ///< group layout
    qint64 associationId = 0;    ///< group layout: the same for the rows that one message was split into
    QString address;             ///< group layout
    QString text;                ///< null when missing

    /// The order of "ORDER BY date": a row without a date comes first.
    [[nodiscard]] bool isBefore(const DRMessageRow& other) const;
};

/// The whole table `message`, read once. A statement for each conversation costs several times as much, and without an
/// index each would search the whole table.
class DRMessageRows {
public:
    [[nodiscard]] static DRMessageRows read(DRDatabase& database);

    /// In the order of their ROWIDs.
    [[nodiscard]] const std::vector<DRMessageRow>& all() const { return m_rows; }

    /// The row with this ROWID; null when there is none.
    [[nodiscard]] const DRMessageRow* find(qint64 rowId) const;

    /// False when the table could not be read to its end.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    std::vector<DRMessageRow> m_rows;
    bool m_isComplete = true;
};
