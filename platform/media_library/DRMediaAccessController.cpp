#include "platform/media_library/DRMediaAccessController.h"

#include "platform/core/DRLog.h"
#include "platform/core/DRUserFolders.h"
#include "platform/media_library/DRMusicLibrary.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

DRMediaAccessController::DRMediaAccessController(QString libraryPath) : m_libraryPath(std::move(libraryPath)) {}

DRMediaAccessController::~DRMediaAccessController() = default;

QString DRMediaAccessController::defaultLibraryPath(const DRUserFolders& folders)
{
    for (const QString& name : {u"iTunes Music Library.xml"_s, u"iTunes Library.xml"_s}) {
        QString path = folders.music + u"/iTunes/"_s + name;
        if (!folders.music.isEmpty() && QFileInfo::exists(path)) {
            return path;
        }
    }
    return {};
}

std::shared_ptr<const DRMusicLibrary> DRMediaAccessController::iTunesLibrary() const
{
    const std::scoped_lock lock(m_mutex);
    if (!m_library && !m_libraryPath.isEmpty()) {
        // The person named this file; a link to it is as good.
        const QString canonical = QFileInfo(m_libraryPath).canonicalFilePath();
        auto library = DRMusicLibrary::fromFile(canonical.isEmpty() ? m_libraryPath : canonical);
        if (!library.problem().isNull()) {
            qCWarning(lcMigrate, "The music library is not complete: %ls", qUtf16Printable(library.problem()));
        }
        m_library = std::make_shared<const DRMusicLibrary>(std::move(library));
    }
    return m_library;
}
