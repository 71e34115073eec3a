#pragma once

#include "platform/sqlite/DRDatabase.h"

#include <memory>

#include <QString>

struct sqlite3;

/// An open SQLite connection, shared by the database and its statements, so that it is closed after the last of them.
/// Only for the sources of this folder.
class DRConnection {
public:
    /// Opens and sets up a connection. Null on failure.
    [[nodiscard]] static std::shared_ptr<DRConnection> open(const QString& path, DRDatabase::Profile profile);

    DRConnection(sqlite3* database, int stepPortionsPerRun);
    DRConnection(const DRConnection&) = delete;
    DRConnection& operator=(const DRConnection&) = delete;
    ~DRConnection();

    [[nodiscard]] sqlite3* handle() const { return m_database; }

    /// Keeps SQLite's message about a failure that has just happened.
    void noteFailure();
    /// The same for a failure that SQLite does not know of.
    void noteFailure(const QString& message) { m_lastError = message; }
    [[nodiscard]] QString lastError() const { return m_lastError; }
    /// SQLite's primary code of the last failure that it knows of.
    [[nodiscard]] int lastErrorCode() const { return m_lastErrorCode; }

    /// How long one run of a statement may go on, in portions of steps of SQLite's machine. Without meaning for new files.
    [[nodiscard]] int stepPortionsPerRun() const { return m_stepPortionsPerRun; }

    /// What is left of it for the statement that is being stepped: set before and read after each step.
    void setStepPortionsLeft(int portions) { m_stepPortionsLeft = portions; }
    [[nodiscard]] int stepPortionsLeft() const { return m_stepPortionsLeft; }

    /// Runs a statement without parameters to its end. False when it fails.
    [[nodiscard]] bool run(const char* sql);

private:
    [[nodiscard]] bool setUp(DRDatabase::Profile profile);
    [[nodiscard]] bool setUpSource();
    static int spendSteps(void* connection);

    sqlite3* m_database;
    QString m_lastError;
    int m_lastErrorCode = 0;
    int m_stepPortionsPerRun = 0;
    int m_stepPortionsLeft = 0;
};
