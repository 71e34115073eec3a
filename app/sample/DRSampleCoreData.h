#pragma once

#include <QString>

#include <vector>

class DRDatabase;

/// What a database that Core Data made says of one of its entities.
struct DRSampleEntity {
    qint64 number; ///< in the columns Z_ENT
    QString name;
    qint64 count; ///< of its rows
};

/// Fills the two tables in which Core Data notes what it made. `thing` names the database, another for each. False when a
/// statement fails.
[[nodiscard]] bool
insertSampleCoreData(DRDatabase& database, const QString& thing, const std::vector<DRSampleEntity>& entities);
