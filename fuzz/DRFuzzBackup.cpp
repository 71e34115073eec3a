#include "fuzz/DRFuzzBackup.h"

#include "app/sample/DRSampleIPhoneBackup.h"
#include "fuzz/DRFuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "platform/core/DRDigest.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

const DRSampleSettings& fuzzSettings()
{
    static const DRSampleSettings kSettings{.moment = QDateTime(QDate(2014, 5, 6), QTime(7, 8, 9), Qt::UTC)};
    return kSettings;
}

DRFuzzBackup::DRFuzzBackup(Part part, const QStringList& databases)
{
    DRSampleIPhoneBackup backup(path(), fuzzSettings());
    require(QDir().mkpath(path()) && part(backup, fuzzSettings()) && backup.finish(), "a backup can be made");
    for (const QString& database : databases) {
        const QString place = path() + u'/' + sha1HexString(database);
        m_databases.push_back({.path = place, .seed = DRFuzzDatabase(place)});
    }
    m_files = filesIn(path());
    DRFuzzInput nothing({});
    for (const Database& database : m_databases) {
        database.seed.writeEdited(nothing, database.path);
    }
    m_editedBytes = contentOf(m_databases.front().path);
}

void DRFuzzBackup::edit(DRFuzzInput& input)
{
    const std::size_t chosen = m_databases.size() > 1 ? input.takePosition(m_databases.size()) : 0;
    if (chosen != m_edited) {
        DRFuzzInput nothing({});
        m_databases[m_edited].seed.writeEdited(nothing, m_databases[m_edited].path);
    }
    m_edited = chosen;
    m_databases[chosen].seed.writeEdited(input, m_databases[chosen].path);
    m_editedBytes = contentOf(m_databases[chosen].path);
}

void DRFuzzBackup::requireUnchanged() const
{
    require(contentOf(m_databases[m_edited].path) == m_editedBytes, "reading leaves the backup's database as it is");
    require(filesIn(path()) == m_files, "reading leaves nothing in the backup");
}
