#pragma once

#include <QLatin1StringView>

/// The well-known `rel` and protocol values of contact elements, as the GData contacts format publishes them. A rel says
/// what a value is for ("work"); where none applies, an element carries a free label instead.
namespace DRGData {

using namespace Qt::StringLiterals;

// Any kind of value.
inline constexpr auto kGDataContactHome = "http://schemas.google.com/g/2005#home"_L1;
inline constexpr auto kGDataContactWork = "http://schemas.google.com/g/2005#work"_L1;
inline constexpr auto kGDataContactOther = "http://schemas.google.com/g/2005#other"_L1;

// Telephone numbers. Home and work are the same values as above.
inline constexpr auto kGDataPhoneNumberHome = "http://schemas.google.com/g/2005#home"_L1;
inline constexpr auto kGDataPhoneNumberWork = "http://schemas.google.com/g/2005#work"_L1;
inline constexpr auto kGDataPhoneNumberMobile = "http://schemas.google.com/g/2005#mobile"_L1;
inline constexpr auto kGDataPhoneNumberMain = "http://schemas.google.com/g/2005#main"_L1;
inline constexpr auto kGDataPhoneNumberHomeFax = "http://schemas.google.com/g/2005#home_fax"_L1;
inline constexpr auto kGDataPhoneNumberWorkFax = "http://schemas.google.com/g/2005#work_fax"_L1;
inline constexpr auto kGDataPhoneNumberPager = "http://schemas.google.com/g/2005#pager"_L1;

// Protocols of messaging accounts.
inline constexpr auto kGDataIMProtocolAIM = "http://schemas.google.com/g/2005#AIM"_L1;
inline constexpr auto kGDataIMProtocolGoogleTalk = "http://schemas.google.com/g/2005#GOOGLE_TALK"_L1;
inline constexpr auto kGDataIMProtocolICQ = "http://schemas.google.com/g/2005#ICQ"_L1;
inline constexpr auto kGDataIMProtocolJabber = "http://schemas.google.com/g/2005#JABBER"_L1;
inline constexpr auto kGDataIMProtocolMSN = "http://schemas.google.com/g/2005#MSN"_L1;
inline constexpr auto kGDataIMProtocolNetMeeting = "http://schemas.google.com/g/2005#netmeeting"_L1;
inline constexpr auto kGDataIMProtocolQQ = "http://schemas.google.com/g/2005#QQ"_L1;
inline constexpr auto kGDataIMProtocolSkype = "http://schemas.google.com/g/2005#SKYPE"_L1;
inline constexpr auto kGDataIMProtocolYahoo = "http://schemas.google.com/g/2005#YAHOO"_L1;

// Dates, notes, web pages and relations, whose values are plain words.
inline constexpr auto kGDataContactEventAnniversary = "anniversary"_L1;
inline constexpr auto kGDataContactEventOther = "other"_L1;
inline constexpr auto kGDataContactJotUser = "user"_L1;
inline constexpr auto kGDataContactWebsiteLinkHomePage = "home-page"_L1;
inline constexpr auto kGDataContactWebsiteLinkHome = "home"_L1;
inline constexpr auto kGDataContactWebsiteLinkWork = "work"_L1;
inline constexpr auto kGDataContactRelationAssistant = "assistant"_L1;
inline constexpr auto kGDataContactRelationBrother = "brother"_L1;
inline constexpr auto kGDataContactRelationChild = "child"_L1;
inline constexpr auto kGDataContactRelationFather = "father"_L1;
inline constexpr auto kGDataContactRelationFriend = "friend"_L1;
inline constexpr auto kGDataContactRelationManager = "manager"_L1;
inline constexpr auto kGDataContactRelationMother = "mother"_L1;
inline constexpr auto kGDataContactRelationParent = "parent"_L1;
inline constexpr auto kGDataContactRelationPartner = "partner"_L1;
inline constexpr auto kGDataContactRelationSister = "sister"_L1;
inline constexpr auto kGDataContactRelationSpouse = "spouse"_L1;

} // namespace DRGData
