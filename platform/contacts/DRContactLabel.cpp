#include "platform/contacts/DRContactLabel.h"

#include "platform/contacts/DRGDataConstants.h"

using namespace Qt::StringLiterals;

namespace {

struct RelName {
    QLatin1StringView rel;
    QLatin1StringView name;
};

constexpr RelName kNames[] = {
    {DRGData::kGDataContactHome, "Home"_L1},
    {DRGData::kGDataContactWork, "Work"_L1},
    {DRGData::kGDataPhoneNumberMobile, "Mobile"_L1},
    {DRGData::kGDataPhoneNumberMain, "Main"_L1},
    {DRGData::kGDataPhoneNumberHomeFax, "Home Fax"_L1},
    {DRGData::kGDataPhoneNumberWorkFax, "Work Fax"_L1},
    {DRGData::kGDataPhoneNumberPager, "Pager"_L1},
    {DRGData::kGDataContactWebsiteLinkHomePage, "HomePage"_L1},
};

bool saysNothing(const QString& rel)
{
    return rel.isEmpty() || rel == DRGData::kGDataContactOther || rel == DRGData::kGDataContactEventOther;
}

} // namespace

QString DRContactLabel::plain(const QString& label)
{
    constexpr auto kStart = "_$!<"_L1;
    constexpr auto kEnd = ">!$_"_L1;
    const bool isDecorated =
        label.size() >= kStart.size() + kEnd.size() && label.startsWith(kStart) && label.endsWith(kEnd);
    return isDecorated ? label.sliced(kStart.size()).chopped(kEnd.size()) : label;
}

QString DRContactLabel::nameOf(const QString& rel, const QString& label)
{
    if (saysNothing(rel)) {
        return plain(label);
    }
    for (const RelName& known : kNames) {
        if (rel == known.rel) {
            return known.name;
        }
    }
    return rel.sliced(rel.lastIndexOf(u'#') + 1);
}
