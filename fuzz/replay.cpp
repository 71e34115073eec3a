// Feeds a target the files of folders, so that inputs that once broke the program are tested in every build:
// fuzz_TARGET FOLDER|FILE ... A path that is not there holds nothing; nothing in all of them is a failure.

#include "fuzz/FuzzTarget.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

namespace {

QStringList filesAt(const QString& path)
{
    if (QFileInfo(path).isFile()) {
        return {path};
    }
    const QDir folder(path);
    QStringList files;
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden, QDir::Name)) {
        files.append(folder.filePath(name));
    }
    return files;
}

void replay(const QString& path)
{
    QFile file(path);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    std::printf("%s\n", qUtf8Printable(path));
    static_cast<void>(std::fflush(stdout)); // so that the last line names the input that ends the process
    require(isOpen, "an input can be read");
    fuzzOne(file.readAll());
}

} // namespace

int main(int argc, char* argv[])
{
    silenceLog();
    qsizetype count = 0;
    for (int i = 1; i < argc; ++i) {
        const QStringList files = filesAt(QString::fromLocal8Bit(argv[i]));
        for (const QString& file : files) {
            replay(file);
        }
        count += files.size();
    }
    std::printf("%lld inputs\n", count);
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
