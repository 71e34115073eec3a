#include "convert/bookmarks/DRChromeBookmarksText.h"

#include "platform/core/DRClock.h"

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <vector>

namespace {

using Node = DRBookmarkTree::Node;

constexpr qint64 kFirstNodeId = 10000;
constexpr const char* kSeparator = ",\n";

/// Chrome itself counts microseconds since 1601; this unit is kept.
QByteArray dateFrom(const DRClock& clock)
{
    constexpr double kTicksPerSecond = 10000000.0;
    const double seconds = static_cast<double>(clock.now().toMSecsSinceEpoch()) / 1000.0;
    return QByteArray::number(static_cast<qint64>(seconds * kTicksPerSecond));
}

char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The position of a lower-case ASCII text, in any letter case, from a position on; -1 when there is none.
qsizetype find(QByteArrayView text, QByteArrayView wanted, qsizetype from = 0)
{
    const auto found = std::search(text.begin() + from, text.end(), wanted.begin(), wanted.end(),
                                   [](char one, char other) { return lowerCase(one) == other; });
    return found == text.end() ? -1 : found - text.begin();
}

void appendUnit(QByteArray& text, char32_t unit)
{
    constexpr QByteArrayView kDigits = "0123456789ABCDEF";
    text += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += kDigits[static_cast<qsizetype>((unit >> shift) & 0xFU)];
    }
}

/// Writes nodes one after the other into one text, folders open as long as their contents are being written.
class NodeText {
public:
    NodeText(const DRBookmarkTree& tree, const DRClock& clock) : m_tree(tree), m_clock(clock) {}

    /// The root's folders, then its bookmarks.
    void writeContentsOfRoot()
    {
        openFolder(0);
        for (std::size_t node = 1; node < m_tree.nodes.size(); ++node) {
            while (m_open.back().node != m_tree.nodes[node].parent) {
                closeFolder();
            }
            separate();
            write({"{\n\"children\": [ "});
            openFolder(node);
        }
        while (m_open.size() > 1) {
            closeFolder();
        }
        writeBookmarks();
    }

    /// The last lines of the innermost folder that is open.
    void writeEndOfFolder(const QByteArray& name)
    {
        const QByteArray& date = m_open.back().date;
        write({" ],\n\"date_added\": \"", date, "\",\n\"date_modified\": \"", date, "\",\n\"id\": \"", nextId(),
               "\",\n\"name\": \"", name, "\",\n\"type\": \"folder\"\n}"});
    }

    void write(std::initializer_list<QByteArrayView> parts)
    {
        for (const QByteArrayView part : parts) {
            m_text.append(part);
        }
    }

    [[nodiscard]] const QByteArray& text() const { return m_text; }

private:
    struct OpenFolder {
        std::size_t node;
        QByteArray date;
        bool isEmpty = true; ///< nothing in it has been written yet
    };

    void openFolder(std::size_t node) { m_open.push_back({.node = node, .date = dateFrom(m_clock)}); }

    void closeFolder()
    {
        writeBookmarks();
        const DRIBookmarkFolder* folder = m_tree.nodes[m_open.back().node].folder;
        writeEndOfFolder(DRChromeBookmarksText::escapeBookmarkString(folder->title));
        m_open.pop_back();
    }

    void separate()
    {
        if (!std::exchange(m_open.back().isEmpty, false)) {
            write({kSeparator});
        }
    }

    void writeBookmarks()
    {
        using DRChromeBookmarksText::escapeBookmarkString;
        for (const DRImportedBookmark* bookmark : m_tree.nodes[m_open.back().node].bookmarks) {
            separate();
            write({"{\n\"date_added\": \"", m_open.back().date, "\",\n\"id\": \"", nextId(), "\",\n\"name\": \"",
                   escapeBookmarkString(bookmark->title), "\",\n\"type\": \"url\",\n\"url\": \"",
                   escapeBookmarkString(bookmark->url), "\"\n}"});
        }
    }

    QByteArray nextId() { return QByteArray::number(m_nextId++); }

    const DRBookmarkTree& m_tree;
    const DRClock& m_clock;
    QByteArray m_text;
    qint64 m_nextId = kFirstNodeId;
    std::vector<OpenFolder> m_open;
};

} // namespace

QByteArray DRChromeBookmarksText::escapeBookmarkString(const QString& text)
{
    constexpr char32_t kFirstBeyondBasicPlane = 0x10000;
    QByteArray escaped;
    escaped.reserve(text.size());
    for (const char32_t c : text.toUcs4()) {
        if (c >= ' ' && c <= '~') {
            escaped += static_cast<char>(c);
            continue;
        }
        if (c < kFirstBeyondBasicPlane) {
            appendUnit(escaped, c);
            continue;
        }
        const char32_t v = c - kFirstBeyondBasicPlane;
        appendUnit(escaped, (v >> 10U) + 0xD800U);
        appendUnit(escaped, (v & 0x3FFU) | 0xDC00U);
    }
    return escaped;
}

std::optional<DRChromeBookmarksText::Place> DRChromeBookmarksText::findPositionForIPhoneBookmarks(QByteArrayView text)
{
    const qsizetype synced = find(text, "\"synced\"");
    const qsizetype children = synced < 0 ? -1 : find(text, "\"children\"", synced);
    const qsizetype opening = children < 0 ? -1 : find(text, "[", children);
    if (opening < 0) {
        return std::nullopt;
    }
    qint64 depth = 0;
    bool holdsObject = false;
    for (qsizetype i = opening + 1; i < text.size(); ++i) {
        const char c = text[i];
        if (c == ']' && depth == 0) {
            return Place{.position = i, .notEmpty = holdsObject};
        }
        depth += c == '{' ? 1 : 0;
        depth -= c == '}' ? 1 : 0;
        holdsObject = holdsObject || c == '}';
    }
    return std::nullopt;
}

QByteArray DRChromeBookmarksText::removeChecksum(const QByteArray& text)
{
    const qsizetype begin = find(text, "\"checksum\"");
    const qsizetype comma = begin < 0 ? -1 : text.indexOf(',', begin);
    return comma < 0 ? text : QByteArray(text).remove(begin, comma + 1 - begin);
}

QByteArray DRChromeBookmarksText::folderToString(const DRBookmarkTree& tree,
                                                 const DRClock& clock,
                                                 const QByteArray& existing,
                                                 const std::optional<Place>& place)
{
    if (tree.nodes.empty()) {
        return {};
    }
    NodeText nodes(tree, clock);
    if (place) {
        nodes.write({place->notEmpty ? kSeparator : ""});
        nodes.writeContentsOfRoot();
        return QByteArray(existing).insert(place->position, nodes.text());
    }
    nodes.write({"\"synced\": {\n\"children\": [ "});
    nodes.writeContentsOfRoot();
    nodes.writeEndOfFolder("Mobile Bookmarks");
    return nodes.text();
}

QByteArray DRChromeBookmarksText::fileAround(const QByteArray& syncedNode)
{
    constexpr QByteArrayView kBegin = R"({
"roots": {
"bookmark_bar": {
"children": [   ],
"date_added": "0",
"date_modified": "0",
"id": "1",
"name": "Desktop Bookmarks",
"type": "folder"
},
"other": {
"children": [   ],
"date_added": "0",
"date_modified": "0",
"id": "2",
"name": "Other Bookmarks",
"type": "folder"
},
)";
    constexpr QByteArrayView kEnd = R"(
},
"version": 1
}
)";
    return kBegin.toByteArray() + syncedNode + kEnd.toByteArray();
}
