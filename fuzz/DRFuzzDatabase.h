#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

class DRFuzzInput;

/// A small, sound database that inputs change: an input is a list of edits, not a file.
///
/// Bytes of a database file, mutated at random, nearly always stay without effect or make a file that SQLite refuses as a whole,
/// and then none of our code is reached. Edits keep the file a database and change what our readers look at: values of any
/// type, size and encoding, missing and doubled rows, tables and columns that are gone or are something else. Some edits do
/// change bytes of the finished file, so that rows which cannot be read occur, too.
class DRFuzzDatabase {
public:
    struct Table {
        QString name;        ///< in quotes, for SQL
        QStringList columns; ///< the same
        std::vector<qint64> rowIds;
    };

    /// Takes the content of a database of the sample, the first rows of each table, long texts cut. The file itself is
    /// changed.
    explicit DRFuzzDatabase(const QString& path);

    /// Writes the database to a file in place of any that is there, with the edits that the rest of the input holds.
    void writeEdited(DRFuzzInput& input, const QString& path) const;

private:
    QByteArray m_image;
    std::vector<Table> m_tables;
};
