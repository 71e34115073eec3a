#include "app/cli/DRSampleCommand.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRTerminal.h"
#include "app/DRMigrateStartup.h"
#include "app/sample/DRSample.h"
#include "platform/core/DRLog.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

DRCommandOutcome DRSampleCommand::run()
{
    const QString directory = QFileInfo(line().arguments.front()).absoluteFilePath();
    const auto tell = [this](int done, int total, const QString& part) {
        terminal().say(u"[%1/%2] %3"_s.arg(done).arg(total).arg(part));
    };
    const DRSampleResult result = writeSample(directory, line().scale, startup().clock(), tell);
    if (!result.isWritten) {
        return {DRExitCode::FailedPhoneUnchanged, withoutControlCharacters(result.message),
                u"name a new folder, on a disk with room: phone-migrate sample DIR"_s};
    }
    if (line().json) {
        terminal().data(DRJsonOutput::document({{u"version"_s, 1},
                                                {u"backup"_s, result.backupFolder},
                                                {u"phone"_s, result.phoneFolder},
                                                {u"music"_s, result.musicLibrary}}));
        return {};
    }
    const QString library = withoutControlCharacters(result.musicLibrary);
    terminal().data(
        u"Backup: %1\nPhone: %2\nMusic library: %3\n"
        "Try: phone-migrate transfer --backups '%4/backups' --phone '%4/phone' --music '%3' --dry-run\n"_s.arg(
            withoutControlCharacters(result.backupFolder), withoutControlCharacters(result.phoneFolder), library,
            withoutControlCharacters(directory)));
    return {};
}
