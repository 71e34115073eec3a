// A folder with 1,000 backups is listed from property lists alone.

#include "model/iphone_backup/DRMigrateBackupDiscovery.h"
#include "platform/core/DRPropertyList.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

bool write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

bool writeBackups(const QString& root, int count)
{
    const QDateTime first(QDate(2014, 1, 1), QTime(), Qt::UTC);
    QVariantMap applications; // what makes the manifests of real backups large
    for (int app = 0; app < 100; ++app) {
        applications.insert(u"com.example.app%1"_s.arg(app), QVariantMap{{u"CFBundleVersion"_s, u"1.0"_s}});
    }
    for (int number = 0; number < count; ++number) {
        const QString folder = root + u"/%1/"_s.arg(number, 40, 16, QChar(u'0'));
        const QVariantMap info{{u"Device Name"_s, u"iPhone %1"_s.arg(number % 300)},
                               {u"Product Version"_s, u"7.1.2"_s},
                               {u"Last Backup Date"_s, first.addDays(number)}};
        if (!QDir().mkpath(folder) || !write(folder + u"Info.plist"_s, DRPropertyList::xmlFromDictionary(info)) ||
            !write(folder + u"Manifest.plist"_s, DRPropertyList::binaryFromDictionary(
                                                     {{u"IsEncrypted"_s, false}, {u"Applications"_s, applications}}))) {
            return false;
        }
    }
    return true;
}

void listBackups(benchmark::State& state)
{
    DRTestServices test;
    const auto count = static_cast<int>(state.range(0));
    if (!writeBackups(test.root.path(), count)) {
        state.SkipWithError("the backups cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        const auto entries = DRMigrateUtils::iPhoneBackupEntriesAtPath(test.root.path(), test.services);
        const auto latest = DRMigrateUtils::latestBackupEntriesFromList(entries);
        if (static_cast<int>(entries.size()) != count || latest.size() != std::min<std::size_t>(entries.size(), 300)) {
            state.SkipWithError("backups are missing");
            return;
        }
    }
}

} // namespace

BENCHMARK(listBackups)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
