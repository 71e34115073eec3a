#include "model/backup_entry/DRMigrateAppPacket.h"

#include "platform/core/DRLog.h"

using namespace Qt::StringLiterals;

bool DRMigrateAppPacket::load()
{
    setEntries(DREntryList());
    if (!expandPacket()) {
        return false;
    }
    if (!checkForManifest()) {
        setIgnoreDataType(true);
        skipWithoutManifest(names().app);
    }
    return true;
}

bool DRMigrateAppPacket::save()
{
    return ignoreDataType() || packPacket();
}

void DRMigrateAppPacket::skipAll(DRMigrateReport& outcome, const QString& why) const
{
    const QString records = names().records;
    qCWarning(lcMigrate, "The %ls could not be written: %ls", qUtf16Printable(records), qUtf16Printable(why));
    outcome.skipped.push_back({.what = u"All %1"_s.arg(records), .why = why});
}

void DRMigrateAppPacket::leaveAsItIs(DRMigrateReport& outcome, const QString& why)
{
    setIgnoreDataType(true);
    skipAll(outcome, why);
}
