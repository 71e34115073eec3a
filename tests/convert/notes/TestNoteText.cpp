#include "convert/notes/DRNoteText.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

class TestNoteText : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void reducesHtml_data()
    {
        const DRTestTable<QString, QString> row("html", "text");
        row("empty", u""_s, u""_s);
        row("missing", QString(), u""_s);
        row("br in any case", u"a<br>b<BR>c<bR>d"_s, u"a\nb\nc\nd"_s);
        row("br with more in it", u"a<br/>b<br >c<br class='x'>d"_s, u"abcd"_s);
        row("two divisions", u"<div>one</div><div>two</div>"_s, u"one\ntwo"_s);
        row("division after a line feed", u"one\n<div>two</div>"_s, u"one\ntwo"_s);
        row("division after br", u"one<br><DIV>two</DIV>"_s, u"one\ntwo"_s);
        row("br after br", u"one<br><br>two"_s, u"one\n\ntwo"_s);
        row("division with attributes", u"one<div dir='rtl'>two</div>"_s, u"onetwo"_s);
        row("carriage return is no break", u"one\r<div>two"_s, u"one\r\ntwo"_s);
        row("other tags", u"<b>bold</b> <a href=\"x\">link</a><!-- c -->"_s, u"bold link"_s);
        row("unclosed tag ends the text", u"before <and all the rest"_s, u"before "_s);
        row("tag holds another <", u"a<b<br>c"_s, u"ac"_s);
        row("empty tag", u"a<>b"_s, u"ab"_s);
        row("nbsp", u"a&nbsp;b&NBSP;c&NbSp;"_s, u"a b c "_s);
        row("one pass only", u"&amp;lt; &amp;amp; &amp;nbsp;"_s, u"&lt; &amp; &nbsp;"_s);
        row("nbsp first", u"&nb&nbsp;sp;"_s, u"&nb sp;"_s);
        row("standard entities", u"&lt;b&gt; &quot;x&quot; &apos;"_s, u"<b> \"x\" '"_s);
        row("case of standard entities counts", u"&LT;"_s, u"&LT;"_s);
        row("unknown entity", u"&eacute;&;&copy"_s, u"&eacute;&;&copy"_s);
        row("decimal", u"&#233;&#0000233;"_s, u"éé"_s);
        row("hexadecimal", u"&#xe9;&#xE9;&#x1F600;"_s, u"éé😀"_s);
        row("no character", u"&#0;&#xD800;&#x110000;&#99999999999;"_s, u"&#0;&#xD800;&#x110000;&#99999999999;"_s);
        row("no number", u"&#;&#x;&#-5;&#+5;&# 5;&#5 ;&#5a;&#XE9;&#x0x41;"_s,
            u"&#;&#x;&#-5;&#+5;&# 5;&#5 ;&#5a;&#XE9;&#x0x41;"_s);
        row("marks, right to left, joined emoji", u"\uFEFFא<br>👩\u200D👧"_s, u"\uFEFFא\n👩\u200D👧"_s);
    }

    void reducesHtml()
    {
        QFETCH(QString, html);
        const QString text = convertNoteHTMLToText(html);
        QTEST(text, "text");
        QVERIFY(!text.isNull());
    }
};

QTEST_APPLESS_MAIN(TestNoteText)
#include "TestNoteText.moc"
