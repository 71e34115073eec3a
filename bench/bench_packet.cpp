/// Measures packing and expanding against the goals, all in one run: CPU time and size of packing against the same
/// archive through zlib level 6, wall time of expanding a phone's packet (zlib level 6) against `pigz -dc | tar -x`,
/// and the peak memory of both. Each measurement runs in a process of its own; medians of interleaved runs are printed.
///
///     bench_packet [--size 512M] [--runs 5] [--dir FOLDER]

#include "model/packet/DRMigratePacketCodec.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#define ZLIB_CONST
#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kPacketHeader = "ANDROID BACKUP\n1\n1\nnone\n";

struct Measurement {
    double wallSeconds = 0;
    double cpuSeconds = 0;
    double peakMebibytes = 0;
};

double seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs the work in a child process. Ends the program when it fails.
Measurement measureOnce(const std::function<bool()>& work)
{
    sync();
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        _exit(work() ? 0 : 1);
    }
    int status = 1;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) < 0 || status != 0) {
        static_cast<void>(std::fputs("a measured operation failed\n", stderr));
        std::exit(1);
    }
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {.wallSeconds = wall.count(),
            .cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime),
            .peakMebibytes = static_cast<double>(usage.ru_maxrss) / 1024};
}

/// Does the work twice and answers the second measurement. A virtual machine asks its host for memory that was not used
/// for a while, at the expense of whoever touches it first: two seconds for a gigabyte of files, which would hide all
/// else.
Measurement measure(const std::function<bool()>& work, const QString& folderToRemove = {})
{
    Measurement measurement;
    for (int i = 0; i < 2; ++i) {
        if (!folderToRemove.isEmpty()) {
            QDir(folderToRemove).removeRecursively();
            QDir().mkpath(folderToRemove);
        }
        measurement = measureOnce(work);
    }
    return measurement;
}

double median(const std::vector<Measurement>& runs, double Measurement::*value)
{
    std::vector<double> values;
    std::ranges::transform(runs, std::back_inserter(values), [value](const Measurement& run) { return run.*value; });
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The same numbers in every run.
class Random {
public:
    quint32 next()
    {
        m_state = m_state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<quint32>(m_state >> 33U);
    }

private:
    quint64 m_state = 1;
};

/// A photo's bytes: noise with a slight bias, from which deflate gains next to nothing.
QByteArray pictureBlock(Random& random)
{
    QByteArray block(1 << 20, Qt::Uninitialized);
    for (char& byte : block) {
        const quint32 number = random.next();
        byte = static_cast<char>(number % 16 == 0 ? number >> 12U & 0x7fU : number >> 8U);
    }
    return block;
}

/// A vocabulary in which, as in a language, few words are frequent and most are rare.
QByteArray words(Random& random, int count)
{
    static const std::vector<QByteArray> vocabulary = [] {
        Random letters;
        std::vector<QByteArray> made(4000);
        for (QByteArray& word : made) {
            for (quint32 length = 2 + letters.next() % 7; length > 0; --length) {
                word += "etaoinshrdlucmfwypvbgk"[letters.next() % 22 * (letters.next() % 100) / 100];
            }
        }
        return made;
    }();
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        const double part = static_cast<double>(random.next() % 65536) / 65536;
        text += vocabulary[static_cast<std::size_t>(part * part * part * 3999)] + ' ';
    }
    return text;
}

/// A database's bytes: pages with cell pointers and rows of numbers, times, addresses and short texts, partly empty.
QByteArray databaseBlock(Random& random)
{
    static quint64 row = 0;
    QByteArray block;
    while (block.size() < 1 << 20) {
        QByteArray page("\x0d\x00\x00\x00\x10", 5);
        QByteArray cells;
        while (cells.size() < 3000) {
            const quint64 time = 1400000000000U + ++row * 40000 + random.next() % 30000;
            cells += QByteArray::number(row) + QByteArray("\x13\x01\x02\x19\x05\x00\x08\x09\x01\x00\x00\x3d\x21", 13);
            cells.append(reinterpret_cast<const char*>(&time), 6);
            cells += "+4917" + QByteArray::number(random.next() % 40 * 7919 + 1000000) + "+491710760000";
            cells += words(random, static_cast<int>(random.next() % 12)) + "text/plain/data/user/0/app_parts/PART_";
        }
        block += (page + QByteArray(4096 - 5 - cells.size() % 4096, '\0') + cells).left(4096);
    }
    return block;
}

/// What apps keep in text files: records of the same keys.
QByteArray textBlock(Random& random)
{
    QByteArray text;
    while (text.size() < 1 << 20) {
        text += R"({"id":)" + QByteArray::number(random.next()) + R"(,"type":"message","direction":")" +
                (random.next() % 2 == 0 ? "incoming" : "outgoing") + R"(","timestamp":"2014-0)" +
                QByteArray::number(1 + random.next() % 9) + "-1" + QByteArray::number(random.next() % 10) +
                R"(T12:00:00Z","state":{"read":true,"delivered":true,"locked":false},"body":")" +
                words(random, static_cast<int>(random.next() % 16)) + "\"},\n";
    }
    return text;
}

struct Content {
    const char* name;
    int percent;
    QByteArray (*block)(Random& random);
};

constexpr std::array kContents{Content{"r/photo", 56, pictureBlock}, Content{"db/data", 25, databaseBlock},
                               Content{"f/text", 19, textBlock}};

/// Writes files of about 4 MiB below apps/bench. Answers their paths.
QStringList makeTree(const QString& folder, qint64 size)
{
    Random random;
    QStringList names{u"apps/bench/_manifest"_s};
    QDir().mkpath(folder + u"/apps/bench/r"_s);
    QDir().mkpath(folder + u"/apps/bench/db"_s);
    QDir().mkpath(folder + u"/apps/bench/f"_s);
    QFile manifest(folder + u"/apps/bench/_manifest"_s);
    bool isFine = manifest.open(QIODevice::WriteOnly) && manifest.write("1\nbench\n") > 0;
    for (const Content& content : kContents) {
        for (qint64 rest = size * content.percent / 100; rest > 0 && isFine;) {
            names.append(u"apps/bench/%1%2"_s.arg(QLatin1String(content.name)).arg(names.size()));
            QFile file(folder + u'/' + names.back());
            isFine = file.open(QIODevice::WriteOnly);
            for (int i = 0; i < 4 && isFine; ++i) {
                const QByteArray block = content.block(random);
                isFine = file.write(block) == block.size();
                rest -= block.size();
            }
        }
    }
    return isFine ? names : QStringList();
}

/// The reference: the archive through zlib level 6, streaming, on one thread.
bool packWithZlib(const QString& archive, const QString& packet)
{
    QFile source(archive);
    QFile target(packet);
    z_stream stream{};
    if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        deflateInit(&stream, 6) != Z_OK || target.write(kPacketHeader) < 0) {
        return false;
    }
    QByteArray output(1 << 18, Qt::Uninitialized);
    int result = Z_OK;
    while (result != Z_STREAM_END) {
        const QByteArray input = source.read(1 << 18);
        stream.next_in = reinterpret_cast<const Bytef*>(input.constData());
        stream.avail_in = static_cast<uInt>(input.size());
        do {
            stream.next_out = reinterpret_cast<Bytef*>(output.data());
            stream.avail_out = static_cast<uInt>(output.size());
            result = deflate(&stream, input.isEmpty() ? Z_FINISH : Z_NO_FLUSH);
            const qint64 size = output.size() - stream.avail_out;
            if (target.write(output.constData(), size) != size) {
                return false;
            }
        } while (stream.avail_out == 0);
    }
    return deflateEnd(&stream) == Z_OK;
}

bool runShell(const QString& command)
{
    return QProcess::execute(u"/bin/sh"_s, {u"-c"_s, command}) == 0;
}

struct Results {
    std::vector<Measurement> pack;
    std::vector<Measurement> packReference;
    std::vector<Measurement> expand;
    std::vector<Measurement> expandReference;
};

Results runAll(const QString& folder, const QStringList& names, int runs)
{
    const QString tree = folder + u"/tree"_s;
    const QString packet = folder + u"/packet"_s;
    const QString phonePacket = folder + u"/phone-packet"_s;
    const QString expanded = folder + u"/expanded"_s;
    const QString untarred = folder + u"/untarred"_s;
    const QString pipeline =
        u"tail -c +%1 '%2' | pigz -dc | tar -x -C '%3'"_s.arg(qstrlen(kPacketHeader) + 1).arg(phonePacket, untarred);
    Results results;
    for (int run = 0; run < runs; ++run) {
        results.pack.push_back(
            measure([&] { return DRMigrateUtils::compressAndroidBackupPacket(tree, names, packet); }));
        results.packReference.push_back(
            measure([&] { return packWithZlib(tree + u"/compressBackup.tar"_s, phonePacket); }));
        results.expand.push_back(
            measure([&] { return DRMigrateUtils::expandAndroidBackupPacket(phonePacket, expanded); }, expanded));
        results.expandReference.push_back(measure([&] { return runShell(pipeline); }, untarred));
    }
    return results;
}

void printRatio(const char* what, double ours, double reference, const char* unit, double goal)
{
    std::printf("%-12s %10.2f %-4s reference %10.2f   ratio %.3f   goal <= %.2f   %s\n", what, ours, unit, reference,
                ours / reference, goal, ours / reference <= goal ? "reached" : "MISSED");
}

void printPeak(const char* what, double mebibytes)
{
    std::printf("%-12s %10.1f MiB   goal <= 32   %s\n", what, mebibytes, mebibytes <= 32 ? "reached" : "MISSED");
}

void print(const Results& results, const QString& folder)
{
    const auto sizeOf = [&folder](const QString& name) {
        return static_cast<double>(QFile(folder + name).size()) / (1 << 20);
    };
    printRatio("pack CPU", median(results.pack, &Measurement::cpuSeconds),
               median(results.packReference, &Measurement::cpuSeconds), "s", 0.20);
    printRatio("pack wall", median(results.pack, &Measurement::wallSeconds),
               median(results.packReference, &Measurement::wallSeconds), "s", 1.0);
    printRatio("pack size", sizeOf(u"/packet"_s), sizeOf(u"/phone-packet"_s), "MiB", 1.02);
    printRatio("expand wall", median(results.expand, &Measurement::wallSeconds),
               median(results.expandReference, &Measurement::wallSeconds), "s", 0.80);
    printRatio("expand CPU", median(results.expand, &Measurement::cpuSeconds),
               median(results.expandReference, &Measurement::cpuSeconds), "s", 1.0);
    printPeak("pack peak", median(results.pack, &Measurement::peakMebibytes));
    printPeak("expand peak", median(results.expand, &Measurement::peakMebibytes));
}

qint64 bytesFrom(const QString& text)
{
    const qint64 unit = text.endsWith(u'G') ? 1 << 30 : 1 << 20;
    return text.chopped(1).toLongLong() * unit;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{u"size"_s, u"Size of the tree, in M or G."_s, u"size"_s, u"512M"_s},
                       {u"runs"_s, u"Number of runs."_s, u"count"_s, u"5"_s},
                       {u"dir"_s, u"Folder to work in."_s, u"folder"_s, QDir::tempPath()}});
    parser.addHelpOption();
    parser.process(application);
    const QTemporaryDir folder(parser.value(u"dir"_s) + u"/bench-packet-XXXXXX"_s);
    QStringList names;
    if (folder.isValid()) {
        names = makeTree(folder.path() + u"/tree"_s, bytesFrom(parser.value(u"size"_s)));
    }
    if (names.isEmpty()) {
        static_cast<void>(std::fputs("the tree could not be made\n", stderr));
        return 1;
    }
    print(runAll(folder.path(), names, std::max(1, parser.value(u"runs"_s).toInt())), folder.path());
    return 0;
}
