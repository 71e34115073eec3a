#pragma once

#include <QLocale>
#include <QString>

/// A number of bytes, such as "1.50 MiB", for tables that scripts may read, too: the same everywhere.
[[nodiscard]] inline QString sizeText(quint64 bytes)
{
    return QLocale::c().formattedDataSize(static_cast<qint64>(bytes));
}

/// The same in a person's language, never broken between number and unit.
[[nodiscard]] inline QString sizeText(quint64 bytes, const QLocale& locale)
{
    return locale.formattedDataSize(static_cast<qint64>(bytes)).replace(QChar::Space, QChar::Nbsp);
}
