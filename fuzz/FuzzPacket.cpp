// A whole packet: nothing is written outside the folder that it is expanded into and nothing but files and folders into
// it; what it held survives being packed again.

#include "fuzz/DRFuzzFolder.h"
#include "fuzz/DRFuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketHeader.h"
#include "platform/core/DRFileNames.h"

#include <QDir>
#include <QFileInfo>

#include <filesystem>
#include <map>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Most mutations of a compressed archive are only damage to the compression, so that its content comes to us as it is and is
/// compressed here. The first byte of an input says how the rest is meant.
enum class Form { Packet, StoredArchive, CompressedArchive, Count };

/// Packing files with holes writes the holes out; what is larger is not packed again here.
constexpr qint64 kMostRepackedBytes = qint64{1} << 20;

QByteArray packetOf(QByteArrayView bytes)
{
    DRFuzzInput input(bytes);
    switch (static_cast<Form>(input.takePosition(static_cast<int>(Form::Count)))) {
    case Form::StoredArchive:
        return "ANDROID BACKUP\n1\n0\nnone\n" + input.takeRest().toByteArray();
    case Form::CompressedArchive:
        return "ANDROID BACKUP\n1\n1\nnone\n" + zlibDeflate(input.takeRest().toByteArray()).value_or(QByteArray());
    case Form::Packet:
    case Form::Count:
        break;
    }
    return input.takeRest().toByteArray();
}

/// Ends the process when the folder holds anything but plain files and folders of ours. Answers their sizes together.
qint64 checkedSize(const QString& folder)
{
    qint64 size = 0;
    std::error_code error;
    for (auto entry = std::filesystem::recursive_directory_iterator(folder.toStdString(), error);
         !error && entry != std::filesystem::end(entry); entry.increment(error)) {
        struct stat status {};
        require(::lstat(entry->path().c_str(), &status) == 0, "an expanded file can be looked at");
        const mode_t mode = status.st_mode;
        require(S_ISREG(mode) || S_ISDIR(mode), "only files and folders are expanded");
        require((mode & 07777U) == (S_ISDIR(mode) ? 0700U : 0600U), "expanded files are ours alone");
        size += S_ISREG(mode) ? status.st_size : 0;
    }
    require(!error, "an expanded folder can be walked through");
    return size;
}

std::map<QString, QByteArray> packedFilesOf(const QString& folder)
{
    std::map<QString, QByteArray> files;
    const auto names = DRMigrateUtils::filesBelowApps(folder);
    require(names.has_value(), "an expanded folder can be listed");
    for (const QString& name : *names) {
        if (!DRMigrateUtils::isLeftOutOfPackets(name)) {
            std::FILE* file = std::fopen((folder.toUtf8() + '/' + DRFileNames::toBytes(name)).constData(), "rb");
            require(file != nullptr, "an expanded file can be opened by its name");
            QByteArray content(kMostRepackedBytes, Qt::Uninitialized);
            content.resize(static_cast<qsizetype>(std::fread(content.data(), 1, kMostRepackedBytes, file)));
            static_cast<void>(std::fclose(file));
            files[name] = content;
        }
    }
    return files;
}

void checkRepacking(const DRFuzzFolder& folder, const QString& expanded)
{
    const QStringList names = DRMigrateUtils::filesBelowApps(expanded).value_or(QStringList());
    if (names.isEmpty()) {
        return; // there are no packets of nothing
    }
    const auto files = packedFilesOf(expanded);
    const QString packet = folder.path(u"outer/packed"_s);
    require(DRMigrateUtils::compressAndroidBackupPacket(expanded, names, packet), "what was expanded can be packed");
    const QString again = folder.path(u"outer/again"_s);
    const auto expansion = DRMigrateUtils::expandPacket(packet, again);
    require(expansion.isExpanded && !expansion.isDamaged && expansion.leftOutCount == 0, "our packets can be expanded");
    require(packedFilesOf(again) == files, "our packets hold what was packed");
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    const DRFuzzFolder folder;
    const QByteArray content = packetOf(bytes);
    const QString packet = folder.write(u"outer/packet"_s, content);
    const QString target = folder.path(u"outer/expanded"_s);

    const auto expansion = DRMigrateUtils::expandPacket(packet, target);
    require(QDir(folder.path({})).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot) ==
                QStringList{u"outer"_s},
            "nothing is written two folders above");
    const QStringList beside =
        QDir(folder.path(u"outer"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    require(beside == QStringList{u"packet"_s} || beside == QStringList{u"expanded"_s, u"packet"_s},
            "nothing is written outside the folder");
    require(contentOf(packet) == content, "a packet stays as it is");
    require(packetContents(packet).has_value() == expansion.isExpanded,
            "looking into a packet succeeds as expanding does");
    // A refused header leaves the folder alone.
    const qint64 size = QFileInfo::exists(target) ? checkedSize(target) : 0;
    if (!expansion.isExpanded) {
        require(size == 0, "nothing stays of a packet that cannot be expanded");
        return;
    }
    if (size <= kMostRepackedBytes) {
        checkRepacking(folder, target);
    }
}
