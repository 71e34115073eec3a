// The first lines of a packet file: what is accepted is what the phone writes, and the text that tells why a packet is
// refused is there exactly when it is.

#include "fuzz/DRFuzzFolder.h"
#include "fuzz/FuzzTarget.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRPacketProblem.h"

using namespace Qt::StringLiterals;

namespace {

void checkLines(const QByteArray& bytes)
{
    qsizetype offset = 0;
    qsizetype end = 0;
    while (!DRMigrateUtils::lineFromData(bytes, offset, end).isNull()) {
        require(end > offset && end <= bytes.size() && bytes.at(end - 1) == '\n', "a line ends behind its line feed");
        offset = end;
    }
    require(bytes.indexOf('\n', offset) < 0, "every line is found");
}

} // namespace

void fuzzOne(QByteArrayView view)
{
    const DRFuzzFolder folder;
    const QByteArray bytes = view.toByteArray();
    checkLines(bytes);
    const QString packet = folder.write(u"fullbackupdata"_s, bytes);
    const auto header = readPacketHeader(packet);
    require(header == packetHeaderFromBytes(bytes.first(std::min(bytes.size(), kLongestPacketHeader))),
            "a header is read from a file as from bytes");
    require(header || !packetProblem(packet).isEmpty(), "a refused packet has a reason");
    if (!header) {
        return;
    }
    require(header->magic == u"ANDROID BACKUP" && header->version == u"1" && header->encryption != u"AES-256",
            "foreign and encrypted packets are refused");
    require(header->payloadOffset <= bytes.size() && bytes.at(header->payloadOffset - 1) == '\n',
            "the payload begins behind a line feed");
    const auto payload = zlibInflate(bytes.sliced(header->payloadOffset));
    require(!payload || zlibInflate(*zlibDeflate(*payload)) == payload, "what was inflated can be deflated");
}
