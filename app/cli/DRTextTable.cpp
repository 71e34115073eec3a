#include "app/cli/DRTextTable.h"

#include "platform/core/DRLog.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestCell = 96;

QString shown(const QString& cell)
{
    const QString clean = withoutControlCharacters(cell);
    if (clean.isEmpty()) {
        return u"-"_s;
    }
    return clean.size() > kLongestCell ? clean.left(kLongestCell - 1) + u'…' : clean;
}

} // namespace

void DRTextTable::add(const QStringList& cells)
{
    QStringList row;
    for (const QString& cell : cells) {
        row << shown(cell);
    }
    m_rows.push_back(row);
}

QString DRTextTable::text() const
{
    QList<qsizetype> widths(m_rows.front().size(), 0);
    for (const QStringList& row : m_rows) {
        for (qsizetype column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths.at(column), row.at(column).size());
        }
    }
    QString text;
    for (const QStringList& row : m_rows) {
        QString line;
        for (qsizetype column = 0; column < row.size(); ++column) {
            line += row.at(column).leftJustified(widths.at(column)) + u"  "_s;
        }
        text += line.trimmed() + u'\n';
    }
    return text;
}
