#include "convert/messages/DRMessageRows.h"

#include "platform/sqlite/DRDatabase.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

/// The columns that are read, by their position in the result.
enum Column { RowId, Date, IsFromMe, HandleId, Flags, GroupId, AssociationId, Address, Text };
constexpr std::array kNames{"ROWID"_L1,    "date"_L1,           "is_from_me"_L1, "handle_id"_L1, "flags"_L1,
                            "group_id"_L1, "association_id"_L1, "address"_L1,    "text"_L1};

/// Reads only these, for there may be a million rows with many more columns; NULL for those that the table lacks.
QString statementFor(DRDatabase& database)
{
    const DRResultSet all = database.executeQuery(u"SELECT * FROM message LIMIT 0"_s);
    QStringList columns;
    for (const QLatin1StringView name : kNames) {
        columns.append(all.columnIndex(name.data()) ? QString(name) : u"NULL"_s);
    }
    return u"SELECT %1 FROM message"_s.arg(columns.join(u", "_s));
}

DRMessageRow rowOf(const DRResultSet& row)
{
    return {
        .rowId = row.integerAt(RowId),
        .date = row.integerAt(Date),
        .isDateNull = row.isNullAt(Date),
        .isFromMe = row.integerAt(IsFromMe) != 0,
        .hasGroup = !row.isNullAt(GroupId),
        .hasAssociation = !row.isNullAt(AssociationId),
        .handleId = row.integerAt(HandleId),
        .flags = row.integerAt(Flags),
        .groupId = row.integerAt(GroupId),
        .associationId = row.integerAt(AssociationId),
        .address = row.stringAt(Address),
        .text = row.stringAt(Text),
    };
}

} // namespace

bool DRMessageRow::isBefore(const DRMessageRow& other) const
{
    return std::tuple(!isDateNull, date) < std::tuple(!other.isDateNull, other.date);
}

DRMessageRows DRMessageRows::read(DRDatabase& database)
{
    DRMessageRows rows;
    DRResultSet row = database.executeQuery(statementFor(database));
    while (row.next()) {
        rows.m_rows.push_back(rowOf(row));
    }
    rows.m_isComplete = !row.hasFailed();
    if (!std::ranges::is_sorted(rows.m_rows, {}, &DRMessageRow::rowId)) {
        std::ranges::stable_sort(rows.m_rows, {}, &DRMessageRow::rowId);
    }
    return rows;
}

const DRMessageRow* DRMessageRows::find(qint64 rowId) const
{
    if (m_rows.empty()) {
        return nullptr;
    }
    // Where no message was deleted, the row lies as far from the first as its ID does.
    const quint64 distance = static_cast<quint64>(rowId) - static_cast<quint64>(m_rows.front().rowId);
    if (distance < m_rows.size() && m_rows[distance].rowId == rowId) {
        return &m_rows[distance];
    }
    const auto found = std::ranges::lower_bound(m_rows, rowId, {}, &DRMessageRow::rowId);
    return found == m_rows.end() || found->rowId != rowId ? nullptr : &*found;
}
