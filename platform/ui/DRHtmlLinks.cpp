#include "platform/ui/DRHtmlLinks.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

void addTo(std::vector<DRHtmlLinks::Link>& links, const QTextFragment& fragment)
{
    const QString address = fragment.charFormat().anchorHref();
    if (!fragment.charFormat().isAnchor() || address.isEmpty()) {
        return;
    }
    const int end = fragment.position() + fragment.length();
    if (!links.empty() && links.back().end == fragment.position() && links.back().address == address) {
        links.back().text += fragment.text();
        links.back().end = end;
        return;
    }
    links.push_back({.text = fragment.text(), .address = address, .start = fragment.position(), .end = end});
}

} // namespace

std::vector<DRHtmlLinks::Link> DRHtmlLinks::linksOf(const QTextDocument& document)
{
    std::vector<Link> links;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            addTo(links, fragment.fragment());
        }
    }
    return links;
}

QString DRHtmlLinks::nameOf(const QUrl& address)
{
    const QStringList components = address.path().split(u'/', Qt::SkipEmptyParts);
    return components.isEmpty() ? QString() : components.last();
}

bool DRHtmlLinks::isSameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

QString DRHtmlLinks::withoutLinkMarks(const QString& html)
{
    static const QRegularExpression mark(u"</?link\\b[^>]*>"_s, QRegularExpression::CaseInsensitiveOption);
    return QString(html).remove(mark);
}
