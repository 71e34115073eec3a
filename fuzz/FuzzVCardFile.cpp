// The phone's file of contacts: the cards that are found, written out again, are found again, and every one of them is
// in the file byte by byte.

#include "convert/contacts/DRVCardFile.h"
#include "fuzz/DRFuzzFolder.h"
#include "fuzz/FuzzTarget.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kBegin("BEGIN:VCARD");
constexpr QByteArrayView kEnd("END:VCARD");

/// The card at the offset, as it is to be written.
QByteArray cardAt(QByteArrayView file, qint64 offset)
{
    const QByteArrayView rest = file.sliced(offset);
    require(rest.startsWith(kBegin), "a card begins with its marker");
    const qsizetype end = rest.indexOf(kEnd, kBegin.size());
    require(end >= 0, "a card has an end");
    return rest.first(end + kEnd.size()).toByteArray() + '\n';
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    const DRFuzzFolder folder;
    const QByteArray stretched = stretchedIfShort(bytes);
    static_cast<void>(DRVCardFile::read(folder.write(u"stretched.vcf"_s, stretched)));
    const QString path = folder.write(u"full_backup_vcard.vcf"_s, bytes);
    const DRVCardFile::Contents contents = DRVCardFile::read(path);
    require(contentOf(path) == bytes, "reading leaves the file as it is");
    require(contents.isReadable == bytes.isValidUtf8(), "what is UTF-8 can be read");

    QByteArray expected;
    DREntryList entries;
    for (const DRPhoneCard& card : contents.cards) {
        expected += cardAt(bytes, card.offset);
        entries.emplace_back(card);
    }
    require(DRVCardFile::write(path, entries, [](const DRContactCard&) { return QByteArray(); }),
            "cards can be written");
    require(contentOf(path) == expected, "cards are written as they stood");
    const DRVCardFile::Contents again = DRVCardFile::read(path);
    require(again.cards.size() == contents.cards.size() && !again.isDamaged, "written cards are found again");
}
