#include "convert/contacts/DRCallLogText.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray kHead = QByteArray("<?xml version='1.0' encoding='utf-8'?>").replace('\'', '"');
const QByteArray kEmptyLog = kHead + "<CallLogList></CallLogList>";

QByteArray logWith(std::initializer_list<const char*> ids)
{
    QByteArray log = kHead + "<CallLogList>";
    for (const char* id : ids) {
        log += QByteArray("<Call><ID>") + id + "</ID></Call>";
    }
    return log + "</CallLogList>";
}

DRImportedCall call(const QString& address, qint64 milliseconds, qint64 duration, bool isIncoming)
{
    return {.address = address,
            .date = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC),
            .duration = duration,
            .isIncoming = isIncoming};
}

} // namespace

class TestCallLogText : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void bases_data()
    {
        const DRTestTable<QByteArray, qint64, bool, bool> row("existing", "firstId", "isKept", "losesCalls");

        row("none", {}, 1, false, false);
        row("without calls", kEmptyLog, 1, false, false);
        row("highest of several", logWith({"3", "7", "5"}), 7, true, false);
        row("only 1", logWith({"1"}), 1, false, true);
        row("only 0", logWith({"0", "0"}), 1, false, true);
        row("no number in it", logWith({"x", "", "-9"}), 1, false, true);
        row("blanks and rest", logWith({"\n                              0012 minutes"}), 12, true, false);
        row("other elements", "<CallLogList><Call x='1'><ID>1</ID></Call></CallLogList>", 1, false, true);
        row("beyond 64 bits", logWith({"99999999999999999999999999"}), std::numeric_limits<qint64>::max(), true, false);
        row("other letter case", "<calllist><call><iD>8</Id></CALLLOGLIST>", 8, true, false);
        // A letter that becomes longer when it is lower-cased must not move the place of the closing tag.
        row("letters that grow", "\u0130\u0130<call><id>8</id></CallLogList>", 8, true, false);
        row("closing tag at the very start", "</CallLogList><call><ID>8</ID>", 1, false, true);
        row("cut off", logWith({"8", "9"}).chopped(3), 1, false, true);
        row("not UTF-8", logWith({"8"}).replace("8", "8\xFF"), 1, false, true);
        row("an ID without an end", "<call><id>5</id><id>9</CallLogList>", 5, true, false);
    }

    void bases()
    {
        QFETCH(const QByteArray, existing);
        const DRCallLogText::Base base =
            DRCallLogText::baseFor(existing.isNull() ? std::nullopt : std::optional<QByteArray>(existing));
        QTEST(base.firstId, "firstId");
        QFETCH(const bool, isKept);
        QCOMPARE(base.text, isKept ? existing : kEmptyLog);
        QTEST(!base.reasonOfReplacement.isNull(), "losesCalls");
    }

    void numbersWithoutEndAreFoundInOnePass()
    {
        const DRCallLogText::Base base =
            DRCallLogText::baseFor(QByteArray("<id>").repeated(300'000) + "4</id></CallLogList>");
        QCOMPARE(base.firstId, 4LL);
    }

    void newCallsStandBeforeTheClosingTag()
    {
        const QByteArray phones = kHead + "<CallLogList><Call><ID>7</ID></Call></CALLLOGLIST>\n";
        const QByteArray text = DRCallLogText::withCalls(DRCallLogText::baseFor(phones),
                                                         {call(u"+49 170 *#&<5>"_s, 1'400'000'002'900, 61, true),
                                                          call({}, -1'500, 0, false), call(u""_s, 0, 5, true)});
        const QByteArray added =
            "<Call><ID>7</ID><Number>+49 170 *#&<5></Number><Date>1400000002000</Date><Duration>61</Duration>"
            "<Type>1</Type><NumberType>0</NumberType></Call>"
            "<Call><ID>8</ID><Number>-2</Number><Date>-1000</Date><Duration>0</Duration><Type>2</Type>"
            "<NumberType>0</NumberType></Call>"
            "<Call><ID>9</ID><Number>-2</Number><Date>0</Date><Duration>5</Duration><Type>1</Type>"
            "<NumberType>0</NumberType></Call>";
        QCOMPARE(text, kHead + "<CallLogList><Call><ID>7</ID></Call>" + added + "</CALLLOGLIST>\n");
        QCOMPARE(DRCallLogText::withCalls(DRCallLogText::baseFor(phones), {}), phones);
    }

    void numbersThatBreakTheLog_data()
    {
        const DRTestTable<QString, bool> row("number", "breaks");
        row("plain", u"+49 (170) 5#*,;"_s, false);
        row("ampersand", u"a&b"_s, true);
        row("less-than", u"<5"_s, true);
        row("greater-than", u"a>b"_s, false);
        row("control character", u"5\x01"_s, true);
        row("end of a section", u"]]>"_s, true);
    }

    void numbersThatBreakTheLog()
    {
        QFETCH(const QString, number);
        QTEST(DRCallLogText::breaksTheLog(call(number, 0, 0, true)), "breaks");
    }
};

QTEST_APPLESS_MAIN(TestCallLogText)
#include "TestCallLogText.moc"
