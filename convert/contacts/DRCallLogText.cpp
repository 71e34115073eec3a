#include "convert/contacts/DRCallLogText.h"

#include "platform/core/DRUtf8.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kEmptyLog(R"(<?xml version="1.0" encoding="utf-8"?><CallLogList></CallLogList>)");
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

/// The whole number at the beginning of the text, after blanks; 0 when there is none or it is negative. Saturates.
qint64 leadingInteger(QByteArrayView text)
{
    constexpr qint64 kBase = 10;
    constexpr qint64 kHighest = std::numeric_limits<qint64>::max();
    QByteArrayView rest = text.trimmed();
    if (rest.startsWith('+')) {
        rest = rest.sliced(1);
    }
    qint64 value = 0;
    for (const char c : rest) {
        if (c < '0' || c > '9') {
            break;
        }
        const qint64 digit = c - '0';
        value = value > (kHighest - digit) / kBase ? kHighest : value * kBase + digit;
    }
    return value;
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

/// Whether nothing goes when the log is made anew.
bool isWithoutCalls(QByteArrayView log)
{
    return log.trimmed().isEmpty() || findTag(log, "<callloglist></callloglist>", 0) >= 0;
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

QByteArray element(const DRImportedCall& call, qint64 id)
{
    constexpr int kIncoming = 1;
    constexpr int kOutgoing = 2;
    return "<Call><ID>" + QByteArray::number(id) + "</ID><Number>" + DRUtf8::encode(numberOf(call)) +
           "</Number><Date>" + QByteArray::number(wholeSecondsInMilliseconds(call.date)) + "</Date><Duration>" +
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
    return {
        .text = kEmptyLog.toByteArray(), .firstId = 1, .reasonOfReplacement = isWithoutCalls(log) ? QString() : reason};
}

QByteArray DRCallLogText::withCalls(const Base& base, const std::vector<DRImportedCall>& calls)
{
    QByteArray elements;
    qint64 id = base.firstId;
    for (const DRImportedCall& call : calls) {
        elements += element(call, id);
        id += id < std::numeric_limits<qint64>::max() ? 1 : 0;
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
