#include "platform/folder_phone/DRFolderPhoneStorage.h"

#include "platform/device/DRDCFile.h"
#include "platform/device/DRDCFileProcessor.h"
#include "platform/folder_phone/DRMediaPlacement.h"
#include "platform/folder_phone/DRNoFollow.h"
#include "platform/folder_phone/DRPhoneProblems.h"
#include "platform/folder_phone/DRUsedSpace.h"
#include "platform/folder_phone/DRWholeFile.h"

#include <array>
#include <cerrno>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// What is to be copied; not open when it cannot be read or made.
DRFileDescriptor openSource(const DRDCFile& file)
{
    const DRDCFileProcessor* processor = file.fileProcessor();
    if (processor == nullptr) {
        return DRFileDescriptor::openRegularFile(file.sourcePath());
    }
    const auto content = processor->contentForFile(file);
    return content ? DRFileContent::fileInMemory(*content) : DRFileDescriptor();
}

bool copyTimeOfChange(const DRFileDescriptor& source, const DRFileDescriptor& target)
{
    const auto status = source.status();
    if (!status) {
        return false;
    }
    const std::array times{status->st_mtim, status->st_mtim};
    return ::futimens(target.number(), times.data()) == 0;
}

DRStepOutcome write(const DRFileDescriptor& source, const DRWholeFile& target, const DRByteProgress& progress)
{
    const quint64 size = DRNoFollow::sizeOf(source);
    const auto copied = DRFileContent::copy(source, target.file(), progress);
    if (!copied) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, errno);
    }
    if (*copied != size || size != DRNoFollow::sizeOf(source)) {
        return DRStepOutcome::failed(u"it changed while it was copied"_s);
    }
    if (!copyTimeOfChange(source, target.file())) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, errno);
    }
    return {};
}

/// Gives it this number of the name, or the next that nobody takes meanwhile. The number; none on failure, with the
/// cause in `errno`.
std::optional<int> placeFrom(int number, const QString& name, DRWholeFile& target)
{
    while (!target.placeAs(DRMediaPlacement::numberedName(name, number))) {
        if (errno != EEXIST || number == DRTakenNames::kMaximumNumber) {
            return std::nullopt;
        }
        ++number;
    }
    return number;
}

/// Copies into the folder from this number of the name on. The outcome's place is the name.
DRStepOutcome copyInto(const DRFileDescriptor& folder,
                       const QString& name,
                       int number,
                       const DRFileDescriptor& source,
                       const DRByteProgress& progress)
{
    auto target = DRWholeFile::beginIn(folder);
    if (!target) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, errno);
    }
    if (DRStepOutcome outcome = write(source, *target, progress); outcome.kind != DRStepOutcome::Kind::Done) {
        return outcome;
    }
    const auto taken = placeFrom(number, name, *target);
    return taken ? DRStepOutcome::doneAt(DRMediaPlacement::numberedName(name, *taken))
                 : DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, errno);
}

} // namespace

DRFolderPhoneStorage::DRFolderPhoneStorage(DRFolderPhoneRoot root, quint64 capacityBytes)
    : m_root(std::move(root)), m_capacityBytes(capacityBytes)
{
}

DRStepOutcome
DRFolderPhoneStorage::copy(const DRDCFile& file, const QString& targetPath, const DRByteProgress& progress)
{
    QStringList folders = DRMediaPlacement::safeComponents(targetPath);
    if (folders.isEmpty()) {
        return DRStepOutcome::failed(u"it has no name for the phone"_s);
    }
    const QString name = folders.takeLast();
    const QString parent = folders.isEmpty() ? QString() : folders.join(u'/') + u'/';
    folders.prepend(DRFolderPhoneRoot::kStorageFolder);

    const DRFileDescriptor source = openSource(file);
    if (!source.isOpen()) {
        return DRStepOutcome::failed(u"the file cannot be read"_s);
    }
    const DRFileDescriptor root = m_root.open();
    if (!root.isOpen()) {
        return DRPhoneProblems::phoneGone();
    }
    const DRFileDescriptor folder = DRNoFollow::openOrMakeFolders(root, folders);
    if (!folder.isOpen()) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, errno);
    }
    if (!m_cleanFolders.contains(parent)) {
        m_cleanFolders.insert(parent);
        DRWholeFile::removeLeftovers(folder);
    }
    DRStepOutcome outcome = place({.folder = folder, .name = name, .taken = m_taken[parent + name]}, source, progress);
    outcome.place.prepend(outcome.place.isEmpty() ? QString() : parent);
    return outcome;
}

DRStepOutcome
DRFolderPhoneStorage::place(const Goal& goal, const DRFileDescriptor& source, const DRByteProgress& progress)
{
    const DRTakenNames::Place place = goal.taken.placeFor(source, goal.folder, goal.name);
    if (place.isFilled) {
        return DRStepOutcome::doneAt(DRMediaPlacement::numberedName(goal.name, place.number));
    }
    const quint64 size = DRNoFollow::sizeOf(source);
    if (place.number == 0) {
        return DRStepOutcome::failed(u"no name is left for it on the phone"_s);
    }
    if (!hasRoomFor(size)) {
        return DRPhoneProblems::noSpace(DRPhoneProblems::kPhone);
    }
    DRStepOutcome outcome = copyInto(goal.folder, goal.name, place.number, source, progress);
    if (outcome.kind != DRStepOutcome::Kind::Done) {
        return outcome;
    }
    *m_usedBytes += size;
    // A phone that went away while the last bytes were written did not get them.
    return m_root.isThere() ? outcome : DRPhoneProblems::phoneGone();
}

DRStepOutcome DRFolderPhoneStorage::remove(const QString& path) const
{
    if (!DRMediaPlacement::isSafePath(path)) {
        return DRStepOutcome::failed(u"it is no path on the phone's storage"_s);
    }
    const DRFileDescriptor root = m_root.open();
    if (!root.isOpen()) {
        return DRPhoneProblems::phoneGone();
    }
    QStringList folders = path.split(u'/');
    const QByteArray name = nativePath(folders.takeLast());
    folders.prepend(DRFolderPhoneRoot::kStorageFolder);
    const DRFileDescriptor folder = DRNoFollow::openFolders(root, folders);
    const bool isGone = folder.isOpen() && ::unlinkat(folder.number(), name.constData(), 0) == 0;
    return isGone || errno == ENOENT ? DRStepOutcome{} : DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, errno);
}

bool DRFolderPhoneStorage::hasRoomFor(quint64 bytes)
{
    if (!m_usedBytes) {
        m_usedBytes = DRUsedSpace::bytesNow(m_root);
    }
    return *m_usedBytes <= m_capacityBytes && bytes <= m_capacityBytes - *m_usedBytes;
}
