#include "convert/contacts/DRCallLogText.h"

#include "platform/core/DRUtf8.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kEmptyLog("<?xml version=\"1.0\" encoding=\"utf-8\"?><CallLogList></CallLogList>");
constexpr QByteArrayView kClosingTag("</callloglist>");
constexpr auto kNoNumber = "-2"_L1;

char lowered(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Where a tag, given in lower case, stands from `from` on, in any letter case; -1 when it does not. Only ASCII letters
/// have a case here, so that every position is one of the text itself.
qsizetype findTag(QByteArrayView text, QByteArrayView tag, qsizetype from)
{
    const auto* const found = std::search(text.begin() + from, text.end(), tag.begin(), tag.end(),
                                          [](char one, char other) { return lowered(one) == other; });
    return found == text.end() ? -1 : found - text.begin();
}

/// The whole number at the beginning of the text, after blanks; 0 when there is none. Saturates.
qint64 leadingInteger(QByteArrayView text)
{
    constexpr qsizetype kLongest = 24; // more digits than any number has, so that no long text is copied
    const QByteArray start = text.first(std::min(text.size(), kLongest)).trimmed().toByteArray();
    const qsizetype sign = start.startsWith('-') || start.startsWith('+') ? 1 : 0;
    const auto* const end = std::find_if(start.begin() + sign, start.end(), [](char c) { return c < '0' || c > '9'; });
    bool isNumber = false;
    const QByteArray digits(start.constData(), end - start.begin());
    const qint64 value = digits.toLongLong(&isNumber);
    if (isNumber || digits.size() == sign) {
        return value;
    }
    return start.startsWith('-') ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

/// The highest number between "<id>" and the next "</id>"; 0 when there is none.
qint64 highestId(QByteArrayView log)
{
    static constexpr QByteArrayView kOpening("<id>");
    static constexpr QByteArrayView kClosing("</id>");
    qint64 highest = 0;
    qsizetype closing = -1;
    for (qsizetype opening = findTag(log, kOpening, 0); opening >= 0; opening = findTag(log, kOpening, opening + 1)) {
        const qsizetype start = opening + kOpening.size();
        if (closing < start) {
            closing = findTag(log, kClosing, start);
        }
        if (closing < 0) {
            break;
        }
        highest = std::max(highest, leadingInteger(log.sliced(start, closing - start)));
    }
    return highest;
}

bool holdsCalls(QByteArrayView log)
{
    return findTag(log, "<call>", 0) >= 0;
}

/// Why the phone's log cannot be added to; null when it can.
QString reasonAgainst(const QByteArray& log, qint64 highest)
{
    if (!log.isValidUtf8()) {
        return u"it is not readable text"_s;
    }
    if (findTag(log, kClosingTag, 0) <= 0) {
        return u"it is cut off"_s;
    }
    return highest > 1 ? QString() : u"its calls are numbered 0 or 1 only"_s;
}

/// Whole seconds, truncated toward zero, as milliseconds.
qint64 wholeSecondsInMilliseconds(const QDateTime& date)
{
    constexpr qint64 kMillisecondsPerSecond = 1000;
    return date.toMSecsSinceEpoch() / kMillisecondsPerSecond * kMillisecondsPerSecond;
}

QString numberOf(const DRImportedCall& call)
{
    return call.address.isEmpty() ? QString(kNoNumber) : call.address;
}

QByteArray element(const DRImportedCall& call, quint64 id)
{
    constexpr int kIncoming = 1;
    constexpr int kOutgoing = 2;
    return "<Call><ID>" + QByteArray::number(static_cast<qint64>(id)) + "</ID><Number>" +
           DRUtf8::encode(numberOf(call)) + "</Number><Date>" +
           QByteArray::number(wholeSecondsInMilliseconds(call.date)) + "</Date><Duration>" +
           QByteArray::number(call.duration) + "</Duration><Type>" +
           QByteArray::number(call.isIncoming ? kIncoming : kOutgoing) + "</Type><NumberType>0</NumberType></Call>";
}

} // namespace

DRCallLogText::Base DRCallLogText::baseFor(const std::optional<QByteArray>& existing)
{
    const QByteArray log = existing.value_or(QByteArray());
    const qint64 highest = highestId(log);
    const QString reason = reasonAgainst(log, highest);
    if (reason.isNull()) {
        return {.text = log, .firstId = highest, .reasonOfReplacement = {}};
    }
    // A log without calls loses nothing when it is made anew; one that cannot be read may have had some.
    const bool hasLosses = !log.isEmpty() && (holdsCalls(log) || !log.isValidUtf8());
    return {.text = kEmptyLog.toByteArray(), .firstId = 1, .reasonOfReplacement = hasLosses ? reason : QString()};
}

QByteArray DRCallLogText::withCalls(const Base& base, const std::vector<DRImportedCall>& calls)
{
    QByteArray elements;
    auto id = static_cast<quint64>(base.firstId); // wraps around where a signed number would overflow
    for (const DRImportedCall& call : calls) {
        elements += element(call, id++);
    }
    QByteArray text = base.text;
    return text.insert(std::max<qsizetype>(findTag(text, kClosingTag, 0), 0), elements);
}

bool DRCallLogText::breaksTheLog(const DRImportedCall& call)
{
    const auto isMarkup = [](QChar c) {
        return c == u'&' || c == u'<' || (c < u' ' && c != u'\t' && c != u'\n' && c != u'\r') || c >= u'\uFFFE';
    };
    return std::ranges::any_of(call.address, isMarkup) || call.address.contains("]]>"_L1);
}
