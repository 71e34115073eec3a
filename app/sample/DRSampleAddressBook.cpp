#include "app/sample/DRSampleAddressBook.h"

#include "app/sample/DRSampleGuid.h"
#include "platform/core/DRDates.h"

#include <algorithm>
#include <map>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kDaysInUse = 380; // between the first and the last change of the address book

QString insertPersonText()
{
    QString columns = u"INSERT INTO ABPerson (ROWID, Kind, StoreID, CreationDate, ModificationDate, guid, FirstSort, "
                      "LastSort, FirstSortSection, LastSortSection"_s;
    QString values = u") VALUES (?, ?, 0, ?, ?, ?, ?, ?, ?, ?"_s;
    for (const QStringView column : kSamplePersonColumns) {
        columns += u", "_s + column.toString();
        values += u", ?"_s;
    }
    return columns + values + u')';
}

/// Under which the phone lists a person: the first part that there is.
QString sortText(const DRSamplePerson& person, const QString& first, const QString& second)
{
    const QString both = (person.columns.value(first) + u' ' + person.columns.value(second)).trimmed();
    return both.isEmpty() ? person.columns.value(u"Organization"_s) : both;
}

QString section(const QString& sortText)
{
    const bool isLetter = !sortText.isEmpty() && sortText.front().isLetter();
    return isLetter ? QString(sortText.front().toUpper()) : u"#"_s;
}

} // namespace

DRSampleAddressBook::NumberedTexts::NumberedTexts(const QStringList& texts)
{
    for (const QString& text : texts) {
        [[maybe_unused]] const qint64 number = numberOf(text);
    }
}

qint64 DRSampleAddressBook::NumberedTexts::numberOf(const QString& text)
{
    if (const auto known = m_numbers.constFind(text); known != m_numbers.constEnd()) {
        return *known;
    }
    m_texts += text;
    m_numbers[text] = m_texts.size();
    return m_texts.size();
}

DRSampleAddressBook::DRSampleAddressBook(DRDatabase& database,
                                         DRSampleSettings settings,
                                         const QStringList& labels,
                                         const QStringList& keys)
    : m_database(database),
      m_settings(std::move(settings)),
      m_labels(labels),
      m_keys(keys),
      m_insertPerson(database.prepare(insertPersonText())),
      m_insertValue(database.prepare(u"INSERT INTO ABMultiValue (UID, record_id, property, identifier, label, value, "
                                     "guid) VALUES (?, ?, ?, ?, ?, ?, ?)"_s)),
      m_insertPart(database.prepare(u"INSERT INTO ABMultiValueEntry (parent_id, key, value) VALUES (?, ?, ?)"_s))
{
}

bool DRSampleAddressBook::insert(qint64 personId, const DRSamplePerson& person)
{
    if (!insertRow(personId, person)) {
        return false;
    }
    // The phone counts the values of each property of a person from 0.
    std::map<int, qint64> identifiers;
    return std::all_of(person.values.begin(), person.values.end(), [&](const DRSampleContactValue& value) {
        return insertValue(personId, identifiers[value.property]++, value);
    });
}

bool DRSampleAddressBook::finish()
{
    return insertTexts(u"ABMultiValueLabel"_s, m_labels) && insertTexts(u"ABMultiValueEntryKey"_s, m_keys);
}

bool DRSampleAddressBook::insertRow(qint64 personId, const DRSamplePerson& person)
{
    const QDateTime created = m_settings.moment.addDays(-1 - personId % kDaysInUse);
    const qint64 createdSeconds = DRDates::saturatingInteger(DRDates::toReferenceSeconds(created));
    const QString firstSort = sortText(person, u"First"_s, u"Last"_s);
    const QString lastSort = sortText(person, u"Last"_s, u"First"_s);
    DRSqlValues values{personId,
                       qint64{person.isCompany},
                       createdSeconds,
                       createdSeconds,
                       sampleGuid(u"person %1"_s.arg(personId)),
                       firstSort,
                       lastSort,
                       section(firstSort),
                       section(lastSort)};
    values.reserve(values.size() + kSamplePersonColumns.size());
    for (const QStringView column : kSamplePersonColumns) {
        values.emplace_back(person.columns.value(column.toString()));
    }
    return m_insertPerson.update(values);
}

bool DRSampleAddressBook::insertValue(qint64 personId, qint64 identifier, const DRSampleContactValue& value)
{
    const qint64 valueId = ++m_valueCount;
    DRSqlValue label; // NULL for a value without one
    if (!value.label.isNull()) {
        label = m_labels.numberOf(value.label);
    }
    if (!m_insertValue.update({valueId, personId, qint64{value.property}, identifier, label, value.text,
                               sampleGuid(u"value %1"_s.arg(valueId))})) {
        return false;
    }
    return std::all_of(value.parts.begin(), value.parts.end(), [this, valueId](const auto& part) {
        return m_insertPart.update({valueId, m_keys.numberOf(part.first), part.second});
    });
}

bool DRSampleAddressBook::insertTexts(const QString& table, const NumberedTexts& texts)
{
    DRStatement insert = m_database.prepare(u"INSERT INTO %1 (ROWID, value) VALUES (?, ?)"_s.arg(table));
    qint64 number = 0;
    return std::all_of(texts.texts().begin(), texts.texts().end(), [&](const QString& text) {
        return insert.update({++number, text});
    });
}
