#include "model/packet/DRPacketProblem.h"

#include "model/packet/DRPacketHeader.h"
#include "platform/core/DRFileDescriptor.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

QString packetProblem(const QString& packet)
{
    const DRFileDescriptor file = DRFileDescriptor::openRegularFile(QFileInfo(packet).canonicalFilePath());
    if (!file.isOpen()) {
        return errno == ENOENT ? u"there is no such file"_s : u"it is no file that can be opened"_s;
    }
    QByteArray start(kLongestPacketHeader, '\0');
    start.truncate(std::max<qint64>(file.read(start.data(), start.size()), 0));
    const QList<QByteArray> lines = start.split('\n');
    if (lines.front() != "ANDROID BACKUP" || lines.size() < 5 || lines[2].isEmpty() || lines[3].isEmpty()) {
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
