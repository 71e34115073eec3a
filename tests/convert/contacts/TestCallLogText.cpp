#include "convert/contacts/DRCallLogText.h"

#include <QTest>

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
        QTest::addColumn<QByteArray>("existing");
        QTest::addColumn<qint64>("firstId");
        QTest::addColumn<bool>("isKept");
        QTest::addColumn<bool>("losesCalls");

        QTest::newRow("none") << QByteArray() << 1LL << false << false;
        QTest::newRow("without calls") << kEmptyLog << 1LL << false << false;
        QTest::newRow("highest of several") << logWith({"3", "7", "5"}) << 7LL << true << false;
        QTest::newRow("only 1") << logWith({"1"}) << 1LL << false << true;
        QTest::newRow("only 0") << logWith({"0", "0"}) << 1LL << false << true;
        QTest::newRow("no number in it") << logWith({"x", "", "-9"}) << 1LL << false << true;
        QTest::newRow("blanks and rest") << logWith({"\n                              0012 minutes"}) << 12LL << true
                                         << false;
        QTest::newRow("other elements") << QByteArray("<CallLogList><Call x='1'><ID>1</ID></Call></CallLogList>") << 1LL
                                        << false << true;
        QTest::newRow("beyond 64 bits") << logWith({"99999999999999999999999999"}) << std::numeric_limits<qint64>::max()
                                        << true << false;
        QTest::newRow("other letter case")
            << QByteArray("<calllist><call><iD>8</Id></CALLLOGLIST>") << 8LL << true << false;
        // A letter that becomes longer when it is lower-cased must not move the place of the closing tag.
        QTest::newRow("letters that grow")
            << QByteArray("\u0130\u0130<call><id>8</id></CallLogList>") << 8LL << true << false;
        QTest::newRow("closing tag at the very start")
            << QByteArray("</CallLogList><call><ID>8</ID>") << 1LL << false << true;
        QTest::newRow("cut off") << logWith({"8", "9"}).chopped(3) << 1LL << false << true;
        QTest::newRow("not UTF-8") << logWith({"8"}).replace("8", "8\xFF") << 1LL << false << true;
        QTest::newRow("an ID without an end")
            << QByteArray("<call><id>5</id><id>9</CallLogList>") << 5LL << true << false;
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
        QTest::addColumn<QString>("number");
        QTest::addColumn<bool>("breaks");
        QTest::newRow("plain") << u"+49 (170) 5#*,;"_s << false;
        QTest::newRow("ampersand") << u"a&b"_s << true;
        QTest::newRow("less-than") << u"<5"_s << true;
        QTest::newRow("greater-than") << u"a>b"_s << false;
        QTest::newRow("control character") << u"5\x01"_s << true;
        QTest::newRow("end of a section") << u"]]>"_s << true;
    }

    void numbersThatBreakTheLog()
    {
        QFETCH(const QString, number);
        QTEST(DRCallLogText::breaksTheLog(call(number, 0, 0, true)), "breaks");
    }
};

QTEST_APPLESS_MAIN(TestCallLogText)
#include "TestCallLogText.moc"
