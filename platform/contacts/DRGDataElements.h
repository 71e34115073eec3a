#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

// The elements that make up a contact. A null text means that the contact does not have it; an empty text is one that
// was stored empty. `rel` is one of the values of DRGDataConstants.h, `label` a free text where no rel applies; both
// null means neither.

struct GDataNameElement {
    QString stringValue;
    QString yomi; ///< the phonetic reading

    bool operator==(const GDataNameElement&) const = default;
};

struct GDataName {
    std::optional<GDataNameElement> givenName;
    std::optional<GDataNameElement> familyName;
    std::optional<GDataNameElement> additionalName;
    QString namePrefix;
    QString nameSuffix;

    bool operator==(const GDataName&) const = default;
};

/// A note about the contact.
struct GDataContactJot {
    QString rel;
    QString value;

    bool operator==(const GDataContactJot&) const = default;
};

struct GDataOrganization {
    QString orgName;
    QString orgTitle;
    QString orgDepartment;

    bool operator==(const GDataOrganization&) const = default;
};

struct GDataPhoneNumber {
    QString stringValue;
    QString rel;
    QString label;

    bool operator==(const GDataPhoneNumber&) const = default;
};

struct GDataEmail {
    QString address;
    QString rel;
    QString label;

    bool operator==(const GDataEmail&) const = default;
};

struct GDataStructuredPostalAddress {
    QString street;
    QString city;
    QString region;
    QString postCode;
    QString countryName;
    QString countryCode; ///< such as "de"
    QString rel;
    QString label;

    bool operator==(const GDataStructuredPostalAddress&) const = default;
};

/// A span of time; both moments are the same for a day such as an anniversary.
struct GDataWhen {
    QDateTime startTime;
    QDateTime endTime;

    bool operator==(const GDataWhen&) const = default;
};

struct GDataContactEvent {
    GDataWhen when;
    QString rel;
    QString label;

    bool operator==(const GDataContactEvent&) const = default;
};

/// A messaging account. `protocol` is one of the kGDataIMProtocol values, else the name of the service as it was stored.
struct GDataIM {
    QString protocol;
    QString address;
    QString rel;
    QString label;

    bool operator==(const GDataIM&) const = default;
};

struct GDataContactWebsiteLink {
    QString href;
    QString rel;
    QString label;

    bool operator==(const GDataContactWebsiteLink&) const = default;
};

/// Somebody related to the contact, by name.
struct GDataContactRelation {
    QString value;
    QString rel;
    QString label;

    bool operator==(const GDataContactRelation&) const = default;
};
