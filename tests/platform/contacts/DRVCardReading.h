#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <algorithm>

/// How a reader takes apart what was written, for the tests.
namespace DRVCardReading {

/// The lines of a card with their folds undone.
inline QStringList unfolded(QByteArray lines)
{
    lines.replace("\r\n ", "");
    return QString::fromUtf8(lines).split(QLatin1StringView("\r\n"), Qt::SkipEmptyParts);
}

/// The value with its escapes undone, in parts where it holds a bare `separator` (none: NUL).
inline QStringList unescaped(const QString& value, QChar separator = QChar(u'\0'))
{
    QStringList parts{QString()};
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value.at(i) == u'\\' && i + 1 < value.size()) {
            ++i;
            parts.last() += value.at(i) == u'n' ? QChar(u'\n') : value.at(i);
        } else if (value.at(i) == separator) {
            parts << QString();
        } else {
            parts.last() += value.at(i);
        }
    }
    return parts;
}

inline qsizetype longestLine(const QByteArray& lines)
{
    qsizetype longest = 0;
    for (const QByteArray& line : lines.split('\n')) {
        longest = std::max(longest, line.size() - (line.endsWith('\r') ? 1 : 0));
    }
    return longest;
}

} // namespace DRVCardReading
