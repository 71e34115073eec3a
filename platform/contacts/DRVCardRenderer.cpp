#include "platform/contacts/DRVCardRenderer.h"

#include "platform/contacts/DRAndroidCustomProperty.h"
#include "platform/contacts/DRContactLabel.h"
#include "platform/contacts/DRContactNames.h"
#include "platform/contacts/DRCSContact.h"
#include "platform/contacts/DRGDataConstants.h"
#include "platform/contacts/DRVCardText.h"

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace {

using DRVCardText::escaped;

/// A rel and the parameter of the card that says the same.
struct KnownType {
    QLatin1StringView rel;
    QLatin1StringView parameter;
};

constexpr KnownType kPhoneTypes[] = {
    {DRGData::kGDataPhoneNumberWork, ";TYPE=WORK"_L1},
    {DRGData::kGDataPhoneNumberHome, ";TYPE=HOME"_L1},
    {DRGData::kGDataPhoneNumberMobile, ";TYPE=CELL"_L1},
    {DRGData::kGDataPhoneNumberMain, ";TYPE=PREF"_L1}, // alone, Android's importer takes it for its main type
    {DRGData::kGDataPhoneNumberHomeFax, ";TYPE=HOME,FAX"_L1},
    {DRGData::kGDataPhoneNumberWorkFax, ";TYPE=WORK,FAX"_L1},
    {DRGData::kGDataPhoneNumberPager, ";TYPE=PAGER"_L1},
};

constexpr KnownType kEmailTypes[] = {
    {DRGData::kGDataContactHome, ";TYPE=HOME"_L1},
    {DRGData::kGDataContactWork, ";TYPE=WORK"_L1},
    {DRGData::kGDataPhoneNumberMobile, ";TYPE=CELL"_L1},
};

constexpr KnownType kPlaceTypes[] = {
    {DRGData::kGDataContactHome, ";TYPE=HOME"_L1},
    {DRGData::kGDataContactWork, ";TYPE=WORK"_L1},
};

constexpr KnownType kWebTypes[] = {
    {DRGData::kGDataContactHome, ";TYPE=HOME"_L1},
    {DRGData::kGDataContactWork, ";TYPE=WORK"_L1},
    {DRGData::kGDataContactWebsiteLinkHome, ";TYPE=HOME"_L1},
    {DRGData::kGDataContactWebsiteLinkWork, ";TYPE=WORK"_L1},
};

struct MessagingProperty {
    QLatin1StringView protocol;
    QLatin1StringView name;
};

constexpr MessagingProperty kMessagingProperties[] = {
    {DRGData::kGDataIMProtocolAIM, "X-AIM"_L1},     {DRGData::kGDataIMProtocolGoogleTalk, "X-GOOGLE-TALK"_L1},
    {DRGData::kGDataIMProtocolICQ, "X-ICQ"_L1},     {DRGData::kGDataIMProtocolJabber, "X-JABBER"_L1},
    {DRGData::kGDataIMProtocolMSN, "X-MSN"_L1},     {DRGData::kGDataIMProtocolNetMeeting, "X-NETMEETING"_L1},
    {DRGData::kGDataIMProtocolQQ, "X-QQ"_L1},       {DRGData::kGDataIMProtocolSkype, "X-SKYPE-USERNAME"_L1},
    {DRGData::kGDataIMProtocolYahoo, "X-YAHOO"_L1},
};

/// The TYPE parameter of an element: that of its rel, else its label or the name of its rel, else `unnamed`.
template <typename Element>
QString typeOf(const Element& element, std::span<const KnownType> types, QLatin1StringView unnamed = {})
{
    for (const KnownType& type : types) {
        if (element.rel == type.rel) {
            return type.parameter;
        }
    }
    const QString name = DRContactLabel::nameOf(element.rel, element.label);
    return name.isEmpty() ? QString(unnamed) : DRVCardText::typeParameter(u"X-"_s + name);
}

/// A property whose value is one text; nothing when the text is null.
QByteArray textProperty(QLatin1StringView name, const QString& text)
{
    return text.isNull() ? QByteArray() : DRVCardText::property(name, escaped(text));
}

/// A property whose value is a row of texts; a missing one is written empty.
QByteArray rowProperty(const QString& nameAndParameters, const QStringList& texts)
{
    QStringList parts;
    parts.reserve(texts.size());
    for (const QString& text : texts) {
        parts << escaped(text);
    }
    return DRVCardText::property(nameAndParameters, parts.join(u';'));
}

QByteArray nameProperties(const GDataName& name)
{
    const GDataNameElement none;
    const GDataNameElement family = name.familyName.value_or(none);
    const GDataNameElement given = name.givenName.value_or(none);
    const GDataNameElement additional = name.additionalName.value_or(none);
    return rowProperty(u"N"_s, {family.stringValue, given.stringValue, additional.stringValue, name.namePrefix,
                                name.nameSuffix})
           // Without any name it is empty, so that Android does not make one up.
           + DRVCardText::property(u"FN"_s, escaped(DRContactNames::formatted(name))) +
           textProperty("X-PHONETIC-FIRST-NAME"_L1, given.yomi) +
           textProperty("X-PHONETIC-MIDDLE-NAME"_L1, additional.yomi) +
           textProperty("X-PHONETIC-LAST-NAME"_L1, family.yomi);
}

QByteArray organizationProperties(const GDataOrganization& organization)
{
    QByteArray lines;
    if (!organization.orgDepartment.isNull()) {
        lines += rowProperty(u"ORG"_s, {organization.orgName, organization.orgDepartment});
    } else if (!organization.orgName.isNull()) {
        lines += rowProperty(u"ORG"_s, {organization.orgName});
    }
    return lines + textProperty("TITLE"_L1, organization.orgTitle);
}

QByteArray jotProperty(const GDataContactJot& jot)
{
    return textProperty("NOTE"_L1, jot.value);
}

/// Android's importer drops "," and ";" from numbers and takes "p" and "w" for the pause and the wait that they mean.
QString withLettersForPauses(QString number)
{
    return number.replace(u',', u'p').replace(u';', u'w');
}

QByteArray phoneProperty(const GDataPhoneNumber& number)
{
    if (number.stringValue.isEmpty()) {
        return {};
    }
    // Android calls both "other"; a number without any type would become one at home.
    const auto unnamed = number.rel.isEmpty() ? ";TYPE=VOICE"_L1 : ";TYPE=OTHER"_L1;
    return DRVCardText::property(u"TEL"_s + typeOf(number, kPhoneTypes, unnamed),
                                 escaped(withLettersForPauses(number.stringValue)));
}

QByteArray emailProperty(const GDataEmail& email)
{
    if (email.address.isEmpty()) {
        return {};
    }
    return DRVCardText::property(u"EMAIL"_s + typeOf(email, kEmailTypes), escaped(email.address));
}

QByteArray addressProperty(const GDataStructuredPostalAddress& address)
{
    // One place for the country: its name, else its code.
    const QString country = address.countryName.isEmpty() ? address.countryCode.toUpper() : address.countryName;
    const QStringList parts{{}, {}, address.street, address.city, address.region, address.postCode, country};
    if (std::ranges::all_of(parts, &QString::isEmpty)) {
        return {};
    }
    return rowProperty(u"ADR"_s + typeOf(address, kPlaceTypes, ";TYPE=OTHER"_L1), parts);
}

QByteArray accountProperty(const GDataIM& account)
{
    if (account.address.isEmpty() && account.protocol.isEmpty()) {
        return {};
    }
    for (const MessagingProperty& known : kMessagingProperties) {
        if (account.protocol == known.protocol) {
            return DRVCardText::property(known.name + typeOf(account, kPlaceTypes), escaped(account.address));
        }
    }
    return DRAndroidCustomProperty::ofAccount(account);
}

QByteArray websiteProperty(const GDataContactWebsiteLink& link)
{
    if (link.href.isEmpty()) {
        return {};
    }
    return DRVCardText::property(u"URL"_s + typeOf(link, kWebTypes), escaped(link.href));
}

template <typename Element>
QByteArray linesOf(const std::vector<Element>& elements, QByteArray (*linesOfOne)(const Element&))
{
    QByteArray lines;
    for (const Element& element : elements) {
        lines += linesOfOne(element);
    }
    return lines;
}

} // namespace

QByteArray DRVCardRenderer::cardOf(const DRCSContact& contact)
{
    constexpr qsizetype kUsualBytes = 1024;
    QByteArray card;
    card.reserve(kUsualBytes);
    card.append(DRVCardText::kBeginLine).append("VERSION:3.0\r\n");
    card += nameProperties(contact.name());
    card += textProperty("NICKNAME"_L1, contact.nickname());
    card += linesOf(contact.organizations(), organizationProperties);
    card += linesOf(contact.phoneNumbers(), phoneProperty);
    card += linesOf(contact.emailAddresses(), emailProperty);
    card += linesOf(contact.structuredPostalAddresses(), addressProperty);
    card += linesOf(contact.imAddresses(), accountProperty);
    card += linesOf(contact.websiteLinks(), websiteProperty);
    card += textProperty("BDAY"_L1, contact.birthday());
    card += linesOf(contact.events(), DRAndroidCustomProperty::ofEvent);
    card += linesOf(contact.relations(), DRAndroidCustomProperty::ofRelation);
    card += linesOf(contact.jots(), jotProperty);
    card.append(DRVCardText::kEndLine);
    return card;
}
