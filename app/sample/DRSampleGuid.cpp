#include "app/sample/DRSampleGuid.h"

#include "platform/core/DRDigest.h"

using namespace Qt::StringLiterals;

QString sampleGuid(const QString& thing)
{
    const QString digits = sha1HexString(thing).toUpper();
    return u"%1-%2-%3-%4-%5"_s.arg(digits.mid(0, 8), digits.mid(8, 4), digits.mid(12, 4), digits.mid(16, 4),
                                   digits.mid(20, 12));
}
