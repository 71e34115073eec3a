#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRPrivateFolder.h"

using namespace Qt::StringLiterals;

namespace {

QString inflateFolder(const QString& temporaryFolder)
{
    return temporaryFolder + u"/TarvexTransfer"_s;
}

} // namespace

namespace DRMigrateUtils {

QString pathToInflateFolder(const QString& temporaryFolder)
{
    QString folder = inflateFolder(temporaryFolder);
    if (!DRPrivateFolder::make(folder)) {
        qCWarning(lcMigrate, "The working folder cannot be made: %s", qUtf8Printable(folder));
    }
    return folder;
}

bool clearTempFolder(const QString& temporaryFolder)
{
    const QString folder = inflateFolder(temporaryFolder);
    const bool isRemoved = DRFiles::removeTree(folder);
    return DRPrivateFolder::make(folder) && isRemoved;
}

QString pathToPhotoLocationOnDevice()
{
    return u"TarvexTransfer/Media"_s;
}

QString pathToVoiceMemoLocationOnDevice()
{
    return u"TarvexTransfer/Recordings"_s;
}

} // namespace DRMigrateUtils
