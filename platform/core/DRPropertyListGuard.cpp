#include "platform/core/DRPropertyListGuard.h"

#include <QByteArrayView>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

constexpr qint64 kMaximumNodes = 2'000'000;
constexpr qint64 kMaximumExpandedBytes = qint64{128} * 1024 * 1024;

// ---- binary form: "bplist00", objects, offset table, trailer ----

constexpr qint64 kTrailerBytes = 32;
constexpr QByteArrayView kBinaryMagic("bplist00");

/// What the last 32 bytes say: where the offsets of the objects stand and how wide the numbers are.
struct Trailer {
    qint64 offsetBytes;    ///< width of one offset in the table
    qint64 referenceBytes; ///< width of one object number inside a container
    qint64 objectCount;
    qint64 rootObject;
    qint64 tableOffset;
};

/// The kinds of object that matter here: the upper half of an object's first byte.
constexpr int kFirstCountedKind = 0x4;
constexpr int kAsciiText = 0x5;
constexpr int kUtf16Text = 0x6;
constexpr int kUid = 0x8;
constexpr int kFirstContainer = 0xA;
constexpr int kDictionary = 0xD;

/// An object's payload: references to further objects, or plain bytes.
struct Object {
    int kind;
    qint64 payloadOffset;
    qint64 referenceCount;
    qint64 byteCount;
};

/// A container whose references are being followed.
struct OpenContainer {
    qint64 nextReferenceOffset;
    qint64 referencesLeft;
    qint64 keysLeft; ///< the references of a dictionary lead to its keys first, then to its values
};

class BinaryWalk {
public:
    explicit BinaryWalk(QByteArrayView bytes) : m_bytes(bytes) {}

    bool staysWithinLimits() { return readTrailer() && enter(m_trailer.rootObject) && followReferences(); }

private:
    bool followReferences()
    {
        while (!m_open.empty()) {
            OpenContainer& container = m_open.back();
            if (container.referencesLeft == 0) {
                m_open.pop_back();
                continue;
            }
            const auto index = number(container.nextReferenceOffset, m_trailer.referenceBytes);
            const bool isKey = container.keysLeft > 0;
            container.nextReferenceOffset += m_trailer.referenceBytes;
            container.referencesLeft -= 1;
            container.keysLeft -= isKey ? 1 : 0;
            if (!index || (isKey && !isUsableKey(*index)) || !enter(*index)) {
                return false;
            }
        }
        return true;
    }

    /// Counts the object against the limits and, when it is a container, opens it.
    bool enter(qint64 index)
    {
        const auto object = objectAt(index);
        if (!object || ++m_nodes > kMaximumNodes) {
            return false;
        }
        m_expandedBytes += object->byteCount;
        if (object->referenceCount > 0) {
            const qint64 keys = object->kind == kDictionary ? object->referenceCount / 2 : 0;
            m_open.push_back({object->payloadOffset, object->referenceCount, keys});
        }
        return m_expandedBytes <= kMaximumExpandedBytes &&
               m_open.size() <= static_cast<size_t>(DRPropertyListGuard::kMaximumDepth);
    }

    /// A text without a NUL character: the library takes such a key for a fault of its own and ends the program.
    bool isUsableKey(qint64 index) const
    {
        const auto key = objectAt(index);
        if (!key || (key->kind != kAsciiText && key->kind != kUtf16Text)) {
            return false;
        }
        const int unitBytes = key->kind == kUtf16Text ? 2 : 1;
        for (qint64 offset = 0; offset < key->byteCount; offset += unitBytes) {
            if (number(key->payloadOffset + offset, unitBytes) == 0) {
                return false;
            }
        }
        return true;
    }

    bool readTrailer()
    {
        const qint64 start = m_bytes.size() - kTrailerBytes;
        if (start < kBinaryMagic.size()) {
            return false;
        }
        const auto count = number(start + 8, 8);
        const auto root = number(start + 16, 8);
        const auto table = number(start + 24, 8);
        if (!count || !root || !table) {
            return false;
        }
        m_trailer = {number(start + 6, 1).value_or(0), number(start + 7, 1).value_or(0), *count, *root, *table};
        return isWidth(m_trailer.offsetBytes) && isWidth(m_trailer.referenceBytes) && m_trailer.tableOffset <= start &&
               m_trailer.objectCount <= (start - m_trailer.tableOffset) / m_trailer.offsetBytes;
    }

    std::optional<Object> objectAt(qint64 index) const
    {
        if (index >= m_trailer.objectCount) {
            return std::nullopt;
        }
        const auto offset = number(m_trailer.tableOffset + index * m_trailer.offsetBytes, m_trailer.offsetBytes);
        if (!offset || *offset < kBinaryMagic.size() || *offset >= m_trailer.tableOffset) {
            return std::nullopt;
        }
        const int marker = byteAt(*offset);
        const int kind = marker >> 4;
        if (kind < kFirstCountedKind || kind == kUid) {
            return Object{kind, *offset + 1, 0, 0}; // of a size that the marker itself gives
        }
        return countedObject(*offset, kind, marker & 0xF);
    }

    /// Data, texts and containers: a count in the marker, or 0xF and the count as an integer object of its own.
    std::optional<Object> countedObject(qint64 offset, int kind, int shortCount) const
    {
        constexpr int kLongCount = 0xF;
        qint64 count = shortCount;
        qint64 payload = offset + 1;
        if (shortCount == kLongCount) {
            const qint64 width = qint64{1} << (payload < m_bytes.size() ? byteAt(payload) & 0x3 : 0);
            const auto longCount = number(payload + 1, width);
            if (!longCount) {
                return std::nullopt;
            }
            count = *longCount;
            payload += 1 + width;
        }
        const bool isContainer = kind >= kFirstContainer;
        const qint64 entries = kind == kDictionary ? 2 : 1; // a key and a value
        const qint64 entryBytes = isContainer ? m_trailer.referenceBytes : (kind == kUtf16Text ? 2 : 1);
        if (payload > m_trailer.tableOffset || count > (m_trailer.tableOffset - payload) / (entries * entryBytes)) {
            return std::nullopt;
        }
        return isContainer ? Object{kind, payload, count * entries, 0} : Object{kind, payload, 0, count * entryBytes};
    }

    int byteAt(qint64 offset) const { return static_cast<unsigned char>(m_bytes[offset]); }

    /// An unsigned big-endian number; none outside the bytes or above the signed range.
    std::optional<qint64> number(qint64 offset, qint64 width) const
    {
        if (offset < 0 || width > m_bytes.size() || offset > m_bytes.size() - width) {
            return std::nullopt;
        }
        quint64 value = 0;
        for (qint64 i = 0; i < width; ++i) {
            value = (value << 8) | static_cast<unsigned>(byteAt(offset + i));
        }
        return static_cast<qint64>(value) < 0 ? std::nullopt : std::optional(static_cast<qint64>(value));
    }

    static bool isWidth(qint64 bytes) { return bytes >= 1 && bytes <= 8; }

    QByteArrayView m_bytes;
    Trailer m_trailer{};
    std::vector<OpenContainer> m_open;
    qint64 m_nodes = 0;
    qint64 m_expandedBytes = 0;
};

// ---- XML form ----

/// Steps from one piece of markup to the next. What parsers could read in different ways is refused, so that no nesting
/// hides behind it.
class XmlScan {
public:
    explicit XmlScan(QByteArrayView bytes) : m_bytes(bytes) {}

    bool staysWithinLimits()
    {
        while ((m_position = m_bytes.indexOf('<', m_position)) >= 0) {
            if (!passMarkup() || m_depth > DRPropertyListGuard::kMaximumDepth) {
                return false;
            }
        }
        return true;
    }

private:
    bool passMarkup()
    {
        if (startsWith("<!--")) {
            return passTo("<!--", "-->");
        }
        if (startsWith("<![CDATA[")) {
            return passTo("<![CDATA[", "]]>");
        }
        return passTag();
    }

    bool passTag()
    {
        const qsizetype end = m_bytes.indexOf('>', m_position + 1);
        if (end < 0) {
            m_position = m_bytes.size();
            return true; // cut off: the parser says so itself
        }
        const QByteArrayView tag = m_bytes.sliced(m_position + 1, end - m_position - 1);
        if (tag.contains('<') || tag.contains('[') || tag.count('"') % 2 != 0 || tag.count('\'') % 2 != 0) {
            return false;
        }
        if (!isAllowedDeclaration(tag)) {
            return false;
        }
        countNesting(tag);
        m_position = end + 1;
        return true;
    }

    /// One "<?xml ...?>" before everything else and a document type without definitions of its own.
    bool isAllowedDeclaration(QByteArrayView tag)
    {
        const bool isFirst = !m_hasSeenTag;
        m_hasSeenTag = true;
        if (tag.startsWith('?')) {
            return isFirst && tag.startsWith(QByteArrayView("?xml")) && tag.endsWith('?');
        }
        return !tag.startsWith('!') || tag.startsWith(QByteArrayView("!DOCTYPE"));
    }

    void countNesting(QByteArrayView tag)
    {
        const bool isClosing = tag.startsWith('/');
        const QByteArrayView name = nameOf(isClosing ? tag.sliced(1) : tag);
        if ((name != QByteArrayView("dict") && name != QByteArrayView("array")) || tag.endsWith('/')) {
            return;
        }
        m_depth = isClosing ? std::max(m_depth - 1, 0) : m_depth + 1;
    }

    static QByteArrayView nameOf(QByteArrayView tag)
    {
        qsizetype size = 0;
        while (size < tag.size() && !QByteArrayView(" \t\r\n").contains(tag[size])) {
            ++size;
        }
        return tag.first(size);
    }

    bool startsWith(const char* text) const { return m_bytes.sliced(m_position).startsWith(QByteArrayView(text)); }

    bool passTo(QByteArrayView opening, QByteArrayView closing)
    {
        const qsizetype end = m_bytes.indexOf(closing, m_position + opening.size());
        m_position = end < 0 ? m_bytes.size() : end + closing.size();
        return true;
    }

    QByteArrayView m_bytes;
    qsizetype m_position = 0;
    int m_depth = 0;
    bool m_hasSeenTag = false;
};

} // namespace

bool DRPropertyListGuard::isHarmlessBinary(const QByteArray& bytes)
{
    return bytes.startsWith(kBinaryMagic) && BinaryWalk(bytes).staysWithinLimits();
}

bool DRPropertyListGuard::isHarmlessXml(const QByteArray& bytes)
{
    return !bytes.contains('\0') && XmlScan(bytes).staysWithinLimits();
}
