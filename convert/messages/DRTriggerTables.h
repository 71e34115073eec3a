#pragma once

#include <QByteArray>
#include <QHash>

class DRDatabase;

/// The tables of a phone's message database, as far as its triggers may read or update them. Names are in lower case.
class DRTriggerTables {
public:
    /// The tables that are there. Left out are views, virtual tables, and tables with a column whose name is a word of
    /// SQLite's language, which in an expression could be either.
    [[nodiscard]] static DRTriggerTables read(DRDatabase& database);

    /// Whether it is a table whose rows the triggers keep in step with the messages: `threads` or `vrnm_threads`.
    [[nodiscard]] static bool isDerived(const QByteArray& table);

    [[nodiscard]] bool hasTable(const QByteArray& table) const { return m_tables.contains(table); }
    [[nodiscard]] bool hasColumn(const QByteArray& table, const QByteArray& column) const;
    /// Whether the column was declared INTEGER.
    [[nodiscard]] bool isInteger(const QByteArray& table, const QByteArray& column) const;
    /// Whether the column belongs to the primary key.
    [[nodiscard]] bool isKey(const QByteArray& table, const QByteArray& column) const;
    /// Whether the column is the row's own number: the only column of the primary key, declared INTEGER.
    [[nodiscard]] bool isRowId(const QByteArray& table, const QByteArray& column) const;
    /// Whether an update of columns outside the key always succeeds: the table has no constraint, no computed column and
    /// no index that could refuse it.
    [[nodiscard]] bool takesAnyValue(const QByteArray& table) const;

private:
    struct Column {
        bool isInteger = false;
        bool isKey = false;
    };
    struct Table {
        QHash<QByteArray, Column> columns;
        bool takesAnyValue = false;
        bool hasOneKeyColumn = false;
    };

    [[nodiscard]] static bool readTable(DRDatabase& database, Table& table, const QByteArray& name);

    QHash<QByteArray, Table> m_tables;
};
