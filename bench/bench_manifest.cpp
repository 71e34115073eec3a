// Reading a backup's list of files, per record, and finding files in it, per look-up beside a plain walk of the list: neither cost
// may grow with the number of files.

#include "model/iphone_backup/DRFilePathList.h"
#include "platform/data/DRAbstractData.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <benchmark/benchmark.h>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kPartsFolder = u"MediaDomain-Library/SMS/Parts/"_s;
constexpr qint64 kMaximumBytes = qint64{1} << 30;

template <typename Integer> void append(QByteArray& bytes, Integer value)
{
    const Integer bigEndian = qToBigEndian(value);
    bytes.append(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

void appendString(QByteArray& bytes, const QByteArray& string)
{
    append(bytes, static_cast<quint16>(string.size()));
    bytes.append(string);
}

/// A record of about 130 bytes: one in 50 is a file of a message, one in ten a folder.
void appendRecord(QByteArray& bytes, qint64 number)
{
    constexpr qsizetype kFixedBytes = 2 + 7 * 4;
    const bool isPart = number % 50 == 0;
    const QByteArray folder =
        isPart ? QByteArray("Library/SMS/Parts/") : QByteArray("Media/PhotoData/Thumbnails/DCIM/100/");
    appendString(bytes, isPart ? QByteArray("MediaDomain") : QByteArray("CameraRollDomain"));
    appendString(bytes, folder + QByteArray::number(number % 256, 16) + '/' + QByteArray::number(number) + "-1.jpg");
    append(bytes, quint16{0xFFFF});
    appendString(bytes, QByteArray(20, '\xA9'));
    append(bytes, quint16{0xFFFF});
    bytes.append(kFixedBytes, '\0');
    append(bytes, quint64{number % 10 != 1});
    bytes.append("\3\0", 2);
}

bool writeManifest(const QString& path, qint64 records)
{
    QByteArray bytes("mbdb\5\0", 6);
    for (qint64 number = 0; number < records; ++number) {
        appendRecord(bytes, number);
    }
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

void countPer(benchmark::State& state, const char* what)
{
    state.counters[what] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

qint64 countOf(const DRFilePathList& list)
{
    return list.filePaths().size();
}

qint64 countOf(const std::optional<DRAbstractData>& data)
{
    return data ? data->length() : 0;
}

/// Reads a manifest and checks that there is enough of what was read. Giving the memory back is not timed.
template <typename Reader> void readManifest(benchmark::State& state, qint64 oneInKept, Reader readFrom)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Manifest.mbdb"_s);
    if (!writeManifest(path, state.range(0))) {
        state.SkipWithError("the manifest cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        std::optional<decltype(readFrom(path))> result(std::in_place, readFrom(path));
        state.PauseTiming();
        if (countOf(*result) < state.range(0) / oneInKept) {
            state.SkipWithError("files are missing");
            return;
        }
        result.reset();
        state.ResumeTiming();
    }
    countPer(state, "per record");
}

void readEveryFile(benchmark::State& state)
{
    readManifest(state, 2, [](const QString& path) { return DRFilePathList::fileListFromMBDB(path); });
}

void readFewFiles(benchmark::State& state)
{
    readManifest(state, 50, [](const QString& path) { return DRFilePathList::fileListFromMBDB(path, kPartsFolder); });
}

/// The part of it that is not ours: the file's way into memory.
void readBytesAlone(benchmark::State& state)
{
    readManifest(state, 1,
                 [](const QString& path) { return DRAbstractData::abstractDataWithPath(path, kMaximumBytes); });
}

QString folderOf(qint64 number)
{
    return kPartsFolder + QString::number(number % 256, 16);
}

QString stemOf(qint64 number)
{
    return QString::number(number) + u"-1"_s;
}

QStringList pathsOfParts(qint64 count)
{
    QStringList paths;
    for (qint64 number = 0; number < count; ++number) {
        paths.append(folderOf(number) + u'/' + stemOf(number) + u".jpg"_s);
    }
    return paths;
}

/// What a look-up is defined as.
QString walk(const QStringList& paths, const QString& prefix, const QString& stem)
{
    for (const QString& path : paths) {
        if (!path.startsWith(prefix, Qt::CaseInsensitive)) {
            continue;
        }
        const QStringView name = QStringView(path).sliced(path.lastIndexOf(u'/') + 1);
        if (name.first(name.lastIndexOf(u'.')).compare(stem, Qt::CaseInsensitive) == 0) {
            return path;
        }
    }
    return {};
}

/// Every file is looked up once in a fresh list.
template <typename Finder> void lookUp(benchmark::State& state, Finder finderOf)
{
    const QStringList paths = pathsOfParts(state.range(0));
    for ([[maybe_unused]] auto iteration : state) {
        const auto find = finderOf(paths);
        for (qint64 number = 0; number < state.range(0); ++number) {
            if (find(folderOf(number), stemOf(number)).isNull()) {
                state.SkipWithError("a file was not found");
                return;
            }
        }
    }
    countPer(state, "per look-up");
}

void findInPath(benchmark::State& state)
{
    lookUp(state, [](const QStringList& paths) {
        return [list = DRFilePathList(paths)](const QString& prefix, const QString& stem) {
            return list.findInPath(prefix, stem, false);
        };
    });
}

void plainWalk(benchmark::State& state)
{
    lookUp(state, [](const QStringList& paths) {
        return [&paths](const QString& prefix, const QString& stem) { return walk(paths, prefix, stem); };
    });
}

} // namespace

BENCHMARK(readEveryFile)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(readFewFiles)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(readBytesAlone)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(findInPath)->Arg(2'000)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK(plainWalk)->Arg(2'000)->Arg(20'000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
