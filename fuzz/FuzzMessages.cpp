// Messages, from the iPhone's database into the phone's: each is one row more, of "sms" or of "pdu".

#include "app/sample/DRSampleMessages.h"
#include "app/sample/DRSamplePhoneTelephony.h"
#include "convert/messages/DRMigrateAndroidMessages.h"
#include "convert/messages/DRMigrateIPhoneMessages.h"
#include "fuzz/DRFuzzMove.h"

using namespace Qt::StringLiterals;

namespace {

std::optional<qint64> messageCount(const DRFuzzPhone& phone)
{
    const auto texts = phone.rowCount(u"sms"_s);
    const auto others = phone.rowCount(u"pdu"_s);
    return texts && others ? std::optional(*texts + *others) : std::nullopt;
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    static DRFuzzBackup backup(addIPhoneMessages, {u"HomeDomain-Library/SMS/sms.db"_s});
    static DRFuzzPhone phone(addPhoneTelephony, u"com.android.providers.telephony"_s, u"db/mmssms.db"_s);
    editOneOf(bytes, backup, phone);
    DRFuzzMove move;
    const auto source = move.load<DRMigrateIPhoneMessages>(backup);
    if (!source) {
        return;
    }
    const auto before = messageCount(phone);
    const auto report = move.merge<DRMigrateAndroidMessages>(*source, phone.path(), phone.packetID());
    const auto after = messageCount(phone);
    if (report && before && after) {
        require(*after == *before + report->counts.at(u"messages"_s),
                "each message is a row, and the phone's own stay");
    }
}
