#include "model/packet/DRPacketPaths.h"

#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRFileNames.h"
#include "platform/core/DRLog.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <tuple>

namespace {

bool isSafeComponent(const QByteArray& component)
{
    return !component.isEmpty() && component != "." && component != ".." && !component.contains('\0');
}

QByteArray withoutCurrentFolder(const QByteArray& path)
{
    return path.startsWith("./") ? path.mid(2) : path;
}

/// Whether the path is apps/PACKAGE/_manifest.
bool isManifest(const QByteArray& path)
{
    return path.startsWith("apps/") && path.endsWith("/_manifest") && path.count('/') == 2;
}

bool comesBefore(const QByteArray& left, const QByteArray& right)
{
    return std::tuple(!isManifest(left), left) < std::tuple(!isManifest(right), right);
}

} // namespace

std::optional<std::vector<QByteArray>> safePathComponents(const QByteArray& path)
{
    QByteArray relative = withoutCurrentFolder(path);
    if (relative.endsWith('/')) {
        relative.chop(1);
    }
    if (relative.isEmpty()) {
        return path.startsWith("./") ? std::optional(std::vector<QByteArray>{}) : std::nullopt;
    }
    const QList<QByteArray> parts = relative.split('/');
    if (!std::ranges::all_of(parts, isSafeComponent)) {
        return std::nullopt;
    }
    return std::vector<QByteArray>(parts.begin(), parts.end());
}

std::optional<std::vector<QByteArray>> inPacketOrder(const QStringList& relativePaths)
{
    std::vector<QByteArray> ordered;
    for (const QString& path : relativePaths) {
        const QByteArray name = withoutCurrentFolder(DRFileNames::toBytes(path));
        if (name.endsWith('/') || !safePathComponents(name)) {
            return std::nullopt;
        }
        if (!DRMigrateUtils::isLeftOutOfPackets(path)) {
            ordered.push_back(name);
        }
    }
    std::ranges::sort(ordered, comesBefore);
    ordered.erase(std::unique(ordered.begin(), ordered.end()), ordered.end());
    return ordered;
}

std::optional<QStringList> DRMigrateUtils::filesBelowApps(const QString& packetFolder)
{
    // Not Qt's iterator, which leaves out names that are no UTF-8: an app may have such files, and must get them back.
    namespace fs = std::filesystem;
    const fs::path root(nativePath(packetFolder).toStdString());
    QStringList files;
    std::error_code error;
    fs::recursive_directory_iterator iterator(root / "apps", error);
    if (error == std::errc::no_such_file_or_directory) {
        return files;
    }
    while (!error && iterator != fs::recursive_directory_iterator()) {
        const fs::file_type type = iterator->symlink_status(error).type();
        if (error) {
            break;
        }
        if (type == fs::file_type::regular) {
            const fs::path relative = iterator->path().lexically_relative(root);
            files.append(DRFileNames::fromBytes(QByteArray::fromStdString(relative.native())));
        }
        iterator.increment(error);
    }
    if (error) {
        qCWarning(lcMigrate, "The files of an app cannot be listed: %s", error.message().c_str());
        return std::nullopt; // a packet of those that were seen would take the others from the phone
    }
    return files;
}
