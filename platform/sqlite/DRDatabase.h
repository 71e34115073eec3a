#pragma once

#include <memory>
#include <optional>

#include <QString>

#include "platform/sqlite/DRResultSet.h"
#include "platform/sqlite/DRSqlValue.h"
#include "platform/sqlite/DRStatement.h"

class DRConnection;

/// One connection to an SQLite database, closed when this object goes. Used by one thread at a time.
///
/// Nothing throws: a statement that fails answers no rows or false, and `lastErrorMessage` says why.
class DRDatabase {
public:
    /// What the database is, and with it what its content may do.
    enum class Profile {
        /// A file of an iPhone backup: never written, not even locked. Opened read-only and immutable, so no `-wal`,
        /// `-shm` or journal is looked at or made. Triggers, views, extensions, ATTACH are off; a query that runs away
        /// is ended.
        Source,
        /// A private copy of such a file beside its write-ahead log, which opening may replay. Else as Source.
        SourceCopy,
        /// A database of the phone inside an expanded packet: read and written with its own triggers, which belong to
        /// its behaviour; a statement whose triggers run away is ended and fails. Extensions and ATTACH are off. A
        /// journal that would make SQLite delete other files is removed first.
        Phone,
        /// A file that this program makes anew (templates, samples). Created when missing.
        Create,
    };

    /// Opens an existing regular file (with Create also a new one). None when it cannot be opened or is a link; whether
    /// the file is a database at all shows with the first statement. `path` below a folder that is a link is refused by
    /// SQLite for Source and Phone, so resolve the root that the user named once, then append.
    [[nodiscard]] static std::optional<DRDatabase> open(const QString& path, Profile profile);

    DRDatabase(DRDatabase&& other) noexcept;
    DRDatabase& operator=(DRDatabase&& other) noexcept;
    DRDatabase(const DRDatabase&) = delete;
    DRDatabase& operator=(const DRDatabase&) = delete;
    ~DRDatabase();

    /// The rows of one statement with its parameters bound in order, one value for each; without rows when it fails.
    /// Reading on may fail too: `DRResultSet::hasFailed`. The result must go before the database.
    [[nodiscard]] DRResultSet executeQuery(const QString& sql, const DRSqlValues& values = {});

    /// Runs one statement to its end. False when it fails.
    [[nodiscard]] bool executeUpdate(const QString& sql, const DRSqlValues& values = {});

    /// Runs every statement of a script of our own. False at the first that fails; those before it stay done.
    [[nodiscard]] bool executeScript(const QString& script);

    /// A statement prepared once, to be run many times. It fails at each run when the text could not be prepared. It
    /// must go before the database.
    [[nodiscard]] DRStatement prepare(const QString& sql);

    /// Whether triggers fire on the inserts, updates and deletes of this connection. Switching makes SQLite prepare
    /// statements anew at their next run. False on failure.
    enum class Triggers { Off, On };
    [[nodiscard]] bool setTriggers(Triggers triggers);

    /// Lets the `-wal` file of a database in write-ahead-log mode stay, emptied, when the last connection closes. The
    /// mode itself is not changed. False on failure.
    [[nodiscard]] bool persistWriteAheadLog();

    /// SQLite's message about the last failure on this connection; "not an error" when there was none.
    [[nodiscard]] QString lastErrorMessage() const;

    /// Whether the last failure was the computer's, out of disk, memory or luck, and tells nothing of the content.
    [[nodiscard]] bool didComputerFail() const;

    /// The row ID of the last row that was inserted on this connection.
    [[nodiscard]] qint64 lastInsertRowId() const;

    /// The rows that the last INSERT, UPDATE or DELETE changed itself, without those of its triggers. 0 when a trigger made it
    /// ignore the row.
    [[nodiscard]] qint64 changedRowCount() const;

    /// Whether a transaction is open. After a failed statement false means that SQLite has rolled it back.
    [[nodiscard]] bool isInTransaction() const;

    /// Whether a table or view of that name exists.
    [[nodiscard]] bool hasTable(const QString& name);

    /// Whether the phone's database at `path` holds something of that name. Also false when there is no such file or it is
    /// no database; none when this computer failed to tell, which is no reason to replace the file.
    [[nodiscard]] static std::optional<bool> phoneDatabaseHolds(const QString& path, const QString& name);

private:
    explicit DRDatabase(std::shared_ptr<DRConnection> connection);

    std::shared_ptr<DRConnection> m_connection;
};
