#include "app/cli/DRWorkingFolder.h"

#include "app/cli/DRTerminal.h"
#include "app/DRMigrateStartup.h"
#include "model/packet/DRMigratePacketCodec.h"

using namespace Qt::StringLiterals;

DRCommandOutcome DRWorkingFolder::lock(DRMigrateStartup& startup)
{
    const auto refusal = startup.lockWorkingFolder();
    if (!refusal) {
        return {};
    }
    return {DRExitCode::FailedPhoneUnchanged, refusal->message,
            u"see what is wrong with the working folder: phone-migrate doctor"_s};
}

void DRWorkingFolder::clear(const DRMigrateStartup& startup, DRTerminal& terminal)
{
    if (!DRMigrateUtils::clearTempFolder(startup.folders().temporary)) {
        warnOfLeftFiles(startup, terminal);
    }
}

void DRWorkingFolder::warnOfLeftFiles(const DRMigrateStartup& startup, DRTerminal& terminal)
{
    terminal.say(u"Warning: the working folder %1 could not be emptied; it may hold private content."_s.arg(
        DRMigrateUtils::pathToInflateFolder(startup.folders().temporary)));
}
