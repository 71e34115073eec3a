// The HTML of a note: its text is not longer than it, holds no markup beyond what entities spell, and has no lone surrogate
// that the HTML had not.

#include "convert/notes/DRNoteText.h"
#include "fuzz/FuzzTarget.h"
#include "platform/core/DRUtf8.h"

void fuzzOne(QByteArrayView bytes)
{
    const QString html = DRUtf8::decode(bytes);
    const QString text = convertNoteHTMLToText(html);
    require(!text.isNull(), "a note has a text");
    require(text.size() <= html.size(), "a note's text is not longer than its HTML");
    require(text.isValidUtf16(), "a note's text has no lone surrogates");
    require(html.contains(u'&') || !text.contains(u'<'), "tags do not reach the phone");
    static_cast<void>(convertNoteHTMLToText(DRUtf8::decode(stretchedIfShort(bytes))));
    require(html.contains(u'<') || html.contains(u'&') || text == html, "a text without markup stays as it is");
}
