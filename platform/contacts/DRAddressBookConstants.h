#pragma once

#include <QLatin1StringView>

/// The texts that an iPhone's address book stores for its own labels (table `ABMultiValueLabel`) and for the parts of
/// structured values (table `ABMultiValueEntryKey`). A label that a person typed is stored as its plain text.
namespace DRAddressBook {

using namespace Qt::StringLiterals;

// Labels of telephone numbers. Home and work are the general labels.
inline constexpr auto kABPhoneWorkLabel = "_$!<Work>!$_"_L1;
inline constexpr auto kABPhoneHomeLabel = "_$!<Home>!$_"_L1;
inline constexpr auto kABPhoneMobileLabel = "_$!<Mobile>!$_"_L1;
inline constexpr auto kABPhoneMainLabel = "_$!<Main>!$_"_L1;
inline constexpr auto kABPhoneHomeFAXLabel = "_$!<HomeFAX>!$_"_L1;
inline constexpr auto kABPhoneWorkFAXLabel = "_$!<WorkFAX>!$_"_L1;
inline constexpr auto kABPhonePagerLabel = "_$!<Pager>!$_"_L1;

// Labels of any value.
inline constexpr auto kABWorkLabel = "_$!<Work>!$_"_L1;
inline constexpr auto kABHomeLabel = "_$!<Home>!$_"_L1;
inline constexpr auto kABOtherLabel = "_$!<Other>!$_"_L1;

// Labels of dates, web pages and related names.
inline constexpr auto kABAnniversaryLabel = "_$!<Anniversary>!$_"_L1;
inline constexpr auto kABHomePageLabel = "_$!<HomePage>!$_"_L1;
inline constexpr auto kABFatherLabel = "_$!<Father>!$_"_L1;
inline constexpr auto kABMotherLabel = "_$!<Mother>!$_"_L1;
inline constexpr auto kABParentLabel = "_$!<Parent>!$_"_L1;
inline constexpr auto kABBrotherLabel = "_$!<Brother>!$_"_L1;
inline constexpr auto kABSisterLabel = "_$!<Sister>!$_"_L1;
inline constexpr auto kABChildLabel = "_$!<Child>!$_"_L1;
inline constexpr auto kABFriendLabel = "_$!<Friend>!$_"_L1;
inline constexpr auto kABSpouseLabel = "_$!<Spouse>!$_"_L1;
inline constexpr auto kABPartnerLabel = "_$!<Partner>!$_"_L1;
inline constexpr auto kABAssistantLabel = "_$!<Assistant>!$_"_L1;
inline constexpr auto kABManagerLabel = "_$!<Manager>!$_"_L1;

// Parts of a postal address.
inline constexpr auto kABAddressStreetKey = "Street"_L1;
inline constexpr auto kABAddressCityKey = "City"_L1;
inline constexpr auto kABAddressStateKey = "State"_L1;
inline constexpr auto kABAddressZIPKey = "ZIP"_L1;
inline constexpr auto kABAddressCountryKey = "Country"_L1;
inline constexpr auto kABAddressCountryCodeKey = "CountryCode"_L1;

} // namespace DRAddressBook
