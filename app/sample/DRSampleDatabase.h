#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class DRDatabase;

/// Puts a sample's rows into a database whose tables exist. False when one of its statements fails.
using DRSampleRows = std::function<bool(DRDatabase& database)>;

/// How a database keeps its transactions safe; written into the database file itself.
enum class DRSampleJournal { Rollback, WriteAhead };

/// Makes the database file `path`, which must not exist: runs the built-in scripts "sql/NAME.sql" for the names in
/// `scripts`, then `rows`, all in one transaction. Nothing else remains beside the file: a write-ahead log is emptied
/// into it and removed. False when something fails, which is logged.
[[nodiscard]] bool
writeSampleDatabase(const QString& path, const QStringList& scripts, DRSampleJournal journal, const DRSampleRows& rows);
