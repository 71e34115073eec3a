#include "app/cli/DRBackupLoader.h"

#include "app/DRInterrupt.h"
#include "model/backup_entry/DRMigrateBackupEntryDelegate.h"

#include <QEventLoop>

namespace {

/// Ends the event loop when the last data type has been loaded.
class LastOneEndsLoop final : public DRMigrateBackupEntryDelegate {
public:
    LastOneEndsLoop(qsizetype count, QEventLoop& loop) : m_missing(count), m_loop(loop) {}

    void dataTypeHasBeenLoaded(DRMigrateBackupEntry& /*entry*/, DRMigrateDataType& /*dataType*/) override
    {
        if (--m_missing == 0) {
            m_loop.quit();
        }
    }

private:
    qsizetype m_missing;
    QEventLoop& m_loop;
};

} // namespace

DRBackupLoader::Ending DRBackupLoader::load(DRMigrateIPhoneBackupEntry& entry, DRInterrupt& interrupt)
{
    entry.addAllDataTypes();
    const qsizetype count = entry.dataTypeKeys().size();
    if (count > 0) {
        QEventLoop loop;
        LastOneEndsLoop delegate(count, loop);
        interrupt.setHandler([&loop] { loop.quit(); });
        entry.setDelegate(&delegate);
        entry.loadAll();
        loop.exec();
        entry.setDelegate(nullptr);
        interrupt.setHandler({});
    }
    return interrupt.hasCome() ? Ending::Interrupted : Ending::Loaded;
}
