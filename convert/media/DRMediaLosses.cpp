#include "convert/media/DRMediaLosses.h"

#include "platform/device/DRMigrateFileKinds.h"

using namespace Qt::StringLiterals;

DRMediaLosses::DRMediaLosses()
    : m_photos(u"photos"_s, DRMigrateFileKinds::kPhotos),
      m_videos(u"videos"_s, DRMigrateFileKinds::kVideos),
      m_others(u"files"_s)
{
}

void DRMediaLosses::add(const QString& filename, quint32 fileKind, const QString& why)
{
    lossesOf(fileKind).add({.what = filename.isEmpty() ? u"A file without a name"_s : filename, .why = why});
}

void DRMediaLosses::tell(DRMigrateReport& report) const
{
    for (const DRMigrateLosses* losses : {&m_others, &m_photos, &m_videos}) {
        losses->tell(report);
    }
}

DRMigrateLosses& DRMediaLosses::lossesOf(quint32 fileKind)
{
    if ((fileKind & DRMigrateFileKinds::kPhotos) != 0) {
        return m_photos;
    }
    return (fileKind & DRMigrateFileKinds::kVideos) != 0 ? m_videos : m_others;
}
