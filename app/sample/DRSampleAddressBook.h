#pragma once

#include "app/sample/DRSamplePerson.h"
#include "app/sample/DRSampleSettings.h"
#include "platform/sqlite/DRDatabase.h"

#include <QHash>
#include <QStringList>

/// Writes people into the tables of "sql/iphone_address_book.sql". Insert them one after the other, then `finish`, which
/// writes the labels and keys that their values number. Every operation answers false when a statement fails.
class DRSampleAddressBook {
public:
    /// The database must outlive this object. `labels` and `keys` come first in their tables, in this order.
    DRSampleAddressBook(DRDatabase& database,
                        DRSampleSettings settings,
                        const QStringList& labels,
                        const QStringList& keys);

    /// Inserts the person's row with this ID and all its values.
    [[nodiscard]] bool insert(qint64 personId, const DRSamplePerson& person);

    [[nodiscard]] bool finish();

private:
    /// Texts that are numbered from 1 as they come.
    class NumberedTexts {
    public:
        explicit NumberedTexts(const QStringList& texts);
        [[nodiscard]] qint64 numberOf(const QString& text);
        [[nodiscard]] const QStringList& texts() const { return m_texts; }

    private:
        QStringList m_texts;
        QHash<QString, qint64> m_numbers;
    };

    [[nodiscard]] bool insertRow(qint64 personId, const DRSamplePerson& person);
    [[nodiscard]] bool insertValue(qint64 personId, qint64 identifier, const DRSampleContactValue& value);
    [[nodiscard]] bool insertTexts(const QString& table, const NumberedTexts& texts);

    DRDatabase& m_database;
    DRSampleSettings m_settings;
    NumberedTexts m_labels;
    NumberedTexts m_keys;
    DRStatement m_insertPerson;
    DRStatement m_insertValue;
    DRStatement m_insertPart;
    qint64 m_valueCount = 0;
};
