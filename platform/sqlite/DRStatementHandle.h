#pragma once

#include "platform/sqlite/DRConnection.h"
#include "platform/sqlite/DRSqlValue.h"

#include <memory>
#include <vector>

struct sqlite3_stmt;

/// A prepared SQLite statement and how far it has run. Shared by a DRStatement and the result set that shows its rows.
/// Only for the sources of this folder.
struct DRStatementHandle {
    /// Prepares one statement. It counts as failed when it cannot be prepared or when more text follows it.
    DRStatementHandle(std::shared_ptr<DRConnection> connectionToUse, const QString& sql);
    DRStatementHandle(const DRStatementHandle&) = delete;
    DRStatementHandle& operator=(const DRStatementHandle&) = delete;
    ~DRStatementHandle();

    /// Starts anew with these values, as many as the statement has parameters. False on failure.
    bool start(const DRSqlValues& values);

    /// Moves to the next row. False at the end, after which the statement holds no lock, and on failure.
    bool step();

    /// Lets go of the rows and the lock.
    void stop();

    std::shared_ptr<DRConnection> connection;
    sqlite3_stmt* statement = nullptr;
    quint64 runNumber = 0; ///< counts the starts, so that a result set knows whether the rows are still its own
    bool hasFailed = false;

private:
    bool bind(const DRSqlValues& values);
    int bindValue(int position, const DRSqlValue& value);
    int bindText(int position, const QString& text);
    int bindBytes(int position, const QByteArray& bytes);
    bool fail();

    std::vector<QByteArray> m_boundBytes; ///< what SQLite's parameters point into
    int m_stepPortionsLeft = 0;           ///< of this run; other statements may run between two rows
    bool m_isPrepared = false;
    bool m_isRunning = false;
};
