#include "platform/core/DRDigest.h"

#include <QCryptographicHash>

QString sha1HexString(const QString& text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex());
}
