// The phone's call log: calls are added without changing what stood there, and what was well-formed XML stays so unless we say
// otherwise.

#include "convert/contacts/DRCallLogText.h"
#include "fuzz/DRFuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "platform/core/DRUtf8.h"

#include <QXmlStreamReader>

namespace {

bool isWellFormed(const QByteArray& text)
{
    QXmlStreamReader reader(text);
    while (!reader.atEnd()) {
        reader.readNext();
    }
    return !reader.hasError();
}

/// Texts in which the closing tag may stand without being one.
bool hidesText(const QByteArray& text)
{
    return text.contains("<!") || text.count("<?") > 1;
}

} // namespace

/// The input is a telephone number with its length before it, then the log.
void fuzzOne(QByteArrayView bytes)
{
    DRFuzzInput input(bytes);
    const DRImportedCall call{.address = DRUtf8::decode(input.takeText()), .duration = 61, .isIncoming = true};
    const QByteArray log = input.takeRest().toByteArray();
    static_cast<void>(DRCallLogText::baseFor(stretchedIfShort(log)));
    require(!DRCallLogText::baseFor(std::nullopt).text.isEmpty(), "a missing log is made");

    const DRCallLogText::Base base = DRCallLogText::baseFor(log);
    require(base.firstId >= 1, "calls are numbered from 1");
    require(base.text == log || base.firstId == 1, "a new log begins with the first number");
    require(base.text.isValidUtf8(), "a log is UTF-8");
    const QByteArray text = DRCallLogText::withCalls(base, {call, call});
    const qsizetype added = text.size() - base.text.size();
    const qsizetype place = text.indexOf("<Call><ID>" + QByteArray::number(base.firstId) + "</ID><Number>");
    require(added > 0 && place >= 0, "calls are added");
    require(text.count("<Call><ID>") ==
                base.text.count("<Call><ID>") + 2 + 2 * DRUtf8::encode(call.address).count("<Call><ID>"),
            "each call is added once");
    if (isWellFormed(base.text) && !hidesText(base.text) && !DRCallLogText::breaksTheLog(call)) {
        require(isWellFormed(text), "a well-formed log stays so");
    }
}
