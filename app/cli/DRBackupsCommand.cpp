#include "app/cli/DRBackupsCommand.h"

#include "app/cli/DRBackupChoice.h"
#include "app/cli/DRBackupList.h"
#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRTerminal.h"
#include "app/DRMigrateStartup.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

DRCommandOutcome DRBackupsCommand::run()
{
    const DRBackupList list = DRBackupList::ofFolder(startup().backupsFolder(), startup().services());
    if (line().json) {
        QJsonArray backups;
        for (const DRListedBackup& backup : list.backups) {
            backups << DRJsonOutput::backup(backup);
        }
        terminal().data(DRJsonOutput::document(
            {{u"version"_s, 1}, {u"root"_s, DRJsonOutput::text(list.root)}, {u"backups"_s, backups}}));
    }
    if (list.backups.empty()) {
        return DRBackupChoice::noBackupIn(list.root);
    }
    if (!line().json) {
        terminal().data(list.table());
    }
    return {};
}
