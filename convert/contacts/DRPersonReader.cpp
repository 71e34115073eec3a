#include "convert/contacts/DRPersonReader.h"

#include "convert/contacts/DRAddressBookValues.h"
#include "platform/contacts/DRAddressBookConstants.h"
#include "platform/contacts/DRContactDate.h"
#include "platform/contacts/DRCSContact.h"
#include "platform/contacts/DRGDataConstants.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRResultSet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

using namespace Qt::StringLiterals;
using namespace DRAddressBook;
using namespace DRGData;

namespace {

struct PhoneticName {
    const char* column;
    const char* phoneticColumn;
    std::optional<GDataNameElement> GDataName::*field;
};
constexpr std::array kPhoneticNames{
    PhoneticName{"First", "FirstPhonetic", &GDataName::givenName},
    PhoneticName{"Last", "LastPhonetic", &GDataName::familyName},
    PhoneticName{"Middle", "MiddlePhonetic", &GDataName::additionalName},
};

template <typename Element> struct TextColumn {
    const char* column;
    QString Element::*field;
};
constexpr std::array kPlainNames{
    TextColumn<GDataName>{"Prefix", &GDataName::namePrefix},
    TextColumn<GDataName>{"Suffix", &GDataName::nameSuffix},
};
constexpr std::array kOrganizationColumns{
    TextColumn<GDataOrganization>{"Organization", &GDataOrganization::orgName},
    TextColumn<GDataOrganization>{"JobTitle", &GDataOrganization::orgTitle},
    TextColumn<GDataOrganization>{"Department", &GDataOrganization::orgDepartment},
};

/// What stands for a text of the iPhone in a contact: a rel for a label, a protocol for a service.
struct Translation {
    QLatin1StringView text;
    QLatin1StringView meaning;
};
constexpr std::array kPhoneLabels{
    Translation{kABPhoneWorkLabel, kGDataPhoneNumberWork},
    Translation{kABPhoneHomeLabel, kGDataPhoneNumberHome},
    Translation{kABPhoneMobileLabel, kGDataPhoneNumberMobile},
    Translation{kABPhoneMainLabel, kGDataPhoneNumberMain},
    Translation{kABPhoneHomeFAXLabel, kGDataPhoneNumberHomeFax},
    Translation{kABPhoneWorkFAXLabel, kGDataPhoneNumberWorkFax},
    Translation{kABPhonePagerLabel, kGDataPhoneNumberPager},
};
constexpr std::array kServices{
    Translation{"AIMInstant"_L1, kGDataIMProtocolAIM},
    Translation{"AIM"_L1, kGDataIMProtocolAIM},
    Translation{"GoogleTalkInstant"_L1, kGDataIMProtocolGoogleTalk},
    Translation{"GoogleTalk"_L1, kGDataIMProtocolGoogleTalk},
    Translation{"ICQInstant"_L1, kGDataIMProtocolICQ},
    Translation{"ICQ"_L1, kGDataIMProtocolICQ},
    Translation{"JabberInstant"_L1, kGDataIMProtocolJabber},
    Translation{"Jabber"_L1, kGDataIMProtocolJabber},
    Translation{"MSNInstant"_L1, kGDataIMProtocolMSN},
    Translation{"MSN"_L1, kGDataIMProtocolMSN},
    Translation{"NetMeeting"_L1, kGDataIMProtocolNetMeeting},
    Translation{"QQInstant"_L1, kGDataIMProtocolQQ},
    Translation{"QQ"_L1, kGDataIMProtocolQQ},
    Translation{"SkypeInstant"_L1, kGDataIMProtocolSkype},
    Translation{"Skype"_L1, kGDataIMProtocolSkype},
    Translation{"YahooInstant"_L1, kGDataIMProtocolYahoo},
    Translation{"Yahoo"_L1, kGDataIMProtocolYahoo},
};

/// Null when the list does not hold the text.
QString translated(std::span<const Translation> list, const QString& text)
{
    const auto found = std::ranges::find(list, text, &Translation::text);
    return found == list.end() ? QString() : QString(found->meaning);
}

template <typename Element> struct PartOf {
    QLatin1StringView key;
    QString Element::*field;
};
constexpr std::array kAddressParts{
    PartOf<GDataStructuredPostalAddress>{kABAddressStreetKey, &GDataStructuredPostalAddress::street},
    PartOf<GDataStructuredPostalAddress>{kABAddressCityKey, &GDataStructuredPostalAddress::city},
    PartOf<GDataStructuredPostalAddress>{kABAddressStateKey, &GDataStructuredPostalAddress::region},
    PartOf<GDataStructuredPostalAddress>{kABAddressZIPKey, &GDataStructuredPostalAddress::postCode},
    PartOf<GDataStructuredPostalAddress>{kABAddressCountryKey, &GDataStructuredPostalAddress::countryName},
    PartOf<GDataStructuredPostalAddress>{kABAddressCountryCodeKey, &GDataStructuredPostalAddress::countryCode},
};
// Each part has two names: older systems wrote the longer ones.
constexpr std::array kAccountParts{
    PartOf<GDataIM>{"InstantMessageService"_L1, &GDataIM::protocol},
    PartOf<GDataIM>{"service"_L1, &GDataIM::protocol},
    PartOf<GDataIM>{"InstantMessageUsername"_L1, &GDataIM::address},
    PartOf<GDataIM>{"username"_L1, &GDataIM::address},
};

/// A value of a person with its label resolved.
struct LabelledValue {
    QString text;
    QString rel;                      ///< null when the label is none of those of telephone numbers
    QString label;                    ///< the iPhone's text; null when there is none, or a rel stands for it
    DRAddressBookValues::Parts parts; ///< of a structured value
};

QString orElse(const QString& rel, QLatin1StringView generalRel)
{
    return rel.isNull() ? QString(generalRel) : rel;
}

void addPhoneNumber(DRCSContact& contact, const LabelledValue& value)
{
    contact.addPhoneNumber({.stringValue = value.text, .rel = value.rel, .label = value.label});
}

void addEmailAddress(DRCSContact& contact, const LabelledValue& value)
{
    contact.addEmailAddress({.address = value.text, .rel = value.rel, .label = value.label});
}

template <typename Element, std::size_t count>
void setParts(Element& element,
              const DRAddressBookValues::Parts& parts,
              const std::array<PartOf<Element>, count>& known)
{
    for (const PartOf<Element>& part : known) {
        if (const auto found = parts.constFind(part.key); found != parts.cend()) {
            element.*part.field = *found;
        }
    }
}

void addPostalAddress(DRCSContact& contact, const LabelledValue& value)
{
    GDataStructuredPostalAddress address;
    address.rel = orElse(value.rel, kGDataContactOther);
    address.label = value.label;
    setParts(address, value.parts, kAddressParts);
    contact.addStructuredPostalAddress(address);
}

void addEvent(DRCSContact& contact, const LabelledValue& value)
{
    const QDateTime date = dateFromString(value.text);
    contact.addEvent({.when = {.startTime = date, .endTime = date},
                      .rel = orElse(value.rel, kGDataContactEventOther),
                      .label = value.label});
}

void addAccount(DRCSContact& contact, const LabelledValue& value)
{
    GDataIM account;
    account.rel = orElse(value.rel, kGDataContactOther);
    account.label = value.label;
    setParts(account, value.parts, kAccountParts);
    if (const QString protocol = translated(kServices, account.protocol); !protocol.isNull()) {
        account.protocol = protocol;
    }
    contact.addIMAddress(account);
}

void addWebsiteLink(DRCSContact& contact, const LabelledValue& value)
{
    contact.addWebsiteLink({.href = value.text, .rel = value.rel, .label = value.label});
}

void addRelation(DRCSContact& contact, const LabelledValue& value)
{
    contact.addRelation({.value = value.text, .rel = orElse(value.rel, kGDataContactOther), .label = value.label});
}

/// The iPhone's numbers of the properties that have several values; others are not moved.
struct Property {
    qint64 number;
    void (*add)(DRCSContact& contact, const LabelledValue& value);
};
constexpr std::array kProperties{
    Property{3, addPhoneNumber}, Property{4, addEmailAddress}, Property{5, addPostalAddress}, Property{12, addEvent},
    Property{13, addAccount},    Property{22, addWebsiteLink}, Property{23, addRelation},
};

LabelledValue labelledValue(const DRAddressBookValues::Value& value, const DRAddressBookValues& values)
{
    const QString label = values.labelOf(value);
    const QString rel = translated(kPhoneLabels, label);
    return {.text = value.value,
            .rel = rel,
            .label = rel.isNull() ? label : QString(),
            .parts = values.partsByValue.value(value.uid)};
}

void addValues(DRCSContact& contact, qint64 person, const DRAddressBookValues& values)
{
    const auto ofPerson = values.valuesByPerson.constFind(person);
    if (ofPerson == values.valuesByPerson.cend()) {
        return;
    }
    for (const Property& property : kProperties) {
        for (const DRAddressBookValues::Value& value : *ofPerson) {
            if (value.property == property.number) {
                property.add(contact, labelledValue(value, values));
            }
        }
    }
}

/// Sets the fields whose columns are not NULL. Whether there was one.
template <typename Element, std::size_t count>
bool setTexts(Element& element, const DRResultSet& person, const std::array<TextColumn<Element>, count>& columns)
{
    bool isAnySet = false;
    for (const TextColumn<Element>& column : columns) {
        if (const QString text = person.string(column.column); !text.isNull()) {
            element.*column.field = text;
            isAnySet = true;
        }
    }
    return isAnySet;
}

/// A phonetic reading of a name that is not there is left out.
void addName(DRCSContact& contact, const DRResultSet& person)
{
    GDataName name;
    bool isAnySet = false;
    for (const PhoneticName& part : kPhoneticNames) {
        if (const QString text = person.string(part.column); !text.isNull()) {
            name.*part.field = GDataNameElement{.stringValue = text, .yomi = person.string(part.phoneticColumn)};
            isAnySet = true;
        }
    }
    isAnySet = setTexts(name, person, kPlainNames) || isAnySet;
    if (isAnySet) {
        contact.setName(name);
    }
}

void addContactFields(DRCSContact& contact, const DRResultSet& person)
{
    if (const QString birthday = person.string("Birthday"); !birthday.isNull()) {
        contact.setBirthday(contactDateText(dateFromString(birthday)));
    }
    if (const QString nickname = person.string("Nickname"); !nickname.isNull()) {
        contact.setNickname(nickname);
    }
    if (const QString note = person.string("Note"); !note.isNull()) {
        contact.addJot({.rel = kGDataContactJotUser, .value = note});
    }
}

void addOrganization(DRCSContact& contact, const DRResultSet& person)
{
    GDataOrganization organization;
    if (setTexts(organization, person, kOrganizationColumns)) {
        contact.addOrganization(organization);
    }
}

} // namespace

DRCSContact contactFromPerson(const DRResultSet& person, const DRAddressBookValues& values)
{
    DRCSContact contact;
    addName(contact, person);
    addContactFields(contact, person);
    addOrganization(contact, person);
    addValues(contact, person.integer("ROWID"), values);
    return contact;
}

QDateTime dateFromString(const QString& text)
{
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    return DRDates::fromReferenceSeconds(isNumber && std::isfinite(seconds) ? seconds : 0.0);
}
