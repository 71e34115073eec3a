#pragma once

#include <QtGlobal>

class DRDatabase;

/// One transaction; rolled back when it goes without having been committed. The database must outlive it.
class DRTransaction {
public:
    /// Begins a transaction. `isOpen` tells whether that worked.
    explicit DRTransaction(DRDatabase& database);
    ~DRTransaction();
    Q_DISABLE_COPY_MOVE(DRTransaction)

    /// Whether the transaction still stands. Disk full, an I/O error or RAISE(ROLLBACK) ends it behind our back: what
    /// is inserted afterwards would stand alone, so check after a failed statement.
    [[nodiscard]] bool isOpen() const;

    /// Commits. False when that fails or the transaction was lost; then nothing of it is in the database.
    [[nodiscard]] bool commit();

private:
    DRDatabase& m_database;
    bool m_isOpen = false;
};
