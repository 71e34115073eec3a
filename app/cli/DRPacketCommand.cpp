#include "app/cli/DRPacketCommand.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRTerminal.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRPacketProblem.h"
#include "platform/core/DRLog.h"

#include <QDir>
#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

DRCommandOutcome failure(const QString& message, const QString& nextStep = {})
{
    return {DRExitCode::FailedPhoneUnchanged, message, nextStep};
}

DRCommandOutcome refusalOf(const QString& packet)
{
    return failure(u"%1 cannot be read: %2."_s.arg(withoutControlCharacters(packet), packetProblem(packet)),
                   u"choose another packet, or back the app up again on the phone"_s);
}

/// The app that a packet's files belong to: the second part of "apps/<packet ID>/...". Null when there is none.
QString packetIDOf(const DRPacketContents& contents)
{
    for (const DRPacketFile& file : contents.files) {
        const QStringList parts = file.path.split(u'/');
        if (parts.size() > 2 && parts.front() == u"apps") {
            return parts.at(1);
        }
    }
    return {};
}

QByteArray jsonOf(const DRPacketContents& contents)
{
    const DRPacketHeader& header = contents.header;
    QJsonArray files;
    for (const DRPacketFile& file : contents.files) {
        files << QJsonObject{{u"path"_s, file.path}, {u"size"_s, DRJsonOutput::bytes(file.sizeBytes)}};
    }
    return DRJsonOutput::document({
        {u"version"_s, 1},
        {u"header"_s, QJsonArray{header.magic, header.version, header.compression, header.encryption}},
        {u"packetID"_s, DRJsonOutput::text(packetIDOf(contents))},
        {u"files"_s, files},
    });
}

/// A folder that holds far more than one packet, so that emptying it must be a mistake.
bool isTooPrecious(const QString& directory)
{
    const QString path = QFileInfo(directory).canonicalFilePath();
    const auto isIn = [&path](const QString& folder) { return (folder + u'/').startsWith(path + u'/'); };
    return path == u"/" || isIn(QDir::homePath()) || isIn(QDir::currentPath());
}

} // namespace

DRCommandOutcome DRPacketCommand::run()
{
    const QStringList& arguments = line().arguments;
    const QString& action = arguments.front();
    if (action == u"show" && arguments.size() == 2) {
        return show(arguments.at(1));
    }
    if (action == u"expand" && arguments.size() == 3) {
        return expand(arguments.at(1), arguments.at(2));
    }
    if (action == u"pack" && arguments.size() == 3) {
        return pack(arguments.at(1), arguments.at(2));
    }
    return {DRExitCode::Usage, u"packet needs show FILE, expand FILE DIR or pack DIR FILE."_s,
            u"phone-migrate packet --help"_s};
}

DRCommandOutcome DRPacketCommand::show(const QString& file)
{
    const auto contents = packetContents(file);
    if (!contents) {
        return refusalOf(file);
    }
    if (line().json) {
        terminal().data(jsonOf(*contents));
        return {};
    }
    QString text;
    for (const DRPacketFile& entry : contents->files) {
        text += u"%1  %2\n"_s.arg(entry.sizeBytes, 12).arg(withoutControlCharacters(entry.path));
    }
    terminal().data(
        u"Packet of %1, %2\n%3"_s.arg(withoutControlCharacters(packetIDOf(*contents)),
                                      contents->header.isCompressed() ? u"compressed"_s : u"not compressed"_s, text));
    return {};
}

DRCommandOutcome DRPacketCommand::expand(const QString& file, const QString& directory)
{
    const QFileInfo target(directory);
    const QString shown = withoutControlCharacters(directory);
    if (target.exists() && !target.isDir()) {
        return failure(u"%1 is no folder."_s.arg(shown));
    }
    if (target.isDir() &&
        !QDir(directory).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        if (!line().force) {
            return failure(u"%1 is not empty, and all that is in it would be removed."_s.arg(shown),
                           u"name a new folder, or add --force to have it emptied"_s);
        }
        if (isTooPrecious(directory)) {
            return failure(u"%1 is not emptied, not even with --force."_s.arg(shown), u"name a new folder"_s);
        }
    }
    if (!readPacketHeader(file)) {
        return refusalOf(file);
    }
    if (!DRMigrateUtils::expandAndroidBackupPacket(QFileInfo(file).absoluteFilePath(), target.absoluteFilePath())) {
        return failure(
            u"%1 could not be expanded: it is damaged, or the disk is full."_s.arg(withoutControlCharacters(file)));
    }
    terminal().say(u"Expanded to "_s + shown);
    return {};
}

DRCommandOutcome DRPacketCommand::pack(const QString& directory, const QString& file)
{
    const QString root = QFileInfo(directory).absoluteFilePath();
    const auto found = DRMigrateUtils::filesBelowApps(root);
    if (!found) {
        return failure(u"The files in %1/apps cannot be listed."_s.arg(withoutControlCharacters(directory)));
    }
    QStringList packed;
    for (const QString& path : *found) {
        if (DRMigrateUtils::isLeftOutOfPackets(path)) {
            terminal().say(u"Warning: left out, because a name in its path begins with a dot: "_s +
                           withoutControlCharacters(path));
            continue;
        }
        packed << path;
    }
    if (packed.isEmpty()) {
        return failure(u"There are no files to pack in %1/apps."_s.arg(withoutControlCharacters(directory)),
                       u"expand a packet first: phone-migrate packet expand FILE DIR"_s);
    }
    if (!DRMigrateUtils::compressAndroidBackupPacket(root, packed, QFileInfo(file).absoluteFilePath())) {
        return failure(u"%1 could not be written: a file cannot be read, or the disk is full."_s.arg(
            withoutControlCharacters(file)));
    }
    terminal().say(u"Packed %1 files to %2"_s.arg(packed.size()).arg(withoutControlCharacters(file)));
    return {};
}
