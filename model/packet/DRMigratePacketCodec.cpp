#include "model/packet/DRMigratePacketCodec.h"

#include <algorithm>

namespace DRMigrateUtils {

QString lineFromData(const QByteArray& data, qsizetype startingAt, qsizetype& outOffset)
{
    if (startingAt < 0) {
        return {};
    }
    const qsizetype end = data.indexOf('\n', startingAt);
    if (end < 0) {
        return {};
    }
    outOffset = end + 1;
    return QString::fromLatin1(data.constData() + startingAt, end - startingAt);
}

bool isLeftOutOfPackets(const QString& relativePath)
{
    const QStringView path = QStringView(relativePath).mid(relativePath.startsWith(u"./") ? 2 : 0);
    const auto components = path.split(u'/');
    return std::ranges::any_of(components, [](QStringView component) { return component.startsWith(u'.'); });
}

} // namespace DRMigrateUtils
