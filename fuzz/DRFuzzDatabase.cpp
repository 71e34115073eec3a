#include "fuzz/DRFuzzDatabase.h"

#include "fuzz/DRFuzzFolder.h"
#include "fuzz/DRFuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "platform/sqlite/DRDatabase.h"

#include <QFile>

#include <array>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Profile = DRDatabase::Profile;
using Table = DRFuzzDatabase::Table;

constexpr int kKeptRows = 16;
constexpr int kLongestText = 400;
constexpr int kMostEdits = 64;

/// Where a file says whether its database is in write-ahead-log mode.
constexpr qsizetype kModePosition = 18;
constexpr qsizetype kModeBytes = 2;
constexpr QByteArrayView kRollbackMode("\1\1");

constexpr std::array kIntegers{qint64{0},
                               qint64{1},
                               qint64{-1},
                               qint64{2},
                               qint64{127},
                               qint64{65536},
                               qint64{978307200},
                               qint64{1'400'000'000'000},
                               qint64{std::numeric_limits<qint32>::max()},
                               qint64{std::numeric_limits<qint32>::min()},
                               std::numeric_limits<qint64>::max(),
                               std::numeric_limits<qint64>::min()};

constexpr std::array kReals{0.5,
                            -0.0,
                            1e9,
                            -1e9,
                            1e18,
                            -1e18,
                            9.3e18,
                            1e308,
                            std::numeric_limits<double>::infinity(),
                            -std::numeric_limits<double>::infinity()};

/// Runs a statement of this file on a private copy. One that the database refuses has no effect, which is an edit like
/// others.
void run(DRDatabase& database, const QString& sql, const DRSqlValues& values = {})
{
    static_cast<void>(database.executeUpdate(sql, values));
}

QString quoted(QString name)
{
    return u'"' + name.replace(u'"', u"\"\""_s) + u'"';
}

QStringList namesFrom(DRDatabase& database, const QString& sql)
{
    QStringList names;
    DRResultSet row = database.executeQuery(sql);
    while (row.next()) {
        names.append(quoted(row.stringAt(0)));
    }
    return names;
}

/// Our edits are not the phone's own.
DRDatabase openForEdits(const QString& path)
{
    auto database = DRDatabase::open(path, Profile::Create);
    require(database && database->setTriggers(DRDatabase::Triggers::Off), "a sound database can be opened");
    static_cast<void>(database->executeQuery(u"PRAGMA journal_mode=DELETE"_s).next());
    run(*database, u"PRAGMA synchronous=OFF"_s);
    return *std::move(database);
}

/// Each input is applied to a copy of the whole.
void shorten(DRDatabase& database, const QString& table, const QStringList& columns)
{
    run(database, u"DELETE FROM %1 WHERE rowid NOT IN (SELECT rowid FROM %1 ORDER BY rowid LIMIT %2)"_s.arg(table).arg(
                      kKeptRows));
    for (const QString& column : columns) {
        run(database,
            u"UPDATE %1 SET %2=substr(%2, 1, %3) WHERE typeof(%2)='text' AND length(%2)>%3"_s.arg(table, column)
                .arg(kLongestText));
    }
}

Table readTable(DRDatabase& database, const QString& name, const QStringList& columns)
{
    Table table{.name = name, .columns = columns, .rowIds = {}};
    DRResultSet row = database.executeQuery(u"SELECT rowid FROM %1"_s.arg(name));
    while (row.next()) {
        table.rowIds.push_back(row.integerAt(0));
    }
    return table;
}

struct Patch {
    quint32 position = 0;
    QByteArray bytes;
};

/// Applies the edits of one input to one database.
class Editor {
public:
    Editor(DRDatabase& database, const std::vector<Table>& tables, DRFuzzInput& input)
        : m_database(database), m_tables(tables), m_input(input)
    {
    }

    void editOnce()
    {
        const Table& table = m_tables.at(m_input.takePosition(m_tables.size()));
        switch (take<Subject>()) {
        case Subject::Value:
        case Subject::AnotherValue: // what our readers look at most
        case Subject::Count:
            editValue(table);
            break;
        case Subject::Rows:
            editRows(table);
            break;
        case Subject::Schema:
            editSchema(table);
            break;
        case Subject::Bytes:
            m_patches.push_back({.position = m_input.takeNumber<quint32>(), .bytes = m_input.takeText().toByteArray()});
            break;
        }
    }

    [[nodiscard]] const std::vector<Patch>& patches() const { return m_patches; }

private:
    enum class Subject { Value, AnotherValue, Rows, Schema, Bytes, Count };
    enum class ValueKind { Text, Small, Integer, Known, Real, KnownReal, Null, Blob, LongText, LongBlob, Sum, Count };
    enum class RowEdit { Remove, RemoveAll, Double, DoubleManyTimes, Count };
    enum class SchemaEdit { DropTable, RenameTable, MakeView, DropColumn, RenameColumn, AddColumn, Count };

    template <typename Choice> Choice take()
    {
        return static_cast<Choice>(m_input.takePosition(static_cast<int>(Choice::Count)));
    }

    QString column(const Table& table) { return table.columns.at(m_input.takePosition(table.columns.size())); }

    qint64 rowId(const Table& table)
    {
        return table.rowIds.empty() ? 1 : table.rowIds.at(m_input.takePosition(table.rowIds.size()));
    }

    /// Texts are given as bytes: they may be no UTF-8.
    void editValue(const Table& table)
    {
        const QString name = column(table);
        const qint64 row = rowId(table);
        const auto kind = take<ValueKind>();
        const bool isText = kind == ValueKind::Text || kind == ValueKind::LongText;
        const QString value = isText ? u"CAST(? AS TEXT)"_s : kind == ValueKind::Sum ? name + u" + ?"_s : u"?"_s;
        run(m_database, u"UPDATE OR IGNORE %1 SET %2=%3 WHERE rowid=%4"_s.arg(table.name, name, value).arg(row),
            {takeValue(kind)});
    }

    DRSqlValue takeValue(ValueKind kind)
    {
        switch (kind) {
        case ValueKind::Text:
        case ValueKind::Blob:
            return m_input.takeText().toByteArray();
        case ValueKind::LongText:
        case ValueKind::LongBlob:
            return m_input.takeText().toByteArray().repeated(m_input.takeByte());
        case ValueKind::Small:
        case ValueKind::Sum:
            return qint64{m_input.takeNumber<qint8>()};
        case ValueKind::Integer:
            return m_input.takeNumber<qint64>();
        case ValueKind::Known:
            return kIntegers.at(m_input.takePosition(kIntegers.size()));
        case ValueKind::Real:
            return m_input.takeNumber<double>();
        case ValueKind::KnownReal:
            return kReals.at(m_input.takePosition(kReals.size()));
        case ValueKind::Null:
        case ValueKind::Count:
            break;
        }
        return {};
    }

    void editRows(const Table& table)
    {
        const qint64 row = rowId(table);
        switch (take<RowEdit>()) {
        case RowEdit::Remove:
        case RowEdit::Count:
            run(m_database, u"DELETE FROM %1 WHERE rowid=?"_s.arg(table.name), {row});
            break;
        case RowEdit::RemoveAll:
            run(m_database, u"DELETE FROM %1"_s.arg(table.name));
            break;
        case RowEdit::Double:
            doubleRow(table, row, 1);
            break;
        case RowEdit::DoubleManyTimes:
            doubleRow(table, row, m_input.takeByte());
            break;
        }
    }

    /// The first column, which mostly is the key, is left to the database.
    void doubleRow(const Table& table, qint64 row, qint64 times)
    {
        const QString columns = table.columns.mid(1).join(u',');
        run(m_database,
            u"INSERT OR IGNORE INTO %1(%2) WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
            "SELECT %2 FROM n, %1 WHERE %1.rowid=?"_s.arg(table.name, columns),
            {times, row});
    }

    void editSchema(const Table& table)
    {
        switch (take<SchemaEdit>()) {
        case SchemaEdit::DropTable:
        case SchemaEdit::Count:
            run(m_database, u"DROP TABLE %1"_s.arg(table.name));
            break;
        case SchemaEdit::RenameTable:
            run(m_database, u"ALTER TABLE %1 RENAME TO renamed"_s.arg(table.name));
            break;
        case SchemaEdit::MakeView:
            run(m_database, u"ALTER TABLE %1 RENAME TO viewed"_s.arg(table.name));
            run(m_database, u"CREATE VIEW %1 AS SELECT * FROM viewed"_s.arg(table.name));
            break;
        case SchemaEdit::DropColumn:
            run(m_database, u"ALTER TABLE %1 DROP COLUMN %2"_s.arg(table.name, column(table)));
            break;
        case SchemaEdit::RenameColumn:
            run(m_database, u"ALTER TABLE %1 RENAME COLUMN %2 TO renamed"_s.arg(table.name, column(table)));
            break;
        case SchemaEdit::AddColumn:
            run(m_database, u"ALTER TABLE %1 ADD COLUMN added NOT NULL DEFAULT 1"_s.arg(table.name));
            break;
        }
    }

    DRDatabase& m_database;
    const std::vector<Table>& m_tables;
    DRFuzzInput& m_input;
    std::vector<Patch> m_patches;
};

void writeImage(const QString& path, const QByteArray& image)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(image) == image.size(),
            "a database can be written");
}

QByteArray patched(QByteArray image, const std::vector<Patch>& patches)
{
    for (const Patch& patch : patches) {
        const auto position = static_cast<qsizetype>(patch.position) % image.size();
        const qsizetype count = std::min(patch.bytes.size(), image.size() - position);
        image.replace(position, count, patch.bytes.first(count));
    }
    return image;
}

} // namespace

DRFuzzDatabase::DRFuzzDatabase(const QString& path)
{
    const QByteArray mode = contentOf(path).mid(kModePosition, kModeBytes);
    {
        DRDatabase database = openForEdits(path);
        // Tables of a search index are left to SQLite.
        for (const QString& name : namesFrom(database, u"SELECT name FROM pragma_table_list WHERE type='table' AND "
                                                       "schema='main' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'"_s)) {
            const QStringList columns = namesFrom(
                database, u"SELECT name FROM pragma_table_info(%1)"_s.arg(QString(name).replace(u'"', u'\'')));
            shorten(database, name, columns);
            m_tables.push_back(readTable(database, name, columns));
        }
        run(database, u"VACUUM"_s);
    }
    require(!m_tables.empty(), "the database of the sample has tables");
    m_image = contentOf(path).replace(kModePosition, kModeBytes, mode);
}

void DRFuzzDatabase::writeEdited(DRFuzzInput& input, const QString& path) const
{
    for (const QString& companion : {u"-wal"_s, u"-shm"_s, u"-journal"_s}) {
        QFile::remove(path + companion);
    }
    if (input.isAtEnd()) {
        writeImage(path, m_image);
        return;
    }
    writeImage(path, QByteArray(m_image).replace(kModePosition, kModeBytes, kRollbackMode));
    std::vector<Patch> patches;
    {
        DRDatabase database = openForEdits(path);
        run(database, u"BEGIN"_s);
        Editor editor(database, m_tables, input);
        for (int edits = 0; edits < kMostEdits && !input.isAtEnd(); ++edits) {
            editor.editOnce();
        }
        run(database, u"COMMIT"_s);
        patches = editor.patches();
    }
    QByteArray image = contentOf(path).replace(kModePosition, kModeBytes, m_image.mid(kModePosition, kModeBytes));
    writeImage(path, patched(std::move(image), patches));
}
