#include "app/sample/DRSampleCoreData.h"

#include "app/sample/DRSampleGuid.h"
#include "platform/core/DRPropertyList.h"
#include "platform/sqlite/DRDatabase.h"

#include <algorithm>

using namespace Qt::StringLiterals;

bool insertSampleCoreData(DRDatabase& database, const QString& thing, const std::vector<DRSampleEntity>& entities)
{
    DRStatement insert = database.prepare(u"INSERT INTO Z_PRIMARYKEY VALUES (?, ?, 0, ?)"_s);
    const bool isEntered = std::all_of(entities.begin(), entities.end(), [&insert](const DRSampleEntity& entity) {
        return insert.update({entity.number, entity.name, entity.count});
    });
    const QByteArray metadata = DRPropertyList::binaryFromDictionary({
        {u"NSPersistenceFrameworkVersion"_s, qint64{479}},
        {u"NSStoreModelVersionHashes"_s, QVariantMap()},
        {u"NSStoreType"_s, u"SQLite"_s},
        {u"_NSAutoVacuumLevel"_s, u"2"_s},
    });
    return isEntered &&
           database.executeUpdate(u"INSERT INTO Z_METADATA VALUES (1, ?, ?)"_s, {sampleGuid(thing), metadata});
}
