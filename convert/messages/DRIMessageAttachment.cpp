#include "convert/messages/DRIMessageAttachment.h"

#include "platform/core/DRFiles.h"

#include <limits>

QByteArray DRIMessageAttachment::fileData() const
{
    return DRFiles::readRegularFile(path, std::numeric_limits<qint64>::max()).value_or(QByteArray());
}
