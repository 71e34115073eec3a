// Property lists, binary and XML: what was read can be written in both forms and read back as the same.

#include "fuzz/FuzzTarget.h"
#include "platform/core/DRPropertyList.h"

namespace {

/// XML of what was read back; empty when it could not be.
QByteArray xmlAfterReading(const QByteArray& bytes)
{
    const auto dictionary = DRPropertyList::dictionaryFromData(bytes);
    return dictionary ? DRPropertyList::xmlFromDictionary(*dictionary) : QByteArray();
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    static_cast<void>(DRPropertyList::dictionaryFromData("<plist><dict>" + stretchedIfShort(bytes)));
    const auto dictionary = DRPropertyList::dictionaryFromData(bytes.toByteArray());
    if (!dictionary) {
        return;
    }
    // Writing once makes the values such as both forms can hold: whole seconds, no control characters.
    const QByteArray xml = xmlAfterReading(DRPropertyList::xmlFromDictionary(*dictionary));
    require(!xml.isEmpty(), "a written list can be read");
    require(xmlAfterReading(xml) == xml, "a list in XML stays what it is");
    const auto settled = DRPropertyList::dictionaryFromData(xml);
    require(xmlAfterReading(DRPropertyList::binaryFromDictionary(*settled)) == xml, "a binary list holds the same");
}
