#include "model/packet/DRPacketHeader.h"

#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketPayload.h"
#include "platform/core/DRLog.h"

using namespace Qt::StringLiterals;

namespace {

bool isAccepted(const DRPacketHeader& header)
{
    if (header.magic != u"ANDROID BACKUP"_s || header.version != u"1"_s || header.compression.isEmpty() ||
        header.encryption.isEmpty()) {
        return false;
    }
    if (header.encryption == u"AES-256"_s) {
        qCWarning(lcMigrate, "ExpandAndroidBackup->Encrypted format not supported, bailing");
        return false;
    }
    return true;
}

} // namespace

bool DRPacketHeader::isCompressed() const
{
    QStringView text = QStringView(compression).trimmed();
    if (text.startsWith(u'-') || text.startsWith(u'+')) {
        text = text.mid(1);
    }
    while (text.startsWith(u'0')) {
        text = text.mid(1);
    }
    return !text.isEmpty() && u"123456789YyTt"_s.contains(text.front());
}

std::optional<DRPacketHeader> packetHeaderFromBytes(const QByteArray& bytes)
{
    DRPacketHeader header;
    qsizetype offset = 0;
    for (QString* const line : {&header.magic, &header.version, &header.compression, &header.encryption}) {
        *line = DRMigrateUtils::lineFromData(bytes, offset, offset);
    }
    if (!isAccepted(header)) {
        return std::nullopt;
    }
    header.payloadOffset = offset;
    return header;
}

std::optional<DRPacketHeader> readPacketHeader(const QString& packet)
{
    const std::optional<DRPacketPayload> payload = DRPacketPayload::open(packet);
    return payload ? std::optional(payload->header()) : std::nullopt;
}
