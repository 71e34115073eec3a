#include "platform/core/DRPrivateFolder.h"

#include "platform/core/DRLog.h"

#include <QDir>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Refusal = DRPrivateFolder::Refusal;

constexpr mode_t kOwnerOnly = S_IRWXU;
constexpr mode_t kOthersMask = S_IRWXG | S_IRWXO;

Refusal refusal(Refusal::Reason reason, const QString& pattern, const QString& path)
{
    return {.reason = reason, .message = pattern.arg(withoutControlCharacters(path))};
}

Refusal cannotCreate(const QString& path, int error)
{
    return refusal(
        Refusal::Reason::CannotCreate,
        u"The folder \"%1\" cannot be used (%2). Make sure that you may write there and that the disk is not full."_s
            .arg(u"%1"_s, QString::fromLocal8Bit(std::strerror(error))),
        path);
}

/// What is wrong with a folder that should be ours alone; none when nothing is.
std::optional<Refusal> objectionTo(const struct stat& status, const QString& path)
{
    if (!S_ISDIR(status.st_mode)) {
        return refusal(
            Refusal::Reason::NotOurs,
            u"\"%1\" is not a folder but a link or a file. Look at what it is, then move it away or remove it."_s,
            path);
    }
    if (status.st_uid != ::geteuid()) {
        return refusal(Refusal::Reason::NotOurs,
                       u"The folder \"%1\" belongs to another user. Move it away, or let its owner remove it."_s, path);
    }
    if ((status.st_mode & kOthersMask) != 0) {
        return refusal(
            Refusal::Reason::NotOurs,
            u"The folder \"%1\" is open to other users. Look at what is in it, then remove it or run \"chmod 700 '%1'\"."_s,
            path);
    }
    return std::nullopt;
}

std::optional<Refusal> objectionToFolder(const QString& path)
{
    const auto status = statusWithoutFollowing(path);
    if (!status) {
        return cannotCreate(path, errno);
    }
    return objectionTo(*status, path);
}

/// The subfolder may be missing; it is looked at through the open folder, so that nobody can exchange that meanwhile.
std::optional<Refusal> objectionToContents(const DRFileDescriptor& folder, const QString& path, const QString& contents)
{
    struct stat status = {};
    if (contents.isEmpty() ||
        ::fstatat(folder.number(), nativePath(contents).constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return std::nullopt;
    }
    return objectionTo(status, path + u'/' + contents);
}

std::variant<DRFileDescriptor, Refusal> takeLock(const DRFileDescriptor& folder, const QString& path)
{
    DRFileDescriptor file(
        ::openat(folder.number(), "lock", O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen()) {
        return cannotCreate(path + u"/lock"_s, errno);
    }
    if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) {
        return file;
    }
    if (errno != EWOULDBLOCK) {
        return cannotCreate(path + u"/lock"_s, errno);
    }
    return refusal(Refusal::Reason::InUse,
                   u"Another run is using the folder \"%1\". Wait until it has ended, then start again."_s, path);
}

} // namespace

std::variant<DRPrivateFolder, DRPrivateFolder::Refusal> DRPrivateFolder::lock(const QString& path,
                                                                              const QString& contents)
{
    if (!statusWithoutFollowing(path) && !make(path)) {
        return cannotCreate(path, errno);
    }
    if (auto objection = objectionToFolder(path)) {
        return *std::move(objection);
    }
    const DRFileDescriptor folder = DRFileDescriptor::open(path, O_RDONLY | O_DIRECTORY);
    const auto status = folder.status();
    if (!status) {
        return cannotCreate(path, errno);
    }
    if (auto objection = objectionTo(*status, path)) {
        return *std::move(objection);
    }
    if (auto objection = objectionToContents(folder, path, contents)) {
        return *std::move(objection);
    }
    auto lock = takeLock(folder, path);
    if (auto* const file = std::get_if<DRFileDescriptor>(&lock)) {
        return DRPrivateFolder(std::move(*file));
    }
    return std::get<Refusal>(std::move(lock));
}

bool DRPrivateFolder::make(const QString& path)
{
    const QString clean = QDir::cleanPath(QDir(path).absolutePath());
    for (qsizetype slash = clean.indexOf(u'/', 1); slash >= 0; slash = clean.indexOf(u'/', slash + 1)) {
        // A folder that exists, or that only a later one needs, is no failure yet: the last one tells.
        ::mkdir(nativePath(clean.left(slash)).constData(), kOwnerOnly);
    }
    if (::mkdir(nativePath(clean).constData(), kOwnerOnly) == 0) {
        return true;
    }
    struct stat status = {};
    return errno == EEXIST && ::stat(nativePath(clean).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

DRPrivateFolder::DRPrivateFolder(DRFileDescriptor lock) : m_lock(std::move(lock)) {}
