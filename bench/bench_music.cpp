// The cost of a song must not depend on how many there are: reading a library of 5,000 and 50,000 songs, per song, beside
// the least that any reader has to do, which is to walk through the XML; and placing songs that all have one name.

#include "platform/device/DRDCFile.h"
#include "platform/folder_phone/DRFolderPhoneRoot.h"
#include "platform/folder_phone/DRFolderPhoneStorage.h"
#include "platform/media_library/DRMusicLibrary.h"
#include "tests/support/DRMusicLibraryText.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <benchmark/benchmark.h>

#include <limits>

using namespace Qt::StringLiterals;
using namespace DRMusicLibraryText;

namespace {

/// What a library says of a song beside what we read, as far as it takes time to pass over.
Values usualValues(qint64 id)
{
    const QByteArray number = QByteArray::number(id);
    Values values{{"Size", integer(5'000'000 + id)},
                  {"Total Time", integer(200'000 + id)},
                  {"Disc Number", integer(1)},
                  {"Track Number", integer(id % 12)},
                  {"Year", integer(2007)},
                  {"Date Modified", "<date>2012-05-01T12:00:00Z</date>"},
                  {"Date Added", "<date>2012-05-01T12:00:00Z</date>"},
                  {"Bit Rate", integer(256)},
                  {"Sample Rate", integer(44100)},
                  {"Play Count", integer(id % 50)},
                  {"Play Date", integer(3'400'000'000)},
                  {"Artwork Count", integer(1)},
                  {"Persistent ID", string("00000000" + number.rightJustified(8, '0'))},
                  {"Track Type", string("File")},
                  {"File Folder Count", integer(5)},
                  {"Library Folder Count", integer(1)},
                  {"Artist", string("Artist " + QByteArray::number(id / 100))},
                  {"Album Artist", string("Artist " + QByteArray::number(id / 100))},
                  {"Composer", string("Somebody")},
                  {"Album", string("Album " + QByteArray::number(id / 10))},
                  {"Genre", string("Rock &#38; Roll")},
                  {"Kind", string("AAC audio file")}};
    return values;
}

bool writeLibrary(const QString& path, qint64 songs)
{
    QByteArray tracks;
    QList<qint64> all;
    QList<qint64> tenth;
    for (qint64 id = 1; id <= songs; ++id) {
        const QByteArray location =
            "file://localhost/Users/a/Music/Artist/Album/" + QByteArray::number(id) + "%20Song.m4a";
        tracks += track(id, "Song " + QByteArray::number(id), location, usualValues(id));
        all.append(id);
        if (id % 10 == 0) {
            tenth.append(id);
        }
    }
    QFile file(path);
    const QByteArray bytes = library(tracks, playlist("Library", "01", all, {{"Master", "<true/>"}}) +
                                                 playlist("Mine", "02", tenth) + playlist("Mine, too", "03", all));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

void countPerItem(benchmark::State& state)
{
    state.counters["per item"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Reads the library and makes the records of all playlists.
void readLibrary(benchmark::State& state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Library.xml"_s);
    bool isRight = writeLibrary(path, state.range(0));
    for ([[maybe_unused]] auto iteration : state) {
        const DRMusicLibrary library = DRMusicLibrary::fromFile(path);
        isRight = isRight && library.problem().isNull() && library.trackCount() == state.range(0) &&
                  library.filesWithPersistentIDs({u"2"_s, u"3"_s}).size() == 2;
    }
    if (!isRight) {
        state.SkipWithError("the library was not read");
    }
    countPerItem(state);
}

void walkThroughXml(benchmark::State& state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Library.xml"_s);
    bool isRight = writeLibrary(path, state.range(0));
    for ([[maybe_unused]] auto iteration : state) {
        QFile file(path);
        isRight = isRight && file.open(QIODevice::ReadOnly);
        QXmlStreamReader reader(&file);
        qint64 elements = 0;
        while (!reader.atEnd()) {
            elements += reader.readNext() == QXmlStreamReader::StartElement ? 1 : 0;
        }
        isRight = isRight && !reader.hasError() && elements > state.range(0);
    }
    if (!isRight) {
        state.SkipWithError("the library was not read");
    }
    countPerItem(state);
}

/// Copies files of different content that all want one name.
void placeFilesOfOneName(benchmark::State& state)
{
    const QTemporaryDir folder;
    const QString source = folder.filePath(u"source.mp3"_s);
    bool isRight = QDir(folder.path()).mkdir(u"phone"_s) && QDir(folder.path()).mkdir(u"phone/storage"_s);
    for ([[maybe_unused]] auto iteration : state) {
        DRFolderPhoneStorage storage(*DRFolderPhoneRoot::at(folder.filePath(u"phone"_s)),
                                     std::numeric_limits<quint64>::max());
        for (qint64 number = 0; number < state.range(0); ++number) {
            QFile file(source);
            isRight = isRight && file.open(QIODevice::WriteOnly) &&
                      file.write(QByteArray::number(number).rightJustified(16, '0')) == 16;
            file.close();
            const auto outcome = storage.copy(*DRDCFile::fileWithSourcePath(source), u"Music/01 Track.mp3"_s, {});
            isRight = isRight && outcome.kind == DRStepOutcome::Kind::Done;
        }
    }
    isRight =
        isRight && QDir(folder.filePath(u"phone/storage/Music"_s)).entryList(QDir::Files).size() == state.range(0);
    if (!isRight) {
        state.SkipWithError("the files were not placed");
    }
    countPerItem(state);
}

} // namespace

BENCHMARK(walkThroughXml)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(readLibrary)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(placeFilesOfOneName)->Arg(1000)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
