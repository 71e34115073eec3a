/// Measures the copy of media to a phone in a folder against `cp -r` of the same files, both in processes of their own;
/// medians of interleaved runs are printed, and the peak memory of both.
///
///     bench_copy [--files 1200] [--size 128M] [--runs 7] [--dir FOLDER]

#include "platform/core/DRNotificationCenter.h"
#include "platform/core/DRThreadPoolTaskQueue.h"
#include "platform/device/DRDCDeviceTask.h"
#include "platform/device/DRDCFile.h"
#include "platform/folder_phone/DRFolderPhone.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct Measurement {
    double seconds = 0;
    double peakMebibytes = 0;
};

void fail(const char* what)
{
    static_cast<void>(std::fprintf(stderr, "%s\n", what));
    std::exit(1);
}

/// The part of the program that is measured: copies the files of the folder to the phone.
int copyToPhone(const QString& source, const QString& phoneFolder)
{
    DRThreadPoolTaskQueue queue;
    DRNotificationCenter center;
    const auto phone = DRFolderPhone::open(phoneFolder, queue, center);
    if (!phone) {
        return 1;
    }
    std::vector<DRDCFilePointer> files;
    const QStringList names = QDir(source).entryList(QDir::Files);
    for (const QString& name : names) {
        files.push_back(DRDCFile::fileWithSourcePath(source + u'/' + name));
        files.back()->setMetadata(u"TarvexTransfer/Media/"_s + name, QLatin1StringView(DRDCFile::kTargetPath));
    }
    const DRDCDeviceTaskPointer task = phone->requestTask();
    task->syncContentWithDevice(phone, *phone, files, {}, [](const DRDCFileFailures& failures) {
        QCoreApplication::exit(failures && failures->empty() ? 0 : 1);
    });
    return QCoreApplication::exec();
}

Measurement measure(std::vector<QByteArray> arguments)
{
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (QByteArray& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    sync();
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(pointers.front(), pointers.data());
        _exit(1);
    }
    int status = 1;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) < 0 || status != 0) {
        fail("a measured copy failed");
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return {.seconds = elapsed.count(), .peakMebibytes = static_cast<double>(usage.ru_maxrss) / 1024};
}

double median(const std::vector<Measurement>& runs, double Measurement::*value)
{
    std::vector<double> values;
    std::ranges::transform(runs, std::back_inserter(values), [value](const Measurement& run) { return run.*value; });
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Files of sizes from a half to one and a half of the mean.
void makeFiles(const QString& folder, int count, qint64 totalBytes)
{
    QDir().mkpath(folder);
    const qint64 mean = totalBytes / count;
    for (int number = 0; number < count; ++number) {
        QFile file(folder + u"/IMG_%1.JPG"_s.arg(number, 4, 10, QChar(u'0')));
        const qint64 size = mean / 2 + mean * (number % 100) / 100;
        const QByteArray block(1 << 16, static_cast<char>(number));
        bool isWritten = file.open(QIODevice::WriteOnly);
        for (qint64 rest = size; rest > 0 && isWritten; rest -= block.size()) {
            isWritten = file.write(block.constData(), std::min<qint64>(rest, block.size())) > 0;
        }
        if (!isWritten) {
            fail("the files to copy cannot be made");
        }
    }
}

QString emptyPhone(const QString& folder)
{
    QDir(folder).removeRecursively();
    QDir().mkpath(folder + u"/storage/TarvexTransfer"_s);
    return folder;
}

qint64 bytesOf(const QString& text)
{
    const qint64 unit = text.endsWith(u'G') ? qint64{1} << 30 : qint64{1} << 20;
    return QString(text).remove(u'G').remove(u'M').toLongLong() * unit;
}

void compare(const QString& folder, int runs)
{
    const QByteArray source = QFile::encodeName(folder + u"/source"_s);
    std::vector<Measurement> ours;
    std::vector<Measurement> theirs;
    for (int run = 0; run <= runs; ++run) {
        const QByteArray phone = QFile::encodeName(emptyPhone(folder + u"/phone"_s));
        const Measurement our = measure({"/proc/self/exe", "--child", source, phone});
        const QByteArray copy = QFile::encodeName(emptyPhone(folder + u"/copy"_s));
        const Measurement their = measure({"cp", "-r", source, copy + "/storage/TarvexTransfer/Media"});
        if (run > 0) { // the first warms up
            ours.push_back(our);
            theirs.push_back(their);
        }
    }
    const double ourSeconds = median(ours, &Measurement::seconds);
    const double theirSeconds = median(theirs, &Measurement::seconds);
    std::printf("to the phone %.3f s, %.1f MiB peak\ncp -r        %.3f s, %.1f MiB peak\nratio        %.2f\n",
                ourSeconds, median(ours, &Measurement::peakMebibytes), theirSeconds,
                median(theirs, &Measurement::peakMebibytes), ourSeconds / theirSeconds);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == u"--child"_s) {
        return copyToPhone(arguments.at(2), arguments.at(3));
    }
    QCommandLineParser parser;
    parser.addOption({u"files"_s, u"how many"_s, u"count"_s, u"1200"_s});
    parser.addOption({u"size"_s, u"of all together"_s, u"bytes"_s, u"128M"_s});
    parser.addOption({u"runs"_s, u"of each"_s, u"count"_s, u"7"_s});
    parser.addOption({u"dir"_s, u"where to work"_s, u"folder"_s, QDir::tempPath()});
    parser.addHelpOption();
    parser.process(application);
    const QTemporaryDir folder(parser.value(u"dir"_s) + u"/bench-copy-XXXXXX"_s);
    makeFiles(folder.filePath(u"source"_s), parser.value(u"files"_s).toInt(), bytesOf(parser.value(u"size"_s)));
    compare(folder.path(), parser.value(u"runs"_s).toInt());
    return 0;
}
