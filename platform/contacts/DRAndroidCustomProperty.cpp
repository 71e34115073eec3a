#include "platform/contacts/DRAndroidCustomProperty.h"

#include "platform/contacts/DRContactDate.h"
#include "platform/contacts/DRContactLabel.h"
#include "platform/contacts/DRGDataConstants.h"
#include "platform/contacts/DRVCardText.h"

#include <array>
#include <span>

using namespace Qt::StringLiterals;

namespace {

/// The columns data1 to data15 of a row of Android's contacts database.
using Columns = std::array<QString, 15>;

/// A rel and its number in the column data2.
struct NumberedType {
    QLatin1StringView rel;
    QLatin1StringView number;
};

constexpr auto kCustomType = "0"_L1; // the column data3 says what it is

constexpr NumberedType kEventTypes[] = {{DRGData::kGDataContactEventAnniversary, "1"_L1}};

constexpr NumberedType kAccountTypes[] = {{DRGData::kGDataContactHome, "1"_L1}, {DRGData::kGDataContactWork, "2"_L1}};

constexpr NumberedType kRelationTypes[] = {
    {DRGData::kGDataContactRelationAssistant, "1"_L1}, {DRGData::kGDataContactRelationBrother, "2"_L1},
    {DRGData::kGDataContactRelationChild, "3"_L1},     {DRGData::kGDataContactRelationFather, "5"_L1},
    {DRGData::kGDataContactRelationFriend, "6"_L1},    {DRGData::kGDataContactRelationManager, "7"_L1},
    {DRGData::kGDataContactRelationMother, "8"_L1},    {DRGData::kGDataContactRelationParent, "9"_L1},
    {DRGData::kGDataContactRelationPartner, "10"_L1},  {DRGData::kGDataContactRelationSister, "13"_L1},
    {DRGData::kGDataContactRelationSpouse, "14"_L1},
};

/// The columns of a value with its type and, for a custom type, its label. `unnamed` is the type of what has neither a
/// known rel nor a label.
template <typename Element>
Columns
columnsOf(const QString& value, const Element& element, std::span<const NumberedType> types, QLatin1StringView unnamed)
{
    for (const NumberedType& type : types) {
        if (element.rel == type.rel) {
            return {value, type.number};
        }
    }
    const QString name = DRContactLabel::nameOf(element.rel, element.label);
    return {value, name.isEmpty() ? unnamed : kCustomType, name};
}

/// One column. Android's importer undoes escapes twice: first in the whole value, then in each column that it finds
/// between semicolons. So backslashes and semicolons are escaped for the second pass, and the result for the first: a
/// semicolon of the text becomes `\\\;`, a backslash `\\\\`. The semicolons between columns stay bare, as Android writes
/// them itself. Line breaks and commas are escaped once, since after the first pass they are ordinary characters.
QString columnText(const QString& column)
{
    QString text = column;
    text.replace(u'\\', u"\\\\"_s).replace(u';', u"\\;"_s);
    return DRVCardText::escaped(text);
}

QByteArray property(QLatin1StringView mimeType, const Columns& columns)
{
    QString value = mimeType;
    for (const QString& column : columns) {
        value += u';';
        if (!column.isEmpty()) { // most are
            value += columnText(column);
        }
    }
    return DRVCardText::property(u"X-ANDROID-CUSTOM"_s, value);
}

} // namespace

QByteArray DRAndroidCustomProperty::ofEvent(const GDataContactEvent& event)
{
    const QString day = contactDateText(event.when.startTime);
    if (day.isNull()) {
        return {};
    }
    return property("vnd.android.cursor.item/contact_event"_L1, columnsOf(day, event, kEventTypes, "2"_L1));
}

QByteArray DRAndroidCustomProperty::ofRelation(const GDataContactRelation& relation)
{
    if (relation.value.isNull()) {
        return {};
    }
    return property("vnd.android.cursor.item/relation"_L1,
                    columnsOf(relation.value, relation, kRelationTypes, kCustomType));
}

QByteArray DRAndroidCustomProperty::ofAccount(const GDataIM& account)
{
    constexpr std::size_t kProtocolColumn = 4; // data5
    constexpr std::size_t kServiceColumn = 5;  // data6
    Columns columns = columnsOf(account.address, account, kAccountTypes, "3"_L1);
    columns[kProtocolColumn] = u"-1"_s; // a service that only has a name
    columns[kServiceColumn] = account.protocol;
    return property("vnd.android.cursor.item/im"_L1, columns);
}
