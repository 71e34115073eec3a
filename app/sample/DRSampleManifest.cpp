#include "app/sample/DRSampleManifest.h"

#include <QtEndian>

namespace {

constexpr quint16 kAbsent = 0xFFFF;
constexpr quint32 kMobileUser =
    501; // user "mobile", who owns nearly everything in a backup; the group has the same number

template <typename Integer> void append(QByteArray& bytes, Integer value)
{
    const Integer bigEndian = qToBigEndian(value);
    bytes.append(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

// A null string is an absent one, which has a length of its own.
void appendString(QByteArray& bytes, const QByteArray& string)
{
    Q_ASSERT(string.size() < kAbsent);
    append(bytes, string.isNull() ? kAbsent : static_cast<quint16>(string.size()));
    bytes.append(string);
}

void appendSeconds(QByteArray& bytes, const QDateTime& date)
{
    append(bytes, static_cast<quint32>(date.toSecsSinceEpoch()));
}

} // namespace

QByteArray sampleManifestHeader()
{
    return QByteArrayLiteral("mbdb\x05\x00");
}

QByteArray encodeManifestRecord(const DRSampleManifestRecord& record)
{
    QByteArray bytes;
    appendString(bytes, record.domain.toUtf8());
    appendString(bytes, record.path.isEmpty() ? QByteArrayLiteral("") : record.path.toUtf8());
    appendString(bytes, {}); // link target
    appendString(bytes, record.dataHash);
    appendString(bytes, {}); // encryption key
    append(bytes, record.mode);
    append(bytes, record.inode); // in two halves of 32 bits, the high one first
    append(bytes, kMobileUser);
    append(bytes, kMobileUser);
    appendSeconds(bytes, record.modified);
    appendSeconds(bytes, record.created); // last access
    appendSeconds(bytes, record.created);
    append(bytes, record.sizeBytes);
    append(bytes, record.protectionClass);
    append(bytes, static_cast<quint8>(record.properties.size()));
    for (const auto& [name, value] : record.properties) {
        appendString(bytes, name);
        appendString(bytes, value);
    }
    return bytes;
}
