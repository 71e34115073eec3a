#include "platform/sqlite/DRConnection.h"

#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRUtf8.h"

#include <QDir>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <span>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

using Profile = DRDatabase::Profile;

constexpr int kBusyTimeoutMilliseconds = 1000;
constexpr int kMaximumForeignValueBytes = 256 * 1024 * 1024;

/// A query over honest rows takes some hundred steps of SQLite's machine for each, so one that takes this many never
/// ends. Small files end sooner; those of a million rows may take all the steps that they need.
constexpr int kStepsPerPortion = 1'000'000;
constexpr int kStepPortionsAtLeast = 40;
constexpr int kStepPortionsAtMost = 1'000'000;
constexpr qint64 kBytesPerFurtherPortion = qint64{64} * 1024;
/// One inserted row may set off triggers that count a table again, and those of triggers that count others.
constexpr int kPhonesStepsForOneOfSources = 10;

struct Setting {
    int option;
    int value;
};

constexpr std::array kSettingsOfAll{Setting{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                    Setting{SQLITE_DBCONFIG_ENABLE_FTS3_TOKENIZER, 0},
                                    Setting{SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0}};
/// What is read from a backup does not get to run anything of its own.
constexpr std::array kSettingsOfSources{Setting{SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                        Setting{SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                        Setting{SQLITE_DBCONFIG_ENABLE_VIEW, 0}};
/// Without trust the phone's triggers cannot write its full-text tables: every insert that fires one would fail.
constexpr std::array kSettingsOfPhones{Setting{SQLITE_DBCONFIG_TRUSTED_SCHEMA, 1},
                                       Setting{SQLITE_DBCONFIG_ENABLE_TRIGGER, 1}};

bool isSource(Profile profile)
{
    return profile == Profile::Source || profile == Profile::SourceCopy;
}

bool applySettings(sqlite3* database, std::span<const Setting> settings)
{
    return std::ranges::all_of(settings, [database](const Setting& setting) {
        return sqlite3_db_config(database, setting.option, setting.value, nullptr) == SQLITE_OK;
    });
}

/// Whether the journal names a super-journal at its end. Playing such a journal back lets SQLite delete files by the
/// paths that it finds there, and a journal in foreign data is not to be believed.
bool namesSuperJournal(const QString& journalPath)
{
    constexpr QByteArrayView kMagic("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7");
    const DRFileDescriptor file = DRFileDescriptor::openRegularFile(journalPath);
    std::array<char, 8> tail{};
    return file.isOpen() && ::lseek(file.number(), -qint64{tail.size()}, SEEK_END) >= 0 &&
           file.read(tail.data(), tail.size()) == qint64{tail.size()} && QByteArrayView(tail) == kMagic;
}

/// Takes away a journal that would delete other files, and refuses companions that lead elsewhere.
bool areCompanionsSafe(const QString& path)
{
    const QString journal = path + u"-journal"_s;
    for (const QString& companion : {journal, path + u"-wal"_s, path + u"-shm"_s}) {
        if (statusWithoutFollowing(companion) && !DRFiles::isRegularFile(companion)) {
            return false;
        }
    }
    return !namesSuperJournal(journal) || ::unlink(nativePath(journal).constData()) == 0;
}

/// Makes a missing file with a mode that keeps others out, which SQLite would not.
bool isUsableFile(const QString& path, Profile profile)
{
    if (profile == Profile::Create && !statusWithoutFollowing(path)) {
        return DRFileDescriptor::open(path, O_RDWR | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR).isOpen();
    }
    return DRFiles::isRegularFile(path);
}

/// The path as a file URI, in which '?', '#' and '%' of the path have no meaning. "immutable" keeps SQLite from locking
/// and from looking for journals.
QByteArray databaseName(const QString& path, Profile profile)
{
    const QByteArray encoded = "file://" + nativePath(QDir(path).absolutePath()).toPercentEncoding("/");
    return profile == Profile::Source ? encoded + "?immutable=1" : encoded;
}

int stepPortionsFor(const QString& path, Profile profile)
{
    const auto status = statusWithoutFollowing(path);
    const qint64 further = status ? status->st_size / kBytesPerFurtherPortion : 0;
    const qint64 portions = (kStepPortionsAtLeast + further) * (isSource(profile) ? 1 : kPhonesStepsForOneOfSources);
    return static_cast<int>(std::min<qint64>(portions, kStepPortionsAtMost));
}

int openFlags(Profile profile)
{
    const int access = profile == Profile::Source ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    return access | SQLITE_OPEN_URI | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE;
}

} // namespace

std::shared_ptr<DRConnection> DRConnection::open(const QString& path, Profile profile)
{
    if (!isUsableFile(path, profile) || (profile != Profile::Source && !areCompanionsSafe(path))) {
        return nullptr;
    }
    sqlite3* database = nullptr;
    const int result = sqlite3_open_v2(databaseName(path, profile).constData(), &database, openFlags(profile), nullptr);
    // A connection that failed to open must be closed, too.
    auto connection = std::make_shared<DRConnection>(database, stepPortionsFor(path, profile));
    if (result != SQLITE_OK || !connection->setUp(profile)) {
        return nullptr;
    }
    return connection;
}

DRConnection::DRConnection(sqlite3* database, int stepPortionsPerRun)
    : m_database(database), m_stepPortionsPerRun(stepPortionsPerRun)
{
}

DRConnection::~DRConnection()
{
    sqlite3_close_v2(m_database);
}

bool DRConnection::setUp(Profile profile)
{
    sqlite3_busy_timeout(m_database, kBusyTimeoutMilliseconds);
    sqlite3_extended_result_codes(m_database, 1);
    sqlite3_limit(m_database, SQLITE_LIMIT_ATTACHED, 0);
    if (profile != Profile::Create) { // whose statements are all our own
        sqlite3_progress_handler(m_database, kStepsPerPortion, &DRConnection::spendSteps, this);
    }
    if (!applySettings(m_database, kSettingsOfAll)) {
        return false;
    }
    return isSource(profile) ? setUpSource() : applySettings(m_database, kSettingsOfPhones);
}

bool DRConnection::setUpSource()
{
    sqlite3_limit(m_database, SQLITE_LIMIT_LENGTH, kMaximumForeignValueBytes);
    return applySettings(m_database, kSettingsOfSources) && run("PRAGMA cell_size_check=ON") &&
           run("PRAGMA mmap_size=0") && run("PRAGMA query_only=ON");
}

void DRConnection::noteFailure()
{
    constexpr int kPrimaryCode = 0xFF;
    m_lastError = DRUtf8::decode(QByteArrayView(sqlite3_errmsg(m_database)));
    m_lastErrorCode = sqlite3_errcode(m_database) & kPrimaryCode;
    if (m_lastErrorCode == SQLITE_INTERRUPT) { // which only spendSteps does
        m_lastError = u"the database kept on working without an end"_s;
    }
}

bool DRConnection::run(const char* sql)
{
    m_stepPortionsLeft = m_stepPortionsPerRun;
    if (sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr) == SQLITE_OK) {
        return true;
    }
    noteFailure();
    return false;
}

/// Ends the running statement once it has used up its budget.
int DRConnection::spendSteps(void* connection)
{
    return --static_cast<DRConnection*>(connection)->m_stepPortionsLeft < 0 ? 1 : 0;
}
