#include "convert/media/DRMP4VideoCleaner.h"
#include "tests/convert/media/DRMediaFixture.h"

#include <QDateTime>
#include <QtEndian>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray box(const QByteArray& type, const QByteArray& content)
{
    QByteArray size(4, '\0');
    qToBigEndian(static_cast<quint32>(content.size() + 8), size.data());
    return size + type + content;
}

/// A small film, with the user data that old phones stumble over or without.
QByteArray film(const QByteArray& userData)
{
    return box("ftyp", "qt  ") + box("mdat", "pictures") +
           box("moov", box("mvhd", "header") + userData + box("trak", box("mdia", {})));
}

const QByteArray kCleanFilm = film({});
const QByteArray kFilm = film(box("udta", "where it was made"));
const QDateTime kTime(QDate(2013, 7, 8), QTime(9, 10, 11), Qt::UTC);

} // namespace

class TestMP4VideoCleaner : public QObject {
    Q_OBJECT

private:
    /// A record of a file that holds these bytes.
    [[nodiscard]] DRDCFilePointer record(const QString& path, const QByteArray& bytes, quint32 kind) const
    {
        const QString place = m_test.root.filePath(path);
        QFile file(place);
        if (!QDir().mkpath(QFileInfo(place).path()) || !file.open(QIODevice::WriteOnly) ||
            file.write(bytes) != bytes.size() || !file.flush() ||
            !file.setFileTime(kTime, QFileDevice::FileModificationTime)) {
            qFatal("cannot set up a file");
        }
        auto made = DRDCFile::fileWithSourcePath(place);
        made->setFileKind(kind);
        return made;
    }

    [[nodiscard]] QString inflateFolder() const { return m_test.services.folders.temporary + u"/TarvexTransfer"_s; }

    DRTestServices m_test;
    DRMP4VideoCleaner m_cleaner{m_test.services.folders.temporary};

private Q_SLOTS:
    void cleanup() { QDir(m_test.services.folders.temporary).removeRecursively(); }

    void videosAreReplacedInTheirPlace()
    {
        const auto first = record(u"a/video"_s, kFilm, 0x08);
        first->setMetadata(u"IMG_1.MOV"_s, QLatin1StringView(DRDCFile::kTargetFileName));
        const std::vector<DRDCFilePointer> files{
            first,
            record(u"a/photo"_s, kFilm, 0x10),
            record(u"b/video"_s, kFilm + box("free", "other"), 0x20),
            record(u"a/both kinds"_s, kFilm, 0x28),
            record(u"a/clean"_s, kCleanFilm, 0x08),
            DRDCFile::fileWithSourcePath(m_test.root.filePath(u"a/missing"_s)),
            first,
        };
        files.at(5)->setFileKind(0x08);
        const auto [cleaned, dropped] = m_cleaner.cleanEntries(files);
        QCOMPARE(cleaned.size(), files.size());
        QVERIFY(dropped.empty());
        for (const std::size_t kept : {1U, 3U, 4U, 5U}) {
            QCOMPARE(cleaned.at(kept), files.at(kept));
        }
        QCOMPARE(cleaned.at(0)->sourcePath(), inflateFolder() + u"/cleanedVideos/video"_s);
        QCOMPARE(readFile(cleaned.at(0)->sourcePath()), kCleanFilm);
        QCOMPARE(cleaned.at(0)->filesize(), static_cast<quint64>(kCleanFilm.size()));
        QCOMPARE(cleaned.at(0)->fileKind(), 0x08U);
        QCOMPARE(cleaned.at(0)->displayName(), u"IMG_1.MOV"_s);
        QCOMPARE(QFileInfo(cleaned.at(0)->sourcePath()).lastModified().toUTC(), kTime);
        QCOMPARE(readFile(cleaned.at(2)->sourcePath()), kCleanFilm + box("free", "other"));
        QCOMPARE(cleaned.at(2)->fileKind(), 0x20U);
        QCOMPARE(cleaned.at(2)->displayName(), u"video"_s);
        QCOMPARE(cleaned.at(6)->sourcePath(), cleaned.at(0)->sourcePath());
        QCOMPARE(readFile(first->sourcePath()), kFilm);
    }

    void brokenVideoIsKept()
    {
        for (qsizetype size = 0; size < kFilm.size(); ++size) {
            for (const QByteArray& bytes :
                 {kFilm.left(size), kFilm.left(size) + '\xFF' + kFilm.mid(size + 1), kFilm.left(size) + kFilm}) {
                const auto file = record(u"broken"_s, bytes, 0x08);
                const auto [cleaned, dropped] = m_cleaner.cleanEntries({file});
                QVERIFY(dropped.empty());
                const QByteArray result = readFile(cleaned.at(0)->sourcePath());
                QVERIFY(cleaned.at(0) == file ? result == bytes : !result.contains("udta"));
            }
        }
    }

    void videoThatCannotBeWrittenIsDropped()
    {
        const auto video = record(u"video"_s, kFilm, 0x08);
        const auto photo = record(u"photo"_s, "photo", 0x10);
        QVERIFY(QDir().mkpath(inflateFolder()));
        QFile obstacle(inflateFolder() + u"/cleanedVideos"_s);
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        const auto [cleaned, dropped] = m_cleaner.cleanEntries({video, photo});
        QCOMPARE(cleaned, std::vector{photo});
        QCOMPARE(dropped, std::vector{video});
    }
};

QTEST_GUILESS_MAIN(TestMP4VideoCleaner)
#include "TestMP4VideoCleaner.moc"
