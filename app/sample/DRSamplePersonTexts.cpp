#include "app/sample/DRSamplePersonTexts.h"

#include "app/sample/DRSampleResources.h"
#include "platform/core/DRDates.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Property {
    QStringView name; ///< in the text file
    int number;
};
constexpr std::array kProperties{
    Property{u"phones", DRSampleProperty::kPhones},       Property{u"emails", DRSampleProperty::kEmails},
    Property{u"addresses", DRSampleProperty::kAddresses}, Property{u"dates", DRSampleProperty::kDates},
    Property{u"accounts", DRSampleProperty::kAccounts},   Property{u"pages", DRSampleProperty::kPages},
    Property{u"relations", DRSampleProperty::kRelations},
};

QStringList strings(const QJsonValue& value)
{
    return value.toVariant().toStringList();
}

/// "<Home>" in the text file is the phone's own label, everything else is as somebody typed it.
QString storedLabel(const QString& label)
{
    return label.startsWith(u'<') ? u"_$!"_s + label + u"!$_"_s : label;
}

/// A day as the phone stores it: seconds since 2001, here at noon UTC, which is the same day nearly everywhere. Days
/// without a year ("--MM-dd") stand in 1604.
QString storedDay(const QString& day)
{
    const QTime noonTime(12, 0);
    const QString complete = day.startsWith(u"--"_s) ? u"1604"_s + day.mid(1) : day;
    const QDateTime noon(QDate::fromString(complete, Qt::ISODate), noonTime, Qt::UTC);
    return QString::number(DRDates::toReferenceSeconds(noon), 'f', 6);
}

DRSampleContactValue contactValue(int property, const QJsonArray& entry)
{
    DRSampleContactValue value{.property = property, .label = storedLabel(entry[0].toString()), .text = {}};
    const QJsonObject parts = entry[1].toObject();
    for (auto part = parts.begin(); part != parts.end(); ++part) {
        value.parts.emplace_back(part.key(), part.value().toString());
    }
    if (value.parts.empty()) {
        const QString text = entry[1].toString();
        value.text = property == DRSampleProperty::kDates ? storedDay(text) : text;
    }
    return value;
}

DRSamplePerson::Picture pictureOf(const QString& name)
{
    if (name.isEmpty()) {
        return DRSamplePerson::Picture::None;
    }
    return name == u"png"_s ? DRSamplePerson::Picture::Png : DRSamplePerson::Picture::Jpeg;
}

DRSamplePerson hardPerson(const QJsonObject& text)
{
    DRSamplePerson person{.isCompany = text.value(u"isCompany").toBool(),
                          .columns = {},
                          .values = {},
                          .picture = pictureOf(text.value(u"picture").toString())};
    for (const QStringView column : kSamplePersonColumns) {
        if (const QJsonValue value = text.value(column); value.isString()) {
            person.columns[column.toString()] = value.toString();
        }
    }
    if (auto note = person.columns.find(u"Note"_s); note != person.columns.end()) {
        *note = note->repeated(text.value(u"noteTimes").toInt(1));
    }
    if (auto birthday = person.columns.find(u"Birthday"_s); birthday != person.columns.end()) {
        *birthday = storedDay(*birthday);
    }
    for (const Property& property : kProperties) {
        const QJsonArray entries = text.value(property.name).toArray();
        for (const QJsonValue entry : entries) {
            person.values.push_back(contactValue(property.number, entry.toArray()));
        }
    }
    return person;
}

bool oneIn(int count, DRSampleRandom& random)
{
    return random.below(count) == 0;
}

/// The pattern with another digit for each "#".
QString filled(const QString& pattern, DRSampleRandom& random)
{
    QString text = pattern;
    for (QChar& character : text) {
        if (character == u'#') {
            character = QChar(u'1' + random.below(9));
        }
    }
    return text;
}

/// One in five days without a year.
QString anyDay(DRSampleRandom& random)
{
    const int year = 1930 + random.below(80);
    const QDate day = QDate(year, 1, 1).addDays(random.below(365));
    return storedDay(oneIn(5, random) ? day.toString(u"--MM-dd"_s) : day.toString(Qt::ISODate));
}

} // namespace

DRSamplePersonTexts::DRSamplePersonTexts()
{
    const auto texts = QJsonDocument::fromJson(sampleResource(u"texts/contacts.json"_s)).object();
    m_hardPeople = texts.value(u"hard").toArray();
    m_keys = strings(texts.value(u"keys"));
    m_customLabels = strings(texts.value(u"custom labels"));
    m_services = strings(texts.value(u"services"));
    m_handles = strings(texts.value(u"handles"));
    m_nicknames = strings(texts.value(u"nicknames"));
    m_labels = strings(texts.value(u"labels"));
    std::transform(m_labels.begin(), m_labels.end(), m_labels.begin(), storedLabel);
    const auto languages = texts.value(u"languages").toArray();
    for (const QJsonValue words : languages) {
        m_languages.push_back(language(words.toObject()));
    }
}

std::vector<DRSamplePerson> DRSamplePersonTexts::hardPeople() const
{
    std::vector<DRSamplePerson> people;
    people.reserve(static_cast<std::size_t>(m_hardPeople.size()));
    for (const QJsonValue person : m_hardPeople) {
        people.push_back(hardPerson(person.toObject()));
    }
    return people;
}

DRSamplePerson DRSamplePersonTexts::compose(DRSampleRandom& random) const
{
    const Language& language = random.pick(m_languages);
    DRSamplePerson person;
    person.isCompany = oneIn(9, random);
    name(person, language, random);
    addReachability(person, language, random);
    addAddress(person, language, random);
    addRest(person, language, random);
    return person;
}

DRSamplePersonTexts::Language DRSamplePersonTexts::language(const QJsonObject& words)
{
    return {
        .given = strings(words.value(u"given")),
        .family = strings(words.value(u"family")),
        .mobile = words.value(u"mobile").toString(),
        .landline = words.value(u"landline").toString(),
        .streets = strings(words.value(u"streets")),
        .cities = strings(words.value(u"cities")),
        .country = words.value(u"country").toString().split(u'|'),
        .companies = strings(words.value(u"companies")),
        .jobs = strings(words.value(u"jobs")),
        .departments = strings(words.value(u"departments")),
        .notes = strings(words.value(u"notes")),
    };
}

void DRSamplePersonTexts::name(DRSamplePerson& person, const Language& language, DRSampleRandom& random) const
{
    const auto setName = [&person](const QString& column, const QString& word) {
        const QStringList both = word.split(u'|');
        person.columns[column] = both.first();
        if (both.size() > 1) {
            person.columns[column + u"Phonetic"_s] = both.last();
        }
    };
    if (person.isCompany || oneIn(3, random)) {
        person.columns[u"Organization"_s] = random.pick(language.companies);
    }
    if (person.isCompany) {
        return;
    }
    setName(u"First"_s, random.pick(language.given));
    setName(u"Last"_s, random.pick(language.family));
    if (oneIn(12, random)) {
        setName(u"Middle"_s, random.pick(language.given).section(u'|', 0, 0));
    }
    if (oneIn(4, random)) {
        person.columns[u"JobTitle"_s] = random.pick(language.jobs);
        person.columns[u"Department"_s] = random.pick(language.departments);
    }
    if (oneIn(12, random)) {
        person.columns[u"Nickname"_s] = random.pick(m_nicknames);
    }
    if (oneIn(3, random)) {
        person.columns[u"Birthday"_s] = anyDay(random);
    }
}

void DRSamplePersonTexts::addReachability(DRSamplePerson& person,
                                          const Language& language,
                                          DRSampleRandom& random) const
{
    using namespace DRSampleProperty;
    const QStringList phoneLabels = person.isCompany ? QStringList{u"<Main>"_s, u"<Work>"_s, u"<WorkFAX>"_s}
                                                     : QStringList{u"<Mobile>"_s, u"<Home>"_s, u"<Work>"_s};
    const int phones = 1 + random.below(3);
    for (int count = 0; count < phones; ++count) {
        const bool isMobile = count == 0 && !person.isCompany;
        person.values.push_back({.property = kPhones,
                                 .label = isMobile ? storedLabel(u"<Mobile>"_s) : label(random, phoneLabels),
                                 .text = filled(isMobile ? language.mobile : language.landline, random)});
    }
    const int emails = random.below(3);
    for (int count = 0; count < emails; ++count) {
        person.values.push_back({.property = kEmails,
                                 .label = label(random, {u"<Home>"_s, u"<Work>"_s, u"<Other>"_s}),
                                 .text = handle(random) + u"@example.com"_s});
    }
    if (oneIn(7, random)) {
        const QString& service = random.pick(m_services);
        person.values.push_back({.property = kAccounts,
                                 .label = label(random, {u"<Home>"_s, u"<Work>"_s}),
                                 .text = {},
                                 .parts = {{u"service"_s, service}, {u"username"_s, handle(random)}}});
    }
    if (oneIn(6, random)) {
        person.values.push_back({.property = kPages,
                                 .label = label(random, {u"<HomePage>"_s, u"<Work>"_s}),
                                 .text = u"http://%1.example.org/"_s.arg(handle(random))});
    }
}

void DRSamplePersonTexts::addAddress(DRSamplePerson& person, const Language& language, DRSampleRandom& random) const
{
    if (random.below(5) >= 2) {
        return;
    }
    const QStringList city = random.pick(language.cities).split(u'|');
    person.values.push_back({.property = DRSampleProperty::kAddresses,
                             .label = label(random, {person.isCompany ? u"<Work>"_s : u"<Home>"_s}),
                             .text = {},
                             .parts = {{u"Street"_s, filled(random.pick(language.streets), random)},
                                       {u"City"_s, city[0]},
                                       {u"State"_s, city[1]},
                                       {u"ZIP"_s, city[2]},
                                       {u"Country"_s, language.country[0]},
                                       {u"CountryCode"_s, language.country[1]}}});
}

void DRSamplePersonTexts::addRest(DRSamplePerson& person, const Language& language, DRSampleRandom& random) const
{
    using namespace DRSampleProperty;
    if (oneIn(8, random)) {
        person.columns[u"Note"_s] = filled(random.pick(language.notes), random);
    }
    if (!person.isCompany && oneIn(10, random)) {
        person.values.push_back({.property = kRelations,
                                 .label = label(random, {u"<Spouse>"_s, u"<Mother>"_s, u"<Friend>"_s, u"<Child>"_s}),
                                 .text = random.pick(language.given).section(u'|', 0, 0)});
    }
    if (!person.isCompany && oneIn(12, random)) {
        person.values.push_back(
            {.property = kDates, .label = label(random, {u"<Anniversary>"_s, u"<Other>"_s}), .text = anyDay(random)});
    }
    if (oneIn(5, random)) {
        person.picture = oneIn(4, random) ? DRSamplePerson::Picture::Png : DRSamplePerson::Picture::Jpeg;
    }
}

/// One of the usual labels, now and then one that somebody typed.
QString DRSamplePersonTexts::label(DRSampleRandom& random, const QStringList& usual) const
{
    return oneIn(10, random) ? random.pick(m_customLabels) : storedLabel(random.pick(usual));
}

QString DRSamplePersonTexts::handle(DRSampleRandom& random) const
{
    return random.pick(m_handles) + QString::number(random.below(1000));
}
