#include "app/cli/DRPhoneBackupsCommand.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRPhoneBackupList.h"
#include "app/cli/DRTerminal.h"
#include "app/DRMigrateStartup.h"

using namespace Qt::StringLiterals;

DRCommandOutcome DRPhoneBackupsCommand::run()
{
    const auto list = DRPhoneBackupList::ofFolder(startup().phoneBackupsFolder());
    if (line().json) {
        terminal().data(DRJsonOutput::document(list.json()));
    }
    if (list.backups.empty()) {
        return list.none();
    }
    if (!line().json) {
        terminal().data(list.text());
    }
    return {};
}
