#pragma once

#include <QString>
#include <QUrl>

#include <vector>

class QTextDocument;

/// What the HTML texts of pages agree on about links.
class DRHtmlLinks {
public:
    struct Link {
        QString text;
        QString address;
        int start = 0; ///< places in the text, counted from 0
        int end = 0;   ///< behind the last character
    };

    /// The links of a text, in their order; neighbours with one address are one link.
    [[nodiscard]] static std::vector<Link> linksOf(const QTextDocument& document);

    /// The name under which a link reports itself: the last component of its address' path; empty when it has none.
    [[nodiscard]] static QString nameOf(const QUrl& address);

    /// Names of links do not distinguish upper and lower case.
    [[nodiscard]] static bool isSameName(const QString& one, const QString& other);

    /// The HTML without the marks `<link>` and `</link>` that translators set around the words of a link: rich text
    /// would show nothing of what stands between them.
    [[nodiscard]] static QString withoutLinkMarks(const QString& html);
};
