#pragma once

#include <QHash>
#include <QString>

#include <array>
#include <utility>
#include <vector>

/// A value of which a person may have several, such as a number.
struct DRSampleContactValue {
    int property = 0;                                    ///< what it is: one of DRSampleProperty
    QString label;                                       ///< as the phone stores it; null when there is none
    QString text;                                        ///< null when it has parts
    std::vector<std::pair<QString, QString>> parts = {}; ///< key and value, such as "City" and "Oslo"
};

/// A made-up person or company as an iPhone's address book keeps it.
struct DRSamplePerson {
    enum class Picture { None, Jpeg, Png };

    bool isCompany = false;
    QHash<QString, QString> columns; ///< the texts of its row by column, of `kSamplePersonColumns`
    std::vector<DRSampleContactValue> values;
    Picture picture = Picture::None;
};

inline constexpr std::array<QStringView, 14> kSamplePersonColumns{
    u"First",      u"Last", u"Middle",   u"FirstPhonetic", u"MiddlePhonetic", u"LastPhonetic", u"Organization",
    u"Department", u"Note", u"Birthday", u"JobTitle",      u"Nickname",       u"Prefix",       u"Suffix",
};

/// The phone's numbers of what a person may have several of.
namespace DRSampleProperty {
inline constexpr int kPhones = 3;
inline constexpr int kEmails = 4;
inline constexpr int kAddresses = 5;
inline constexpr int kDates = 12;
inline constexpr int kAccounts = 13;
inline constexpr int kPages = 22;
inline constexpr int kRelations = 23;
} // namespace DRSampleProperty
