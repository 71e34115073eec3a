#include "app/cli/DRPhoneCommand.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRPhoneChoice.h"
#include "app/cli/DRTerminal.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"
#include "platform/device/DRDCFilesystem.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

QByteArray jsonOf(DRDCDevice& phone)
{
    const DRDCFilesystem& storage = phone.preferredFilesystem();
    return DRJsonOutput::document({
        {u"version"_s, 1},
        {u"id"_s, phone.identifier()},
        {u"marketingName"_s, DRJsonOutput::text(phone.marketingName())},
        {u"androidBaseVersion"_s, static_cast<qint64>(phone.androidBaseVersion())},
        {u"appProductRevision"_s, DRJsonOutput::text(phone.appProductRevision())},
        {u"memoryUsableCapacity"_s, DRJsonOutput::bytes(storage.memoryUsableCapacity())},
        {u"memoryUsableFreeBytes"_s, DRJsonOutput::bytes(storage.memoryUsableFreeBytes())},
        {u"packets"_s, QJsonArray::fromStringList(phone.backupPackets())},
    });
}

QString textOf(DRDCDevice& phone)
{
    const DRDCFilesystem& storage = phone.preferredFilesystem();
    QString text = u"%1, Android %2, revision %3\nStorage: %4 free of %5\nApps:\n"_s.arg(
        withoutControlCharacters(phone.marketingName()), QString::number(phone.androidBaseVersion()),
        withoutControlCharacters(phone.appProductRevision()), sizeText(storage.memoryUsableFreeBytes()),
        sizeText(storage.memoryUsableCapacity()));
    for (const QString& packet : phone.backupPackets()) {
        text += u"  "_s + withoutControlCharacters(packet) + u'\n';
    }
    return text;
}

} // namespace

DRCommandOutcome DRPhoneCommand::run()
{
    const auto choice = DRPhoneChoice::open(startup());
    if (const auto* refusal = std::get_if<DRCommandOutcome>(&choice)) {
        return *refusal;
    }
    DRDCDevice& phone = *std::get<DRDCDevicePointer>(choice);
    if (line().json) {
        terminal().data(jsonOf(phone));
        return {};
    }
    terminal().data(textOf(phone));
    return {};
}
