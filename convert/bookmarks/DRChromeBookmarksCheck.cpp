#include "convert/bookmarks/DRChromeBookmarksCheck.h"

#include "convert/bookmarks/DRBookmarkTree.h"

#include <QJsonDocument>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMostNamed = 5;
constexpr qsizetype kLongestName = 40;

/// Titles and addresses that hold a quotation mark or backslash.
struct HarmfulTexts {
    QStringList names;
    bool breakTheFile = false; ///< also for sure, by an escape that JSON does not have; Qt's reader lets that pass
};

/// Whether a backslash stands before something that it cannot escape.
bool hasForeignEscape(QStringView text)
{
    constexpr qsizetype kUnitDigits = 4;
    for (qsizetype i = text.indexOf(u'\\'); i >= 0; i = text.indexOf(u'\\', i + 2)) {
        const QStringView escaped = text.mid(i + 1, 1);
        if (!escaped.isEmpty() && !u"\"\\/bfnrtu"_s.contains(escaped)) {
            return true;
        }
        const QStringView digits = text.mid(i + 2, kUnitDigits);
        if (escaped == u"u" && (digits.size() < kUnitDigits || !std::ranges::all_of(digits, [](QChar c) {
                                    return u"0123456789abcdefABCDEF"_s.contains(c);
                                }))) {
            return true;
        }
    }
    return false;
}

void examine(const QString& text, const QString& name, HarmfulTexts& harmful)
{
    if (!text.contains(u'"') && !text.contains(u'\\')) {
        return;
    }
    const QString shown = u"“%1”"_s.arg(name.simplified().left(kLongestName));
    if (harmful.names.isEmpty() || harmful.names.last() != shown) {
        harmful.names.append(shown);
    }
    harmful.breakTheFile = harmful.breakTheFile || hasForeignEscape(text);
}

HarmfulTexts harmfulTextsIn(const DRBookmarkTree& tree)
{
    HarmfulTexts harmful;
    for (const DRBookmarkTree::Node& node : tree.nodes) {
        if (&node != &tree.nodes.front()) { // the root's own title is not written
            examine(node.folder->title, node.folder->title, harmful);
        }
        for (const DRImportedBookmark* bookmark : node.bookmarks) {
            const QString& name = bookmark->title.isEmpty() ? bookmark->url : bookmark->title;
            examine(bookmark->title, name, harmful);
            examine(bookmark->url, name, harmful);
        }
    }
    return harmful;
}

QString listOf(const QStringList& names)
{
    const QString named = names.mid(0, kMostNamed).join(u", "_s);
    const qsizetype further = names.size() - kMostNamed;
    return further > 0 ? u"%1 and %2 more"_s.arg(named).arg(further) : named;
}

QJsonParseError::ParseError errorIn(const QByteArray& text)
{
    QJsonParseError result{};
    static_cast<void>(QJsonDocument::fromJson(text, &result));
    return result.error;
}

QString reasonOf(QJsonParseError::ParseError error, const HarmfulTexts& harmful)
{
    if (!harmful.names.isEmpty()) {
        return u"a quotation mark or backslash stands in %1"_s.arg(listOf(harmful.names));
    }
    return error == QJsonParseError::DeepNesting ? u"too many folders lie in one another"_s
                                                 : u"the new ones do not fit into its file on the phone"_s;
}

} // namespace

std::optional<DRChromeBookmarksCheck::Finding>
DRChromeBookmarksCheck::findingIn(const QByteArray& before, const QByteArray& after, const DRBookmarkTree& tree)
{
    const HarmfulTexts harmful = harmfulTextsIn(tree);
    const QJsonParseError::ParseError error = errorIn(after);
    if (error == QJsonParseError::NoError && !harmful.breakTheFile) {
        if (harmful.names.isEmpty()) {
            return std::nullopt;
        }
        return Finding{.warning = u"Chrome will show bookmarks otherwise than the iPhone, for a quotation mark or "
                                  "backslash stands in %1"_s.arg(listOf(harmful.names)),
                       .isReadable = true};
    }
    if (!before.isEmpty() && errorIn(before) != QJsonParseError::NoError) {
        return Finding{.warning = u"Chrome's bookmarks on the phone are damaged already, so Chrome will not read the "
                                  "new ones; the phone's backup keeps the old ones"_s};
    }
    return Finding{.warning = u"Chrome will not read its bookmarks any more, neither the phone's own nor the new ones, "
                              "for %1; the phone's backup keeps the old ones"_s.arg(reasonOf(error, harmful))};
}
