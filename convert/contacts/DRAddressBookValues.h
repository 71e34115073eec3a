#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

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

    /// The parts of a structured value, rows of `ABMultiValueEntry`: texts by key, such as "Street". Neither is empty; of
    /// several rows with one key the last counts.
    using Parts = QMap<QString, QString>;

    QStringList labels; ///< in row order; rows without a text are left out, so that later ones move up
    QHash<qint64, std::vector<Value>> valuesByPerson; ///< in row order
    QHash<qint64, Parts> partsByValue;                ///< by the value's `uid`
    bool isComplete = true; ///< false when a table could not be read to its end, or is not there

    /// Each table is read once, whole: an address book without an index on the person would otherwise be searched from
    /// end to end for every person.
    [[nodiscard]] static DRAddressBookValues read(DRDatabase& database);

    /// The text of a value's label; null when there is none.
    [[nodiscard]] QString labelOf(const Value& value) const;
};
