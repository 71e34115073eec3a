#include "fuzz/DRFuzzPhone.h"

#include "app/sample/DRSamplePhone.h"
#include "fuzz/DRFuzzBackup.h"
#include "fuzz/DRFuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "platform/core/DRFiles.h"
#include "platform/sqlite/DRDatabase.h"

#include <QDir>

#include <utility>

using namespace Qt::StringLiterals;

DRFuzzPhone::DRFuzzPhone(Part part, QString packetID, const QString& database)
    : m_packetID(std::move(packetID)), m_database(pathInApp(database))
{
    DRSamplePhone phone(m_folder.path(u"phone"_s), path(), fuzzSettings());
    require(QDir().mkpath(m_folder.path(u"phone"_s)) && part(phone, fuzzSettings()), "a packet can be made");
    m_seed.emplace(m_database);
}

void DRFuzzPhone::edit(DRFuzzInput& input)
{
    DRFiles::removeTree(pathInApp(u"r"_s)); // where merging puts files
    m_seed->writeEdited(input, m_database);
}

void DRFuzzPhone::reset()
{
    DRFuzzInput nothing({});
    edit(nothing);
}

std::optional<qint64> DRFuzzPhone::rowCount(const QStringList& tables) const
{
    auto database = DRDatabase::open(m_database, DRDatabase::Profile::Phone);
    require(database.has_value(), "the phone's database can be opened");
    QStringList counts;
    for (const QString& table : tables) {
        counts.append(u"(SELECT count(*) FROM %1)"_s.arg(table));
    }
    DRResultSet row = database->executeQuery(u"SELECT "_s + counts.join(u'+'));
    return row.next() ? std::optional(row.integerAt(0)) : std::nullopt;
}

QString DRFuzzPhone::pathInApp(const QString& name) const
{
    return path() + u"/%1/apps/%1/"_s.arg(m_packetID) + name;
}
