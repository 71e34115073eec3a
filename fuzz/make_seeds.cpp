// Writes the inputs that fuzzing starts from: fuzz_make_seeds FOLDER. They lie in FOLDER/TARGET.

#include "app/sample/DRSampleBoxes.h"
#include "app/sample/DRSampleDescriptions.h"
#include "app/sample/DRSampleManifest.h"
#include "app/sample/DRSampleMovie.h"
#include "app/sample/DRSampleRandom.h"
#include "fuzz/DRFuzzBackup.h"
#include "fuzz/FuzzTarget.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRTarHeader.h"
#include "platform/core/DRPropertyList.h"
#include "tests/support/DRMusicLibraryText.h"

#include <QDir>
#include <QFile>
#include <QVariantMap>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Seeds = QByteArrayList;

/// Where a target's seeds come from.
struct Maker {
    const char* target;
    Seeds (*make)();
};

Seeds manifestSeeds()
{
    DRSampleManifestRecord folder{
        .domain = u"MediaDomain"_s, .path = u"Library"_s, .mode = DRSampleManifestRecord::kFolder};
    DRSampleManifestRecord file{.domain = u"HomeDomain"_s,
                                .path = u"Library/Ümlaut/notes.sqlite"_s,
                                .dataHash = QByteArray(20, 'h'),
                                .mode = DRSampleManifestRecord::kFile,
                                .sizeBytes = 4096,
                                .properties = {{"name", "value"}, {"", QByteArray(1, '\0')}}};
    const QByteArray records = encodeManifestRecord(folder) + encodeManifestRecord(file);
    return {sampleManifestHeader(), sampleManifestHeader() + records, sampleManifestHeader() + records + records};
}

/// A text or file with its length before it, as targets of several parts expect.
template <typename Length> QByteArray withLength(const QByteArray& bytes)
{
    const auto length = static_cast<Length>(bytes.size());
    return QByteArray(reinterpret_cast<const char*>(&length), sizeof length) + bytes;
}

Seeds noteTextSeeds()
{
    return {"plain text", "<div>Milk &amp; bread</div><div>2&nbsp;kg <b>apples</b><br></div>",
            "&#233;&#xE9;&lt;&gt;&quot;&apos;&#x1F600; &unknown; & <", "<DIV><BR/>\n<div></div>"};
}

Seeds vCardSeeds()
{
    const QByteArray card = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Li;Ana\r\nTEL;CELL:+4917\r\nEND:VCARD\r\n";
    return {card, "\xEF\xBB\xBF" + card + card, card.first(card.size() - 6),
            "junk" + card + "BEGIN:VCARD BEGIN:VCARD END:VCARD"};
}

/// A dictionary of every type of value.
QVariantMap dictionary()
{
    return {{u"text"_s, u"Ümlaut & <b>"_s},
            {u"yes"_s, true},
            {u"number"_s, -42},
            {u"huge"_s, std::numeric_limits<quint64>::max()},
            {u"real"_s, 2.5},
            {u"data"_s, QByteArray("\x00\xFF", 2)},
            {u"date"_s, QDateTime(QDate(2014, 5, 6), QTime(7, 8, 9), Qt::UTC)},
            {u"list"_s, QVariantList{1, u"two"_s, QVariantMap{{u"three"_s, 3.0}}}}};
}

Seeds propertyListSeeds()
{
    return {DRPropertyList::xmlFromDictionary(dictionary()), DRPropertyList::binaryFromDictionary(dictionary()),
            DRPropertyList::binaryFromDictionary({})};
}

Seeds backupInfoSeeds()
{
    const QByteArray info = sampleInfoPropertyList(fuzzSettings(), u"0123456789abcdef0123456789abcdef01234567"_s);
    return {withLength<quint16>(info) + sampleManifestPropertyList(fuzzSettings()), withLength<quint16>(info),
            withLength<quint16>(DRPropertyList::binaryFromDictionary(dictionary()))};
}

Seeds musicLibrarySeeds()
{
    using namespace DRMusicLibraryText;
    const QByteArray tracks =
        track(1, "One &amp; only", "file://localhost/music/%C3%BCber.mp3", {{"Artist", string("Ana")}}) +
        track(2, "Film", "file:///music/film.m4v", {{"Has Video", "<true/>"}}) + track(3, "Cloud", {});
    return {
        library(tracks, playlist("Roadtrip", "00AB12", {1, 2, 1}) + playlist("All", "1", {}, {{"Master", "<true/>"}})),
        library(track(1, "A", "http://host/a.mp3"), {}), kHead + "<dict/></plist>"};
}

QByteArray tarEntry(const QByteArray& path, const QByteArray& content)
{
    const auto size = static_cast<quint64>(content.size());
    return tarHeader(path, size, 1) + content + QByteArray(static_cast<qsizetype>(tarPadding(size)), '\0');
}

/// A header of another type, such as '2' for a symbolic link, with a right sum.
QByteArray tarEntryOfType(char type, const QByteArray& path, const QByteArray& linkTarget)
{
    QByteArray header = tarHeader(path, 0, 1);
    constexpr qsizetype kChecksum = 148;
    constexpr qsizetype kType = 156;
    header[kType] = type;
    header.replace(kType + 1, linkTarget.size(), linkTarget);
    header.replace(kChecksum, 8, "        ");
    unsigned int sum = 0;
    for (const char byte : header) {
        sum += static_cast<unsigned char>(byte);
    }
    return header.replace(kChecksum, 7, QByteArray::number(sum, 8).rightJustified(6, '0') + '\0');
}

/// The first byte: 0 for a packet, 1 and 2 for an archive that the target puts into a packet.
Seeds packetSeeds()
{
    const QByteArray archive = tarEntry("apps/app/_manifest", "1\napp\n") +
                               tarEntry("apps/app/db/a", QByteArray(600, 'a')) + tarEntry("apps/app/f/\xC3\xA4", {});
    const QByteArray hostile = tarEntry("../../escaped", "x") + tarEntryOfType('2', "apps/link", "/tmp") +
                               tarEntry("apps/link/below", "x") + tarEntryOfType('5', "apps/folder/", {}) +
                               tarEntryOfType('1', "apps/hard", "apps/app/_manifest") +
                               tarEntry("expandBackup.tar", "x");
    const QByteArray end(kTarEndBytes, '\0');
    const QByteArray packet = "ANDROID BACKUP\n1\n1\nnone\n" + zlibDeflate(archive + end).value_or(QByteArray());
    return {'\0' + packet, '\1' + archive, '\2' + archive + end, '\2' + hostile + end, '\1' + hostile};
}

Seeds packetHeaderSeeds()
{
    const QByteArray payload = zlibDeflate("content").value_or(QByteArray());
    return {"ANDROID BACKUP\n1\n1\nnone\n" + payload, "ANDROID BACKUP\n1\n0\nnone\ncontent",
            "ANDROID BACKUP\n1\n1\nAES-256\nsalt\n", "ANDROID BACKUP\r\n1\n\nnone\n"};
}

/// A sound track as QuickTime writes it, with the second "mp4a" that is taken out.
QByteArray soundTrack()
{
    using namespace DRSampleBoxes;
    const QByteArray entry =
        box("mp4a", zeros(8) + u16(1) + zeros(34) + box("wave", box("mp4a", zeros(4)) + box("esds", zeros(4))));
    const QByteArray table = box("stsd", zeros(4) + u32(1) + entry) +
                             box("stco", zeros(4) + u32(2) + u32(40) + u32(900)) +
                             box("co64", zeros(4) + u32(1) + zeros(4) + u32(500));
    return box("trak", box("mdia", box("minf", box("stbl", table))));
}

Seeds mp4Seeds()
{
    using namespace DRSampleBoxes;
    Seeds seeds{box("ftyp", "qt  ") + box("moov", box("udta", box("name", "a")) + soundTrack() + box("udta", {})) +
                    box("mdat", "data"),
                box("moof", box("traf", box("tfhd", zeros(3) + "\1" + zeros(4) + zeros(4) + u32(24)))) +
                    box("moov", box("udta", {})),
                u32(1) + "moov" + zeros(4) + u32(24) + box("udta", {}) + zeros(0) + u32(0) + "mdat" + "data"};
    for (const auto order : {DRSampleMovie::Order::DescriptionFirst, DRSampleMovie::Order::PicturesFirst}) {
        seeds.append(encodeSampleMovie({.width = 16,
                                        .height = 16,
                                        .pictures = 1,
                                        .created = fuzzSettings().moment,
                                        .title = u"Film"_s,
                                        .order = order}));
    }
    return seeds;
}

Seeds callLogSeeds()
{
    const QByteArray log = "<?xml version=\"1.0\" encoding=\"utf-8\"?><CallLogList><Call><ID>7</ID><Number>123</Number>"
                           "</Call><call><id> 12 </id></call></CallLogList>";
    return {withLength<quint8>("+49 17") + log, withLength<quint8>("]]>&<") + log,
            withLength<quint8>("") + "</CALLLOGLIST>",
            withLength<quint8>("1") + "<!-- <id>99999999999999999999</id> --></callloglist>"};
}

Seeds chromeSeeds()
{
    const QByteArray texts = withLength<quint8>("News") + withLength<quint8>("http://a.example/?q=1") +
                             withLength<quint8>("Ümlaut") + withLength<quint8>("http://b.example/") +
                             withLength<quint8>("Folder");
    const QByteArray file = R"({"checksum": "0f", "roots": {"synced": {"children": [ {"name": "old", "type": "url"} ],
"name": "Mobile"}}, "version": 1})";
    const QByteArray quoted = withLength<quint8>("a \"quote\"") + withLength<quint8>("b\\u00e9") +
                              withLength<quint8>("c\\") + withLength<quint8>("d]}") + withLength<quint8>("[{e");
    return {texts + file, texts, quoted + file, texts + R"({"synced": {"children": []}})"};
}

Seeds triggerSeeds()
{
    QFile script(u":/migrate/messages/message_triggers.sql"_s);
    require(script.open(QIODevice::ReadOnly), "the triggers of the template can be read");
    Seeds seeds{"CREATE TRIGGER t AFTER UPDATE OF a, [b] ON sms FOR EACH ROW WHEN 'x' BEGIN SELECT 1e5; END;"};
    for (const QByteArray& text : script.readAll().replace("CREATE", "\1CREATE").split('\1')) {
        seeds.append(text);
    }
    return seeds;
}

/// Edits of databases: none, and some at random but always the same. What they do depends on the database, so that the same do
/// for all.
Seeds editSeeds()
{
    constexpr int kSeeds = 32;
    constexpr int kLongest = 96;
    constexpr int kByteValues = 256;
    DRSampleRandom random(1);
    Seeds seeds{QByteArray()};
    for (int i = 0; i < kSeeds; ++i) {
        QByteArray edits;
        for (int count = random.below(kLongest); count >= 0; --count) {
            edits += static_cast<char>(random.below(kByteValues));
        }
        seeds.append(edits);
    }
    return seeds;
}

constexpr std::array kMakers{
    Maker{"backup_info", backupInfoSeeds},
    Maker{"bookmarks", editSeeds},
    Maker{"calendar", editSeeds},
    Maker{"call_log", callLogSeeds},
    Maker{"chrome_bookmarks", chromeSeeds},
    Maker{"contacts", editSeeds},
    Maker{"manifest", manifestSeeds},
    Maker{"message_triggers", editSeeds},
    Maker{"messages", editSeeds},
    Maker{"mp4", mp4Seeds},
    Maker{"music_library", musicLibrarySeeds},
    Maker{"note_text", noteTextSeeds},
    Maker{"notes", editSeeds},
    Maker{"packet", packetSeeds},
    Maker{"packet_header", packetHeaderSeeds},
    Maker{"photos", editSeeds},
    Maker{"property_list", propertyListSeeds},
    Maker{"property_list_stream", musicLibrarySeeds},
    Maker{"trigger_text", triggerSeeds},
    Maker{"vcard_file", vCardSeeds},
    Maker{"voice_memos", editSeeds},
};

void writeSeed(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "a seed can be written");
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::puts("Usage: fuzz_make_seeds FOLDER");
        return EXIT_FAILURE;
    }
    const QDir root(QString::fromLocal8Bit(argv[1]));
    for (const Maker& maker : kMakers) {
        const QString folder = root.filePath(QString::fromLatin1(maker.target));
        require(QDir().mkpath(folder), "a folder for seeds can be made");
        int number = 0;
        for (const QByteArray& seed : maker.make()) {
            writeSeed(folder + u"/seed%1"_s.arg(++number, 3, 10, QChar(u'0')), seed);
        }
    }
    return EXIT_SUCCESS;
}
