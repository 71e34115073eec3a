#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRFiles.h"
#include "platform/data/DRMutableAbstractData.h"
#include "platform/media/DRByteSource.h"
#include "platform/media/DRMP4Atom.h"
#include "platform/media/DRVideoBoxes.h"
#include "tests/support/DRTestTable.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <fcntl.h>
#include <random>

using namespace Qt::StringLiterals;
using DRVideoBoxes::Outcome;

namespace {

template <typename T> QByteArray number(T value)
{
    QByteArray bytes(sizeof(T), Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray box(const QByteArray& type, const QByteArray& content, DRMP4SizeField size = DRMP4SizeField::Bits32)
{
    const auto length = static_cast<quint32>(content.size());
    switch (size) {
    case DRMP4SizeField::Bits32:
        return number(length + 8) + type + content;
    case DRMP4SizeField::Bits64:
        return number(quint32{1}) + type + number(quint64{length} + 16) + content;
    case DRMP4SizeField::ToTheEnd:
        break;
    }
    return number(quint32{0}) + type + content;
}

/// A film with a picture track and a sound track; what is added to it is named by what it is.
struct Film {
    bool isMovieFirst = true;
    bool hasLargeOffsets = false;
    bool isFragmented = false;
    DRMP4SizeField movieSize = DRMP4SizeField::Bits32;
    DRMP4SizeField dataSize = DRMP4SizeField::Bits32;
    quint16 soundVersion = 1;
    QByteArray userDataBefore, userDataAfter; ///< in the movie
    QByteArray inWave;
    QByteArray padding; ///< less than a header, at the end of the movie

    [[nodiscard]] QByteArray bytes() const
    {
        const QByteArray type = box("ftyp", "qt  ");
        const QByteArray data = box("mdat", "chunk-0chunk-1chunk-2", dataSize);
        const auto header = static_cast<quint64>(data.indexOf("chunk-0"));
        const auto start = static_cast<quint64>(type.size() + (isMovieFirst ? movie(0).size() : 0));
        const QByteArray known = type + (isMovieFirst ? movie(start + header) + data : data + movie(start + header));
        // The position of a fragment's data is that of the first chunk; flags say whether it is there.
        const QByteArray fragment = number(quint32{1}) + number(quint32{7}) + number(start + header);
        const QByteArray fragments = box("traf", box("tfhd", fragment)) + box("traf", box("tfhd", QByteArray(8, '\0')));
        return isFragmented ? known + box("moof", fragments) : known;
    }

private:
    [[nodiscard]] QByteArray movie(quint64 data) const
    {
        return box("moov",
                   box("mvhd", "header") + userDataBefore + track(box("vide", {}), {data, data + 14}) + userDataAfter +
                       track(sound(), {data + 7}) + padding,
                   movieSize);
    }

    [[nodiscard]] QByteArray track(const QByteArray& description, const QList<quint64>& chunks) const
    {
        QByteArray table = number(quint32{0}) + number(static_cast<quint32>(chunks.size()));
        for (const quint64 chunk : chunks) {
            table += hasLargeOffsets ? number(chunk) : number(static_cast<quint32>(chunk));
        }
        const QByteArray descriptions = box("stsd", number(quint32{0}) + number(quint32{1}) + description);
        const QByteArray tables = box("stbl", descriptions + box(hasLargeOffsets ? "co64" : "stco", table));
        // The user data of a track is not that of the film.
        return box("trak", box("udta", "stays") + box("mdia", box("minf", tables)));
    }

    [[nodiscard]] QByteArray sound() const
    {
        const QByteArray fields = QByteArray(8, '\0') + number(soundVersion);
        const qsizetype size = soundVersion == 0 ? 28 : (soundVersion == 1 ? 44 : 64);
        const QByteArray wave =
            box("wave", box("frma", "mp4a") + inWave + box("esds", "setup") + box(QByteArray(4, '\0'), {}));
        return box("mp4a", fields.leftJustified(size, '\x11') + wave);
    }
};

/// Boxes of every kind that paths lead through, at random; most are where they belong.
QByteArray randomBoxes(std::mt19937& random, int depth)
{
    static constexpr std::array kTypes = {"moov", "trak", "mdia", "minf", "stbl", "stsd", "udta", "free"};
    QByteArray bytes;
    for (auto count = depth < 8 ? random() % 4 : 0; count > 0; --count) {
        const bool isNext = random() % 4 != 0 && depth < 7;
        const char* type = isNext ? kTypes.at(static_cast<std::size_t>(depth)) : kTypes.at(random() % kTypes.size());
        const bool isDescription = qstrcmp(type, "stsd") == 0;
        const auto size = random() % 5 == 0 ? DRMP4SizeField::Bits64 : DRMP4SizeField::Bits32;
        bytes += box(type, (isDescription ? QByteArray(7, '\0') + '\2' : QByteArray()) + randomBoxes(random, depth + 1),
                     size);
    }
    const QByteArray offsets = number(quint32{0}) + number(quint32{2}) + number(quint32{30}) + number(quint32{200});
    return depth == 5 ? bytes + box("stco", offsets) : bytes;
}

/// Removes as the outcome is described: the first box, then the file is read again.
QByteArray removedOneByOne(const QByteArray& bytes, const QStringList& paths)
{
    DRMutableAbstractData data(bytes);
    for (const QString& path : paths) {
        while (const auto file = DRMP4Atom::atomWithAbstractData(data)) {
            const auto atoms = file->allAtomsWithPath(path);
            if (atoms.empty() || !atoms.front().removeSelfFromMutableData(data)) {
                break;
            }
        }
    }
    return data.bytes();
}

} // namespace

class TestMP4 : public QObject {
    Q_OBJECT

private:
    /// The outcome and bytes of the way through files.
    [[nodiscard]] std::pair<Outcome, QByteArray> writtenWithout(const QByteArray& bytes, const QStringList& paths) const
    {
        const QString source = m_folder.filePath(u"source"_s);
        const QString target = m_folder.filePath(u"target"_s);
        QFile::remove(target);
        QFile::remove(source);
        QFile file(source);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
            return {Outcome::Failed, "the source was not written"};
        }
        const auto descriptor = DRFileDescriptor::open(target, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
        const Outcome outcome = DRVideoBoxes::writeWithoutBoxes(source, descriptor, paths);
        return {outcome, DRFiles::readRegularFile(target, qint64{1} << 30).value_or("the target is not there")};
    }

    /// What the three ways agree on; an outcome of Failed when they do not.
    [[nodiscard]] std::pair<Outcome, QByteArray> removed(const QByteArray& bytes, const QStringList& paths) const
    {
        DRMutableAbstractData data(bytes);
        const Outcome outcome = DRVideoBoxes::removeBoxes(data, paths);
        const bool isSame = data.bytes() == removedOneByOne(bytes, paths) &&
                            writtenWithout(bytes, paths) == std::pair(outcome, data.bytes()) &&
                            (outcome == Outcome::Removed) == (data.bytes() != bytes);
        return {isSame ? outcome : Outcome::Failed, data.bytes()};
    }

    QTemporaryDir m_folder;

private Q_SLOTS:
    void filmIsAsIfMadeWithoutTheBoxes_data()
    {
        const DRTestTable<QByteArray, QByteArray> row("bytes", "expected");
        const auto addRow = [&row](const char* name, const Film& without) {
            Film with = without;
            with.userDataBefore = box("udta", "one");
            with.userDataAfter = box("udta", {}) + box("udta", box("name", "three"), DRMP4SizeField::Bits64);
            with.inWave = box("mp4a", QByteArray(4, '\0')) + box("mp4a", "again");
            row(name, with.bytes(), without.bytes());
        };
        addRow("movie first", {});
        addRow("movie last", {.isMovieFirst = false});
        addRow("large offsets", {.hasLargeOffsets = true});
        addRow("fragments", {.isFragmented = true});
        addRow("sizes of 64 bits", {.movieSize = DRMP4SizeField::Bits64, .dataSize = DRMP4SizeField::Bits64});
        addRow("data to the end", {.dataSize = DRMP4SizeField::ToTheEnd});
        addRow("movie to the end", {.isMovieFirst = false, .movieSize = DRMP4SizeField::ToTheEnd});
        addRow("plain sound", {.soundVersion = 0});
        addRow("sound of version 2", {.soundVersion = 2});
        addRow("padding", {.padding = QByteArray(4, '\0')});
    }

    void filmIsAsIfMadeWithoutTheBoxes()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, expected);
        QCOMPARE(removed(bytes, DRVideoBoxes::pathsForOldPhones()), std::pair(Outcome::Removed, expected));
        QCOMPARE(removed(expected, DRVideoBoxes::pathsForOldPhones()), std::pair(Outcome::NoneFound, expected));
    }

    void knownBytes()
    {
        const QByteArray table = "0000002c6d646961000000246d696e660000001c7374626c000000147374636f0000000000000001";
        const auto bytes = [&](const QByteArray& hexBefore, const QByteArray& chunk) {
            return QByteArray::fromHex(hexBefore + "000000347472616b" + table + chunk + "0000000c6d64617461626364");
        };
        QCOMPARE(removed(bytes("000000466d6f6f760000000a756474616869", "0000004e"), {u"moov/udta"_s}),
                 std::pair(Outcome::Removed, bytes("0000003c6d6f6f76", "00000044")));
    }

    void onePassEqualsOneByOne_data()
    {
        const DRTestTable<QStringList> row("paths");
        row("far apart", {u"moov/udta"_s, u"moov/trak/mdia/minf/stbl/stsd/udta"_s});
        row("inner first", {u"moov/trak/mdia"_s, u"moov/trak"_s, u"free"_s});
        row("outer first", {u"moov/trak"_s, u"moov/trak/mdia"_s, u"moov/udta/free"_s});
        const QString descriptions = u"moov/trak/mdia/minf/stbl/stsd"_s;
        row("descriptions", {descriptions + u"/udta"_s, descriptions});
        row("chunk table", {u"moov/trak/mdia/minf/stbl/stco"_s, u"udta/udta"_s, u"?"_s});
    }

    void onePassEqualsOneByOne()
    {
        QFETCH(QStringList, paths);
        int removals = 0;
        for (quint32 seed = 0; seed < 400; ++seed) {
            std::mt19937 random(seed);
            const Outcome outcome = removed(randomBoxes(random, 0) + randomBoxes(random, 0), paths).first;
            QVERIFY2(outcome == Outcome::Removed || outcome == Outcome::NoneFound, qPrintable(QString::number(seed)));
            removals += outcome == Outcome::Removed ? 1 : 0;
        }
        QVERIFY2(removals > 40, qPrintable(QString::number(removals)));
    }

    void damagedFilmStaysOrIsCleaned()
    {
        const QStringList paths = DRVideoBoxes::pathsForOldPhones();
        const Film film{.userDataBefore = box("udta", "one"), .inWave = box("mp4a", "again")};
        const QByteArray whole = film.bytes();
        QList<QByteArray> damaged;
        for (qsizetype index = 0; index < whole.size(); ++index) {
            damaged.push_back(whole.left(index));
            for (const char value : {'\0', '\x7F', '\xFF'}) {
                damaged.push_back(QByteArray(whole).replace(index, 1, QByteArray(1, value)));
            }
        }
        for (const QByteArray& bytes : damaged) {
            const auto [outcome, cleaned] = removed(bytes, paths);
            QVERIFY(outcome != Outcome::Failed);
            if (outcome == Outcome::Removed) {
                QCOMPARE(removed(cleaned, paths).first, Outcome::NoneFound);
            }
        }
    }

    void whatCannotBeReadStays_data()
    {
        const DRTestTable<QByteArray> row("bytes");
        const QByteArray good = box("moov", box("udta", {}));
        const auto addRow = [&](const char* name, const QByteArray& rest) { row(name, good + rest); };
        const auto table = [](const QByteArray& content) {
            return box("moov", box("trak", box("mdia", box("minf", box("stbl", box("co64", content))))));
        };
        addRow("size below a header", number(quint32{7}) + "free");
        addRow("long size below a header", number(quint32{1}) + "free" + number(quint64{15}));
        addRow("long size that overflows", number(quint32{1}) + "free" + number(~quint64{0}));
        addRow("long size that is cut", number(quint32{1}) + "free" + number(quint32{0}));
        addRow("beyond the file", number(quint32{9}) + "free");
        addRow("beyond its parent", box("moov", box("trak", number(quint32{9}) + "mdia")) + "    ");
        addRow("table without a count", table(QByteArray(7, '\0')));
        addRow("table shorter than its count", table(QByteArray(7, '\0') + '\2' + QByteArray(15, '\0')));
        addRow("fragment without its position", box("moof", box("traf", box("tfhd", number(quint32{1}) + "1234567"))));
    }

    void whatCannotBeReadStays()
    {
        QFETCH(QByteArray, bytes);
        QCOMPARE(removed(bytes, {u"moov/udta"_s}), std::pair(Outcome::NotRead, bytes));
    }

    void countOfDescriptionsFollows()
    {
        const auto film = [](quint32 count, const QByteArray& entries) {
            const QByteArray descriptions = box("stsd", number(quint32{0}) + number(count) + entries);
            return box("moov", box("trak", box("mdia", box("minf", box("stbl", descriptions)))));
        };
        const QByteArray entry = box("vide", "removed");
        const QStringList paths = {u"moov/trak/mdia/minf/stbl/stsd/vide"_s};
        QCOMPARE(removed(film(3, entry + box("soun", {}) + entry), paths).second, film(1, box("soun", {})));
        QCOMPARE(removed(film(1, entry + entry), paths).second, film(0, {}));
    }

    void atomRemovesOnlyWhatIsThere()
    {
        DRMutableAbstractData data(box("moov", box("udta", "one") + box("udta", "two")));
        const auto file = DRMP4Atom::atomWithAbstractData(data);
        const auto atoms = file->allAtomsWithPath(u"moov"_s).front().allAtomsWithPath(u"udta"_s);
        QCOMPARE(atoms.size(), 2U);
        QVERIFY(!file->removeSelfFromMutableData(data));
        QVERIFY(atoms.at(1).removeSelfFromMutableData(data));
        QVERIFY(!atoms.at(1).removeSelfFromMutableData(data));
        QCOMPARE(data.bytes(), box("moov", box("udta", "one")));
    }

    void deepNestingIsHarmless()
    {
        QByteArray inner = box("udta", "in");
        for (int depth = 0; depth < 10'000; ++depth) {
            inner = box("moov", inner);
        }
        QCOMPARE(removed(inner, DRVideoBoxes::pathsForOldPhones()), std::pair(Outcome::NoneFound, inner));
    }

    /// Takes hours when each removal reads or moves the rest of the file.
    void manyBoxesAreRemovedInOnePass()
    {
        constexpr qsizetype kCount = 1'000'001;
        const QByteArray bytes = box("moov", (box("udta", {}) + box("free", {})).repeated(kCount));
        DRMutableAbstractData data(bytes);
        QCOMPARE(DRVideoBoxes::removeBoxes(data, DRVideoBoxes::pathsForOldPhones()), Outcome::Removed);
        QCOMPARE(data.bytes(), box("moov", box("free", {}).repeated(kCount)));
        QCOMPARE(writtenWithout(bytes, DRVideoBoxes::pathsForOldPhones()), std::pair(Outcome::TooMany, bytes));
    }

    void linkIsNotFollowed()
    {
        QCOMPARE(writtenWithout(box("moov", box("udta", {})), {u"moov/udta"_s}).first, Outcome::Removed);
        const QString link = m_folder.filePath(u"link"_s);
        QVERIFY(QFile::link(m_folder.filePath(u"source"_s), link));
        QCOMPARE(DRVideoBoxes::wouldRemove(m_folder.filePath(u"source"_s), {u"moov/udta"_s}), Outcome::Removed);
        QCOMPARE(DRVideoBoxes::wouldRemove(link, {u"moov/udta"_s}), Outcome::Failed);
        const auto target = DRFileDescriptor::open(m_folder.filePath(u"target"_s), O_WRONLY);
        QCOMPARE(DRVideoBoxes::writeWithoutBoxes(link, target, {}), Outcome::Failed);
    }

    void fileThatCannotBeReadHasNotEnded()
    {
        const QByteArray bytes = box("moov", box("udta", {}));
        QCOMPARE(writtenWithout(bytes, {u"moov/udta"_s}).first, Outcome::Removed);
        const auto onlyForWriting = DRFileDescriptor::open(m_folder.filePath(u"source"_s), O_WRONLY);
        DRFileSource source(onlyForWriting);
        QVERIFY(source.length() > 0 && !source.hasFailed());
        QVERIFY(source.view(0, 1).isEmpty() && source.hasFailed());
        QVERIFY(DRFileSource(DRFileDescriptor()).hasFailed());
    }
};

QTEST_GUILESS_MAIN(TestMP4)
#include "TestMP4.moc"
