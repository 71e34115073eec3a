// Messages, from the iPhone's database into the phone's: each is one row more, of "sms" or of "pdu".

#include "app/sample/DRSampleMessages.h"
#include "app/sample/DRSamplePhoneTelephony.h"
#include "convert/messages/DRMigrateAndroidMessages.h"
#include "convert/messages/DRMigrateIPhoneMessages.h"
#include "fuzz/DRFuzzMove.h"

using namespace Qt::StringLiterals;

void fuzzOne(QByteArrayView bytes)
{
    static DRFuzzBackup backup(addIPhoneMessages, {u"HomeDomain-Library/SMS/sms.db"_s});
    static DRFuzzPhone phone(addPhoneTelephony, u"com.android.providers.telephony"_s, u"db/mmssms.db"_s);
    DRFuzzMove().moveRows<DRMigrateIPhoneMessages, DRMigrateAndroidMessages>(
        bytes, backup, phone, {u"sms"_s, u"pdu"_s},
        [](const DRMigrateReport& report) { return report.counts.at(u"messages"_s); });
}
