// The voice memos of an iPhone: every entry is a file of the backup, with a name that is one.

#include "app/sample/DRSampleVoiceMemos.h"
#include "convert/media/DRMigrateIPhoneVoiceMemos.h"
#include "fuzz/DRFuzzMove.h"

using namespace Qt::StringLiterals;

void fuzzOne(QByteArrayView bytes)
{
    static DRFuzzBackup backup(addIPhoneVoiceMemos, {u"MediaDomain-Media/Recordings/Recordings.db"_s});
    DRFuzzMove().readFiles<DRMigrateIPhoneVoiceMemos>(bytes, backup);
}
