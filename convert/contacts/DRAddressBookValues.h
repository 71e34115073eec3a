#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

class DRDatabase;

/// What an iPhone's address book holds beside the persons' own rows: their numbers, addresses and the like.
struct DRAddressBookValues {
    /// A row of `ABMultiValue`.
    struct Value {
        qint64 uid = 0;
        qint64 property = 0; ///< what it is: see DRPersonReader
        qint64 label = 0;    ///< position in `labels`, counted from 1; anything else means none
        QString value;       ///< null when missing
    };

    /// A part of a structured value, a row of `ABMultiValueEntry`: position in `keys`, counted from 1, and text.
    using Part = std::pair<qint64, QString>;

    QStringList labels; ///< in row order; rows without a text are left out, so that later ones move up
    QStringList keys;   ///< likewise
    QHash<qint64, std::vector<Value>> valuesByPerson; ///< in row order
    QHash<qint64, std::vector<Part>> partsByValue;    ///< by the value's `uid`, in row order
    bool isComplete = true; ///< false when a table could not be read to its end, or is not there

    /// Each table is read once, whole: an address book without an index on the person would otherwise be searched from
    /// end to end for every person.
    [[nodiscard]] static DRAddressBookValues read(DRDatabase& database);

    /// The text at this position of `labels` or `keys`, counted from 1; null when there is none.
    [[nodiscard]] static QString textAt(const QStringList& list, qint64 position);
};
