// The photo library of an iPhone: every entry is a file of the backup, with a name that is one.

#include "app/sample/DRSamplePhotos.h"
#include "convert/media/DRMigrateIPhonePhotos.h"
#include "fuzz/DRFuzzMove.h"

using namespace Qt::StringLiterals;

void fuzzOne(QByteArrayView bytes)
{
    static DRFuzzBackup backup(addIPhonePhotos, {u"CameraRollDomain-Media/PhotoData/Photos.sqlite"_s});
    DRFuzzMove().readFiles<DRMigrateIPhonePhotos>(bytes, backup);
}
