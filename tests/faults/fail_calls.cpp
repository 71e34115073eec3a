// Preloaded into the program under test, this counts the calls that it makes to the file system below some folders, and lets one of them
// go wrong. Told by the environment:
//   FAULTS_ROOTS  the folders, absolute, separated by colons
//   FAULTS_TRACE  a file that gets a line for each call (without FAULTS_AT) or for the call that went wrong: its number, what can become
//                 of it ("s": the disk may be full, "p": it may do a part only, "-": neither), its name, its path; tabs in between
//   FAULTS_AT     the number of the call that goes wrong, from 1
//   FAULTS_KIND   ENOSPC, EIO, part, killBefore, killAfter or gone (FAULTS_GONE is renamed to FAULTS_GONE.gone before the call)
//   FAULTS_ON     when set, all later calls below the same folder meet ENOSPC, EIO or part, too

#include "Injector.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <type_traits>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

// Programs that use large files know the same functions by a second name; their types are the same on this system.
static_assert(sizeof(off_t) == 8 && sizeof(struct stat) == sizeof(struct stat64));
#define ALSO_AS_64(name) asm(".globl " #name "64\n.set " #name "64, " #name)

namespace {

/// The function that this library stands before.
template <auto Function> decltype(Function) real(const char* name)
{
    static const auto found = reinterpret_cast<decltype(Function)>(::dlsym(RTLD_NEXT, name));
    return found;
}

template <typename Result> Result failed(int error)
{
    errno = error;
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else {
        return -1;
    }
}

void moveAway(const std::string& folder)
{
    ::syscall(SYS_rename, folder.c_str(), (folder + ".gone").c_str());
}

void killThisProcess()
{
    static_cast<void>(::raise(SIGKILL));
}

/// Makes the call, `make(size)`, with what should become of it.
template <typename Make> auto answer(const Call& call, Make make) -> decltype(make(call.size))
{
    using Result = decltype(make(call.size));
    switch (faultFor(call)) {
    case Fault::None:
        break;
    case Fault::NoSpace:
        return failed<Result>(ENOSPC);
    case Fault::Broken:
        return failed<Result>(EIO);
    case Fault::Part:
        return make(std::max<std::size_t>(call.size / 2, std::min<std::size_t>(call.size, 1)));
    case Fault::KillBefore:
        killThisProcess();
        break;
    case Fault::KillAfter:
        make(call.size);
        killThisProcess();
        break;
    case Fault::Gone:
        moveAway(variable("FAULTS_GONE"));
        break;
    }
    return make(call.size);
}

std::string pathOf(int descriptor)
{
    const int errorBefore = errno;
    std::array<char, PATH_MAX> path{};
    const std::string link = descriptor == AT_FDCWD ? "/proc/self/cwd" : "/proc/self/fd/" + std::to_string(descriptor);
    const long length = ::syscall(SYS_readlink, link.c_str(), path.data(), path.size());
    errno = errorBefore;
    return {path.data(), static_cast<std::size_t>(std::max(length, 0L))};
}

std::string pathAt(int folder, const char* path)
{
    const std::string_view name(path);
    if (name.starts_with('/')) {
        return std::string(name);
    }
    return name.empty() ? pathOf(folder) : pathOf(folder) + '/' + std::string(name);
}

std::string pathHere(const char* path)
{
    return pathAt(AT_FDCWD, path);
}

Limit limitOfOpening(int flags)
{
    return (flags & O_CREAT) != 0 ? Limit::Space : Limit::None;
}

bool isForWriting(int file)
{
    const int errorBefore = errno;
    const long flags = ::syscall(SYS_fcntl, file, F_GETFL);
    errno = errorBefore;
    return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = va_arg(more, mode_t); // without O_CREAT it is looked at by nobody
    va_end(more);
    return answer({"open", pathHere(path), limitOfOpening(flags)},
                  [=](std::size_t) { return real<&::open>("open")(path, flags, mode); });
}
ALSO_AS_64(open);

int openat(int folder, const char* path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = va_arg(more, mode_t);
    va_end(more);
    return answer({"openat", pathAt(folder, path), limitOfOpening(flags)},
                  [=](std::size_t) { return real<&::openat>("openat")(folder, path, flags, mode); });
}
ALSO_AS_64(openat);

int mkostemp(char* pattern, int flags)
{
    return answer({"mkostemp", pathHere(pattern), Limit::Space},
                  [=](std::size_t) { return real<&::mkostemp>("mkostemp")(pattern, flags); });
}
ALSO_AS_64(mkostemp);

ssize_t read(int file, void* bytes, std::size_t size)
{
    return answer({"read", pathOf(file), Limit::Part, size},
                  [=](std::size_t count) { return real<&::read>("read")(file, bytes, count); });
}

ssize_t pread(int file, void* bytes, std::size_t size, off_t offset)
{
    return answer({"pread", pathOf(file), Limit::Part, size},
                  [=](std::size_t count) { return real<&::pread>("pread")(file, bytes, count, offset); });
}
ALSO_AS_64(pread);

ssize_t write(int file, const void* bytes, std::size_t size)
{
    return answer({"write", pathOf(file), Limit::SpaceAndPart, size},
                  [=](std::size_t count) { return real<&::write>("write")(file, bytes, count); });
}

ssize_t pwrite(int file, const void* bytes, std::size_t size, off_t offset)
{
    return answer({"pwrite", pathOf(file), Limit::SpaceAndPart, size},
                  [=](std::size_t count) { return real<&::pwrite>("pwrite")(file, bytes, count, offset); });
}
ALSO_AS_64(pwrite);

ssize_t copy_file_range(int from, off_t* fromOffset, int to, off_t* toOffset, std::size_t size, unsigned flags)
{
    return answer({"copy_file_range", pathOf(to), Limit::SpaceAndPart, size}, [=](std::size_t count) {
        return real<&::copy_file_range>("copy_file_range")(from, fromOffset, to, toOffset, count, flags);
    });
}

int ftruncate(int file, off_t size) noexcept
{
    return answer({"ftruncate", pathOf(file), Limit::Space},
                  [=](std::size_t) { return real<&::ftruncate>("ftruncate")(file, size); });
}
ALSO_AS_64(ftruncate);

int fsync(int file)
{
    return answer({"fsync", pathOf(file), Limit::Space}, [=](std::size_t) { return real<&::fsync>("fsync")(file); });
}

int fdatasync(int file)
{
    return answer({"fdatasync", pathOf(file), Limit::Space},
                  [=](std::size_t) { return real<&::fdatasync>("fdatasync")(file); });
}

/// Some file systems tell only here that what was written did not arrive. The file is closed whatever becomes of the call.
int close(int file)
{
    if (!isForWriting(file)) {
        return real<&::close>("close")(file);
    }
    bool isClosed = false;
    const auto closeReally = [&isClosed, file](std::size_t) {
        isClosed = true;
        return real<&::close>("close")(file);
    };
    const int answered = answer({"close", pathOf(file), Limit::Space}, closeReally);
    if (!isClosed) {
        const int error = errno;
        closeReally(0);
        errno = error;
    }
    return answered;
}

int mkdir(const char* path, mode_t mode) noexcept
{
    return answer({"mkdir", pathHere(path), Limit::Space},
                  [=](std::size_t) { return real<&::mkdir>("mkdir")(path, mode); });
}

int mkdirat(int folder, const char* path, mode_t mode) noexcept
{
    return answer({"mkdirat", pathAt(folder, path), Limit::Space},
                  [=](std::size_t) { return real<&::mkdirat>("mkdirat")(folder, path, mode); });
}

int rmdir(const char* path) noexcept
{
    return answer({"rmdir", pathHere(path)}, [=](std::size_t) { return real<&::rmdir>("rmdir")(path); });
}

int unlink(const char* path) noexcept
{
    return answer({"unlink", pathHere(path)}, [=](std::size_t) { return real<&::unlink>("unlink")(path); });
}

int unlinkat(int folder, const char* path, int flags) noexcept
{
    return answer({"unlinkat", pathAt(folder, path)},
                  [=](std::size_t) { return real<&::unlinkat>("unlinkat")(folder, path, flags); });
}

int rename(const char* from, const char* to) noexcept
{
    return answer({"rename", pathHere(to), Limit::Space},
                  [=](std::size_t) { return real<&::rename>("rename")(from, to); });
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept
{
    return answer({"renameat", pathAt(toFolder, to), Limit::Space},
                  [=](std::size_t) { return real<&::renameat>("renameat")(fromFolder, from, toFolder, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept
{
    return answer({"renameat2", pathAt(toFolder, to), Limit::Space},
                  [=](std::size_t) { return real<&::renameat2>("renameat2")(fromFolder, from, toFolder, to, flags); });
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept
{
    return answer({"linkat", pathAt(toFolder, to), Limit::Space},
                  [=](std::size_t) { return real<&::linkat>("linkat")(fromFolder, from, toFolder, to, flags); });
}

int fchmod(int file, mode_t mode) noexcept
{
    return answer({"fchmod", pathOf(file)}, [=](std::size_t) { return real<&::fchmod>("fchmod")(file, mode); });
}

int futimens(int file, const timespec times[2]) noexcept
{
    return answer({"futimens", pathOf(file)}, [=](std::size_t) { return real<&::futimens>("futimens")(file, times); });
}

DIR* opendir(const char* path)
{
    return answer({"opendir", pathHere(path)}, [=](std::size_t) { return real<&::opendir>("opendir")(path); });
}

DIR* fdopendir(int folder)
{
    return answer({"fdopendir", pathOf(folder)}, [=](std::size_t) { return real<&::fdopendir>("fdopendir")(folder); });
}

dirent* readdir(DIR* folder)
{
    return answer({"readdir", pathOf(::dirfd(folder))},
                  [=](std::size_t) { return real<&::readdir>("readdir")(folder); });
}
ALSO_AS_64(readdir);

int stat(const char* path, struct stat* status) noexcept
{
    return answer({"stat", pathHere(path)}, [=](std::size_t) { return real<&::stat>("stat")(path, status); });
}
ALSO_AS_64(stat);

int lstat(const char* path, struct stat* status) noexcept
{
    return answer({"lstat", pathHere(path)}, [=](std::size_t) { return real<&::lstat>("lstat")(path, status); });
}
ALSO_AS_64(lstat);

int fstat(int file, struct stat* status) noexcept
{
    return answer({"fstat", pathOf(file)}, [=](std::size_t) { return real<&::fstat>("fstat")(file, status); });
}
ALSO_AS_64(fstat);

int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept
{
    return answer({"fstatat", pathAt(folder, path)},
                  [=](std::size_t) { return real<&::fstatat>("fstatat")(folder, path, status, flags); });
}
ALSO_AS_64(fstatat);

int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept
{
    return answer({"statx", pathAt(folder, path)},
                  [=](std::size_t) { return real<&::statx>("statx")(folder, path, flags, mask, status); });
}

int fstatvfs(int file, struct statvfs* status) noexcept
{
    return answer({"fstatvfs", pathOf(file)}, [=](std::size_t) { return real<&::fstatvfs>("fstatvfs")(file, status); });
}
ALSO_AS_64(fstatvfs);

int flock(int file, int operation) noexcept
{
    return answer({"flock", pathOf(file)}, [=](std::size_t) { return real<&::flock>("flock")(file, operation); });
}

} // extern "C"
