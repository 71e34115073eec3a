#include "app/sample/DRSamplePhoneContacts.h"

#include "app/sample/DRSamplePhone.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Person {
    QStringView givenName;
    QStringView familyName;
    QStringView number;
    QStringView address; ///< e-mail; empty when there is none
};
constexpr std::array kPeople{
    Person{u"Ada", u"Falk", u"+1 555 010 0101", u"ada.falk@example.com"},
    Person{u"Bj\u00F6rn", u"Str\u00F6m", u"+46 70 555 01 02", u"bjorn@example.org"},
    Person{u"\u7F8E\u7A42", u"\u4F50\u3005\u6728", u"+81 90 5550 0103", u""},
    Person{u"Noor", u"", u"5550104", u""},
};

struct Call {
    int id;
    QStringView number;
    int minutesAgo;
    int durationSeconds;
    int type; ///< 1 incoming, 2 outgoing, 3 missed
};
// The IDs have gaps, as after calls were deleted.
constexpr std::array kCalls{
    Call{3, u"+15550100101", 60 * 24 * 12, 183, 1}, Call{4, u"+46705550102", 60 * 24 * 5, 0, 3},
    Call{7, u"5550104", 60 * 24, 2461, 2}, Call{9, u"-2", 95, 12, 1}, // the caller hid the number
};

QString vCard(const Person& person)
{
    const QString given = person.givenName.toString();
    const QString family = person.familyName.toString();
    QString card = u"BEGIN:VCARD\r\nVERSION:3.0\r\n"_s;
    card += u"N:%1;%2;;;\r\n"_s.arg(family, given);
    card += u"FN:%1\r\n"_s.arg(u"%1 %2"_s.arg(given, family).trimmed());
    card += u"TEL;TYPE=CELL:%1\r\n"_s.arg(person.number.toString());
    if (const QString address = person.address.toString(); !address.isEmpty()) {
        card += u"EMAIL;TYPE=HOME:%1\r\n"_s.arg(address);
    }
    return card + u"END:VCARD\r\n"_s;
}

QString callElement(const Call& call, const QDateTime& moment)
{
    const qint64 milliseconds = moment.addSecs(-60LL * call.minutesAgo).toSecsSinceEpoch() * 1000;
    return u"<Call><ID>%1</ID><Number>%2</Number><Date>%3</Date><Duration>%4</Duration><Type>%5</Type><NumberType>0</NumberType></Call>"_s
        .arg(call.id)
        .arg(call.number.toString())
        .arg(milliseconds)
        .arg(call.durationSeconds)
        .arg(call.type);
}

QString contacts()
{
    QString cards;
    for (const Person& person : kPeople) {
        cards += vCard(person);
    }
    return cards;
}

QString callLog(const QDateTime& moment)
{
    QString log = u"<?xml version=\"1.0\" encoding=\"utf-8\"?><CallLogList>"_s;
    for (const Call& call : kCalls) {
        log += callElement(call, moment);
    }
    return log + u"</CallLogList>"_s;
}

} // namespace

bool addPhoneContacts(DRSamplePhone& phone, const DRSampleSettings& settings)
{
    const std::array apps{
        DRSampleApp{.packetId = u"com.vornmobile.android.contactsimport"_s, .versionCode = 8},
        DRSampleApp{.packetId = u"com.vornmobile.android.socialphonebook"_s, .versionCode = 211},
    };
    return std::all_of(apps.begin(), apps.end(), [&phone, &settings](const DRSampleApp& app) {
        return phone.addPacket(app, [&settings](const QString& appFolder) {
            return writeSampleFile(appFolder + u"/f/full_backup_vcard.vcf"_s, contacts().toUtf8()) &&
                   writeSampleFile(appFolder + u"/f/TempCallLogs"_s, callLog(settings.moment).toUtf8());
        });
    });
}
