#include "model/packet/DRPacketProblem.h"

#include "model/packet/DRPacketHeader.h"

#include <QFile>

using namespace Qt::StringLiterals;

QString packetProblem(const QString& packet)
{
    QFile file(packet);
    if (!file.open(QIODevice::ReadOnly)) {
        return u"it was not fetched from the phone"_s;
    }
    const QList<QByteArray> lines = file.read(kLongestPacketHeader).split('\n');
    if (lines.front() != "ANDROID BACKUP" || lines.size() < 5) {
        return u"it is not in the format of Android backups"_s;
    }
    if (lines[1] != "1") {
        return u"its format version is %1, and only version 1 can be read"_s.arg(
            QString::fromLatin1(lines[1].left(20)));
    }
    if (lines[3] == "AES-256") {
        return u"it is encrypted; turn the backup password off on the phone"_s;
    }
    return u"its content is damaged, or there is not enough free space on this computer"_s;
}
