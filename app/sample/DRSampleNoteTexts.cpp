#include "app/sample/DRSampleNoteTexts.h"

#include "app/sample/DRSampleResources.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The ways in which notes of several systems and senders mark up a line; "*" stands for it.
constexpr std::array<QStringView, 16> kLineForms{
    u"<div>*</div>",
    u"<div>*<br></div>",
    u"<div>*</div>",
    u"<div><b>*</b></div>",
    u"<div><i>*</i>&nbsp;</div>",
    u"*<br>",
    u"*<BR>",
    u"<DIV>*</DIV>",
    u"<div><div>*</div></div>",
    u"<div>*<br/></div>",
    u"<div><a href=\"http://www.example.com/search?q=1&amp;page=2\">*</a></div>",
    u"<div><span style=\"font-size: 17px;\">*</span></div>",
    u"<ul><li>*</li></ul>",
    u"<div>* &#233;t&#xE9; &#x1F600;</div>",
    u"<div>*&nbsp;&nbsp;\u2714\uFE0E</div>",
    u"<div><br></div><div>*</div>",
};

constexpr std::array<QStringView, 2> kAfterTitle{u"<br>", u"<div><br></div>"};

struct HardNote {
    QStringView title;
    QStringView content;
};

constexpr std::array kHardNotes{
    // Emoji of several code points: a family, a flag, a skin colour, a keycap.
    HardNote{u"Family \U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466",
             u"Family \U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466<div>\U0001F1F3\U0001F1F5 "
             u"\U0001F44D\U0001F3FD "
             u"1\uFE0F\u20E3 \u2764\uFE0F</div>"},
    // Right to left, with numbers and Latin words between.
    HardNote{u"\u0645\u0648\u0639\u062F \u0645\u0639 Anna",
             u"\u0645\u0648\u0639\u062F \u0645\u0639 Anna<div>\u0627\u0644\u0633\u0627\u0639\u0629 10:30, "
             u"\u0634\u0627\u0631\u0639 7</div>"},
    HardNote{u"\u05E9\u05DC\u05D5\u05DD \u05DC\u05DB\u05D5\u05DC\u05DD",
             u"\u05E9\u05DC\u05D5\u05DD \u05DC\u05DB\u05D5\u05DC\u05DD<div><b>\u05D9\u05D5\u05DD \u05D3\u05F3</b> "
             u"18:00</div>"},
    // East Asian text without blanks.
    HardNote{u"\u65E5\u672C\u8A9E\u306E\u30E1\u30E2",
             u"\u65E5\u672C\u8A9E\u306E\u30E1\u30E2<div>\u300C\u5F15\u7528\u300D\u3068\uFF08\u62EC\u5F27\uFF09</div>"
             u"<div>\u4E2D\u6587\u3001\uD55C\uAD6D\uC5B4</div>"},
    // Quotes of all sorts, which SQL and JSON do not like.
    HardNote{u"O'Brien said \"yes\"",
             u"O'Brien said \"yes\"<div>it''s \u2018so\u2019 &quot;quoted&quot; &apos;here&apos; \\ `</div>"},
    // Entities that are known, unknown, broken, and escaped twice.
    HardNote{u"Entities", u"Entities<div>&amp; &lt;b&gt; &quot; &apos; &nbsp;|&NBSP;| &#233; &#x1F600; &#xe9; &eacute; "
                          u"&unknown; &#; &#x; "
                          u"&amp;lt; &amp;amp; AT&T &copy</div>"},
    // Line ends in every spelling.
    HardNote{u"Lines",
             u"Lines<br>br<BR>BR<Br>Br<br/>br/<br />br /<div>div</div><DIV>DIV</DIV><p>p</p>\nline feed<div>\n</div>"},
    // Markup within markup.
    HardNote{u"Nested",
             u"Nested<div><div><div><b><i>three <a href=\"tel:+15550100\">deep</a></i></b></div></div><br></div><!-- a "
             u"> comment -->"},
    // A "<" that no tag follows: typed as text by a sender who does not escape.
    HardNote{u"5 < 6", u"5 < 6 and nothing closes it"},
    // An empty note, and one that holds only markup.
    HardNote{u"", u""},
    HardNote{u"New Note", u"<div><br></div><div>&nbsp;</div>"},
    // A byte order mark at the front and characters that end lines elsewhere.
    HardNote{u"\uFEFFMarked", u"\uFEFFMarked<div>one\u2028two\u2029three\ttab</div>"},
};

QString escaped(QString text)
{
    return text.replace(u'&', u"&amp;"_s).replace(u'<', u"&lt;"_s).replace(u'>', u"&gt;"_s);
}

QString markedUp(const QString& text, DRSampleRandom& random)
{
    return random.pick(kLineForms).toString().replace(u'*', escaped(text));
}

} // namespace

DRSampleNoteTexts::DRSampleNoteTexts()
{
    const auto texts = QJsonDocument::fromJson(sampleResource(u"texts/notes.json"_s)).object();
    m_people = texts.value(u"people"_s).toVariant().toStringList();
    const auto languages = texts.value(u"languages"_s).toArray();
    for (const auto& language : languages) {
        const auto kinds = language.toObject().value(u"kinds"_s).toArray();
        for (const auto& kind : kinds) {
            m_kinds.push_back(kind.toObject());
        }
    }
}

DRSampleNote DRSampleNoteTexts::compose(DRSampleRandom& random) const
{
    return composeLines(random, 2 + random.below(11), 0);
}

DRSampleNote DRSampleNoteTexts::composeLong(DRSampleRandom& random, qsizetype length) const
{
    return composeLines(random, 1, length);
}

std::vector<DRSampleNote> DRSampleNoteTexts::hardNotes()
{
    std::vector<DRSampleNote> notes;
    notes.reserve(kHardNotes.size() + 1);
    for (const HardNote& note : kHardNotes) {
        notes.push_back({.title = note.title.toString(), .summary = {}, .content = note.content.toString()});
    }
    notes.push_back({.title = u"Without a date"_s, .summary = {}, .content = u"Without a date"_s, .hasDates = false});
    return notes;
}

QString DRSampleNoteTexts::line(const QString& pattern, DRSampleRandom& random) const
{
    const QString day = u"%1.%2."_s.arg(1 + random.below(28)).arg(1 + random.below(12));
    return QString(pattern)
        .replace(u"{n}"_s, QString::number(2 + random.below(8)))
        .replace(u"{day}"_s, day)
        .replace(u"{person}"_s, random.pick(m_people));
}

DRSampleNote DRSampleNoteTexts::composeLines(DRSampleRandom& random, int lines, qsizetype length) const
{
    const QJsonObject& kind = random.pick(m_kinds);
    const auto titles = kind.value(u"titles"_s).toVariant().toStringList();
    const auto patterns = kind.value(u"lines"_s).toVariant().toStringList();
    DRSampleNote note;
    note.title = line(random.pick(titles), random);
    note.content = escaped(note.title) + random.pick(kAfterTitle).toString();
    for (int count = 0; count < lines || note.content.size() < length; ++count) {
        const QString text = line(random.pick(patterns), random);
        if (count == 0) {
            note.summary = text;
        }
        note.content += markedUp(text, random);
    }
    return note;
}
