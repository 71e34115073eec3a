#pragma once

#include <QLocale>
#include <QString>

/// A number of bytes for people, such as "1.50 MiB". The same in every locale unless one is given: scripts may read the
/// tables, too.
[[nodiscard]] inline QString sizeText(quint64 bytes, const QLocale& locale = QLocale::c())
{
    return locale.formattedDataSize(static_cast<qint64>(bytes));
}
