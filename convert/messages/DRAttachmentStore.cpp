#include "convert/messages/DRAttachmentStore.h"

#include "convert/messages/DRIMessageAttachment.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRFiles.h"
#include "platform/media/DRVideoBoxes.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <fcntl.h>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kFolder = u"r/app_parts"_s;

bool isVideo(const QString& mimeType)
{
    return mimeType.contains("video/"_L1, Qt::CaseInsensitive);
}

/// A video goes without the boxes that the phone's player stumbles over; what is no well-formed video goes as it is.
bool copyVideo(const QString& source, const QString& target)
{
    const DRFileDescriptor file = DRFileDescriptor::open(target, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (!file.isOpen()) {
        return false;
    }
    if (DRVideoBoxes::writeWithoutBoxes(source, file, DRVideoBoxes::pathsForOldPhones()) ==
        DRVideoBoxes::Outcome::Failed) {
        QFile::remove(target);
        return false;
    }
    return true;
}

bool copyAttachment(const DRIMessageAttachment& attachment, const QString& target)
{
    return isVideo(attachment.mimeType) ? copyVideo(attachment.path, target)
                                        : DRFiles::copyToNewFile(attachment.path, target);
}

} // namespace

DRAttachmentStore::DRAttachmentStore(QString appFolder, QString packetID)
    : m_appFolder(std::move(appFolder)), m_packetID(std::move(packetID))
{
}

std::optional<QString> DRAttachmentStore::store(const DRIMessageAttachment& attachment, const QDateTime& date)
{
    const QString folder = m_appFolder + u'/' + kFolder;
    if (!QDir().mkpath(folder)) {
        return std::nullopt;
    }
    QString name = freeName(date);
    if (!copyAttachment(attachment, folder + u'/' + name)) {
        return std::nullopt;
    }
    m_files.append(u"apps/%1/%2/%3"_s.arg(m_packetID, kFolder, name));
    return name;
}

/// The date's seconds with three random digits. Where a name is taken the next one follows, from where the last search in
/// that second ended, into the next seconds when all thousand are taken.
QString DRAttachmentStore::freeName(const QDateTime& date)
{
    constexpr qint64 kNamesPerSecond = 1000;
    constexpr qint64 kLastMoment = std::numeric_limits<qint64>::max() / 2; // of dates beyond all dates
    const qint64 second = std::clamp(date.toMSecsSinceEpoch(), -kLastMoment, kLastMoment) / kNamesPerSecond;
    qint64& tried = m_triedNames[second];
    const qint64 drawn = QRandomGenerator::global()->bounded(kNamesPerSecond);
    while (true) {
        const qint64 inSecond = (drawn + tried) % kNamesPerSecond;
        const qint64 stamp = (second + tried / kNamesPerSecond) * kNamesPerSecond + inSecond;
        QString name = u"PART_%1"_s.arg(stamp);
        if (!statusWithoutFollowing(m_appFolder + u'/' + kFolder + u'/' + name)) {
            return name;
        }
        ++tried;
    }
}

void DRAttachmentStore::takeBackAfter(qsizetype count)
{
    while (m_files.size() > count) {
        const QString name = m_files.takeLast().section(u'/', -1);
        QFile::remove(m_appFolder + u'/' + kFolder + u'/' + name);
    }
}
