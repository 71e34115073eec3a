#include "convert/contacts/DRCallHistory.h"

#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRDates.h"
#include "platform/core/DRLog.h"

using namespace Qt::StringLiterals;

namespace {

const QString kCallDatabase = u"WirelessDomain-Library/CallHistory/call_history.db"_s;
const QString kNewerCallDatabase = u"HomeDomain-Library/CallHistoryDB/CallHistory.storedata"_s;

// Bits of `flags`.
constexpr qint64 kOutgoing = 1;
constexpr qint64 kFaceTime = 16;

DRImportedCall callFromRow(const DRResultSet& call)
{
    const qint64 flags = call.integer("flags");
    return {
        .address = call.string("address"),
        .date = DRDates::fromUnixSeconds(static_cast<double>(call.integer("date"))),
        .duration = call.integer("duration"),
        .isIncoming = (flags & kOutgoing) == 0,
        .isFaceTimeCall = (flags & kFaceTime) != 0,
    };
}

} // namespace

DRCallHistory::Reading DRCallHistory::read(const QString& backupPath, const QString& temporaryFolder)
{
    Reading reading;
    if (DRIPhoneBackupFiles::holds(backupPath, kNewerCallDatabase)) {
        reading.problem = u"this iPhone's system keeps calls in a form that cannot be read yet"_s;
    }
    if (!DRIPhoneBackupFiles::holds(backupPath, kCallDatabase)) {
        return reading;
    }
    auto database = DRIPhoneBackupFiles::openBackedUpDatabase(backupPath, kCallDatabase, temporaryFolder);
    if (!database) {
        qCWarning(lcMigrate, "The call history of the backup cannot be opened");
        reading.problem = u"the backup's call history cannot be opened"_s;
        return reading;
    }
    DRResultSet call = (*database)->executeQuery(u"SELECT * FROM call"_s);
    while (call.next()) {
        reading.calls.push_back(callFromRow(call));
    }
    if (call.hasFailed() || !call.columnIndex("address") || !call.columnIndex("date")) {
        qCWarning(lcMigrate, "The call history of the backup cannot be read: %ls",
                  qUtf16Printable((*database)->lastErrorMessage()));
        reading.problem = u"the backup's call history is damaged"_s;
    }
    return reading;
}
