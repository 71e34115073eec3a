#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRSqlText.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/support/DRTestTable.h"

#include <QFile>
#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryDir>

#include <limits>
#include <optional>

using namespace Qt::StringLiterals;
using Profile = DRDatabase::Profile;

/// Numbers and literals, whole and broken, and what names of attachments look like.
const QStringList kOperands =
    u"12~-3~+4.5~.5~-.5e-3~5.~5.e2~1e3~1E+3~007~-0~-0.0~ \t12\r\n~- 3~-\n3~9223372036854775807~"
    "9223372036854775808~-9223372036854775808~-9223372036854775809~123456789012345678901234567890~1e15~"
    "1e16~123456789012345.6~0.1234567890123456789~2.2250738585072014e-308~1e-320~1e-999~1e999~-1e999~"
    "0x1F~-0X1f~0x000000000000000000001F~0xFFFFFFFFFFFFFFFF~-0xFFFFFFFFFFFFFFFF~0x8000000000000000~"
    "-0x8000000000000000~0x10000000000000000~''~'abc'~'aBC' ~'it''s'~''''~'%b_'~'12'~' a'~"
    "'\u00E9\U0001F600'~'\uFEFFa'~'a''~'''~'~'a' 'b'~'a~~ ~-~.~1e~1e+~0x~0xG~0x1.5~1.5.2~12abc~1 2~"
    "IMG_0001.jpg~text_0.txt~$1~\u0661~12\u00A0"_s.split(u'~');

class TestDatabase : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        m_database = DRDatabase::open(m_folder->filePath(u"a.db"_s), Profile::Create);
        QVERIFY(m_database && m_database->executeScript(u"CREATE TABLE t(id INTEGER PRIMARY KEY, x UNIQUE)"_s));
    }

    void cleanup() { m_database.reset(); }

    void valuesComeBack_data()
    {
        const DRTestTable<QVariant, QString, QByteArray> row("written", "text", "bytes");
        row("null text", QVariant(QString()), {}, {});
        row("empty text", QVariant(u""_s), u""_s, "");
        row("mark kept", QVariant(u"\uFEFFa"_s), u"\uFEFFa"_s,
            "\xEF\xBB\xBF"
            "a");
        row("lone surrogate", QVariant(u"a"_s + QChar(0xD800)), u"a\uFFFD"_s, "a\xEF\xBF\xBD");
        row("NUL written", QVariant(u"a"_s + QChar(u'\0') + u"b"_s), u"ab"_s, "ab");
        row("NUL read", QVariant(QByteArray("a\0b", 3)), u"ab"_s, QByteArray("a\0b", 3));
        row("invalid UTF-8", QVariant(QByteArray("\xC3")), u"\uFFFD"_s, "\xC3");
        row("empty bytes", QVariant(QByteArray("")), u""_s, "");
    }

    void valuesComeBack()
    {
        QFETCH(QVariant, written);
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        const DRSqlValue value =
            written.typeId() == QMetaType::QString ? DRSqlValue(written.toString()) : written.toByteArray();
        DRResultSet rows = m_database->executeQuery(u"SELECT ? AS v"_s, {value});
        QVERIFY(rows.next());
        QCOMPARE(rows.string("v"), text);
        QCOMPARE(rows.string("v").isNull(), text.isNull());
        QCOMPARE(rows.bytes("v"), bytes);
        QCOMPARE(rows.bytes("v").isNull(), bytes.isNull());
    }

    void columnsAreFoundWithoutRegardToCaseAndMayLack()
    {
        DRResultSet rows = m_database->executeQuery(u"SELECT 1 AS First, 2.5 AS second, 3 AS FIRST"_s);
        QVERIFY(rows.next());
        QCOMPARE(rows.integer("fIRST"), 1);
        QCOMPARE(rows.real("SECOND"), 2.5);
        QVERIFY(rows.isNull("absent") && rows.string("absent").isNull() && rows.integer("absent") == 0);
        QCOMPARE(rows.columnIndex("absent"), std::nullopt);
        QVERIFY(rows.isNullAt(3) && rows.isNullAt(-1));
        QVERIFY(!rows.next() && !rows.hasFailed());
        QVERIFY(rows.isNullAt(0));
    }

    void failuresAreSeen_data()
    {
        const DRTestTable<QString, int> row("sql", "valueCount");
        row("malformed", u"SELEKT 1"_s, 0);
        row("no statement", u"  "_s, 0);
        row("second statement", u"SELECT 1; SELECT 2"_s, 0);
        row("no such table", u"SELECT * FROM absent"_s, 0);
        row("too few values", u"SELECT ?, ?"_s, 1);
        row("too many values", u"SELECT ?"_s, 2);
        row("while running", u"SELECT abs(?)"_s, 1);
    }

    void failuresAreSeen()
    {
        QFETCH(QString, sql);
        QFETCH(int, valueCount);
        const DRSqlValues values(static_cast<size_t>(valueCount), std::numeric_limits<qint64>::min());
        DRResultSet rows = m_database->executeQuery(sql, values);
        QVERIFY(!rows.next() && !rows.next() && rows.hasFailed());
        QVERIFY(rows.isNull("x") && rows.columnName(0).size() < 10);
        QVERIFY(!m_database->executeUpdate(sql, values));
        QVERIFY(m_database->executeUpdate(u"SELECT 1"_s)); // the message is still that of the failure
        QVERIFY(m_database->lastErrorMessage() != u"not an error");
    }

    void statementRunsAgainAfterAFailure()
    {
        DRStatement insert = m_database->prepare(u"INSERT INTO t(x) VALUES (?)"_s);
        QVERIFY(insert.update({u"a"_s}));
        QVERIFY(!insert.update({u"a"_s}));
        QVERIFY(insert.update({u"b"_s}));
        QCOMPARE(m_database->lastInsertRowId(), 2);
        DRStatement select = m_database->prepare(u"SELECT x FROM t WHERE id >= ? ORDER BY id"_s);
        DRResultSet rows = select.query({qint64{1}});
        QVERIFY(rows.next());
        rows = select.query({qint64{2}});
        QVERIFY(rows.next());
        QCOMPARE(rows.string("x"), u"b"_s);
    }

    void unreadRowsDoNotKeepTheLock()
    {
        QVERIFY(m_database->executeScript(u"INSERT INTO t(x) VALUES (1), (2)"_s));
        DRStatement select = m_database->prepare(u"SELECT x FROM t"_s);
        QVERIFY(select.query().next());
        auto other = DRDatabase::open(m_folder->filePath(u"a.db"_s), Profile::Phone);
        QVERIFY(other && other->executeUpdate(u"DELETE FROM t"_s));
    }

    void transactionIsTakenBackUnlessCommitted()
    {
        {
            const DRTransaction transaction(*m_database);
            QVERIFY(transaction.isOpen() && insertRow(1));
        }
        QCOMPARE(rowCount(), 0);
        {
            DRTransaction transaction(*m_database);
            QVERIFY(insertRow(1));
            QVERIFY(!insertRow(1) && transaction.isOpen()); // a failed insert is harmless
            const DRTransaction inner(*m_database);
            QVERIFY(!inner.isOpen());
            QVERIFY(transaction.commit() && !transaction.commit());
        }
        QCOMPARE(rowCount(), 1);
    }

    void lostTransactionIsNoticed()
    {
        QVERIFY(m_database->executeScript(u"CREATE TRIGGER refuse BEFORE INSERT ON t WHEN new.x = 13 "
                                          "BEGIN SELECT RAISE(ROLLBACK, 'unlucky'); END"_s));
        DRTransaction transaction(*m_database);
        QVERIFY(insertRow(1) && !insertRow(13));
        QCOMPARE(m_database->lastErrorMessage(), u"unlucky"_s);
        QVERIFY(!transaction.isOpen() && !transaction.commit());
        QCOMPARE(rowCount(), 0);
    }

    void writeAheadLogStaysEmptyWhenAsked()
    {
        QVERIFY(m_database->executeScript(u"PRAGMA journal_mode=WAL; INSERT INTO t(x) VALUES (1)"_s));
        QVERIFY(m_database->persistWriteAheadLog());
        QVERIFY(m_database->executeUpdate(u"INSERT INTO t(x) VALUES (2)"_s));
        m_database.reset();
        const QFileInfo log(m_folder->filePath(u"a.db-wal"_s));
        QVERIFY(log.exists());
        QCOMPARE(log.size(), 0);
    }

    void tablesAreFound()
    {
        QVERIFY(m_database->hasTable(u"T"_s) && !m_database->hasTable(u"absent"_s) &&
                !m_database->hasTable(u"t' OR 1"_s));
    }

    /// Only what is certainly no database of the phone's may be replaced by an empty one.
    void failingDiskIsNoMissingTable()
    {
        QVERIFY(m_database->executeUpdate(u"INSERT INTO t VALUES(1, 2)"_s));
        const QString noDatabase = m_folder->filePath(u"text"_s);
        QFile text(noDatabase);
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write(QByteArray(9000, 'x')) == 9000);
        text.close();
        const QString memory =
            u"/proc/%1/mem"_s.arg(QCoreApplication::applicationPid()); // whose beginning cannot be read

        using Answer = std::optional<bool>;
        QCOMPARE(DRDatabase::phoneDatabaseHolds(m_folder->filePath(u"a.db"_s), u"t"_s), Answer(true));
        QCOMPARE(DRDatabase::phoneDatabaseHolds(m_folder->filePath(u"a.db"_s), u"absent"_s), Answer(false));
        QCOMPARE(DRDatabase::phoneDatabaseHolds(m_folder->filePath(u"missing"_s), u"t"_s), Answer(false));
        QCOMPARE(DRDatabase::phoneDatabaseHolds(noDatabase, u"t"_s), Answer(false));
        QCOMPARE(DRDatabase::phoneDatabaseHolds(memory, u"t"_s), Answer());
    }

    /// What a statement makes of a text that stands in it as it is, against what we bind instead.
    void textInsideQuotesMeansTheSameAsFormatted_data()
    {
        QTest::addColumn<QString>("text");
        for (const QString& text :
             {u""_s, u"+1 555 0100"_s, u"o'brien@x.com"_s, u"''"_s, u"'"_s, u"'''"_s, u"''''"_s, u"it''s"_s,
              u"it'''s"_s, u"''start"_s, u"end''"_s, u"end'"_s, u"two''pairs''"_s, u"a\"b%_\\;--\u00E9\U0001F600"_s}) {
            QTest::addRow("%s", qPrintable(u'<' + text + u'>')) << text;
        }
    }

    void textInsideQuotesMeansTheSameAsFormatted()
    {
        QFETCH(QString, text);
        DRResultSet formatted = m_database->executeQuery(u"SELECT '"_s + text + u"' AS v"_s);
        const bool hasRow = formatted.next();
        const auto bound = DRSqlText::insideSingleQuotes(text);
        QCOMPARE(bound.has_value(), hasRow);
        QVERIFY(!hasRow || *bound == formatted.string("v"));
    }

    void unquotedOperandMeansTheSameAsFormatted_data()
    {
        QTest::addColumn<QString>("text");
        for (const QString& text : kOperands) {
            QTest::addRow("%s", qPrintable(u'<' + text + u'>')) << text;
        }
    }

    /// By the text that LIKE sees and by the rows that it finds.
    void unquotedOperandMeansTheSameAsFormatted()
    {
        QFETCH(QString, text);
        const QString like = u"SELECT group_concat(id) FROM t WHERE x LIKE "_s;
        const QString asText = u"SELECT CAST(v AS TEXT) FROM (SELECT %1 AS v)"_s;
        const auto bound = DRSqlText::unquotedOperand(text);
        const QString seen = oneText(asText.arg(text));
        QCOMPARE(bound.has_value(), seen != kFailed);
        if (!bound) {
            return;
        }
        QCOMPARE(oneText(asText.arg(u"?"_s), {*bound}), seen);
        QVERIFY(m_database->executeUpdate(u"INSERT OR IGNORE INTO t(x) VALUES (?), (upper(?)), ('abc'), ('')"_s,
                                          {seen, seen}));
        QVERIFY(oneText(like + u'?', {*bound}) != kFailed);
        QCOMPARE(oneText(like + u'?', {*bound}), oneText(like + text));
    }

    /// Most of it SQLite would run.
    void unquotedOperandIsNoSql_data()
    {
        QTest::addColumn<QString>("text");
        const QString texts =
            u"x~\"x\"~\"abc\"~`x`~[x]~x'41'~'a' || 'b'~'a' OR 1~'a' OR '1'~1 OR 1~12;~12 -- x~12 /**/~- -3~--3~"
            "+-3~(12)~1+1~TRUE~NULL~current_date~?~abs(12)~(SELECT x FROM t)~'a' UNION SELECT 1~'%' ESCAPE '\\'"_s;
        for (const QString& text : texts.split(u'~')) {
            QTest::addRow("%s", qPrintable(u'<' + text + u'>')) << text;
        }
    }

    void unquotedOperandIsNoSql()
    {
        QFETCH(QString, text);
        QVERIFY(!DRSqlText::unquotedOperand(text));
    }

    /// Reals are not parsed by SQLite here: that must not show.
    void realsReadAsInSqlite()
    {
        QRandomGenerator random(3);
        for (int i = 0; i < 500; ++i) {
            const QString text =
                u"%1.%2e%3"_s.arg(random.generate64()).arg(random.generate64()).arg(random.bounded(-300, 280));
            const auto bound = DRSqlText::unquotedOperand(text);
            QVERIFY(bound);
            QCOMPARE(oneText(u"SELECT CAST(? AS TEXT)"_s, {*bound}), oneText(u"SELECT CAST(%1 AS TEXT)"_s.arg(text)));
        }
    }

    void injectionNeverRuns()
    {
        QCOMPARE(DRSqlText::insideSingleQuotes(u"x' OR '1'='1"_s), std::nullopt);
        QCOMPARE(DRSqlText::insideSingleQuotes(QString()), u"(null)"_s);
        QCOMPARE(DRSqlText::quotedName(u"Z_11ASSETS"_s), u"\"Z_11ASSETS\""_s);
        for (const QString& name : {u""_s, u"1a"_s, u"a b"_s, u"a\"b"_s, u"\u00E9"_s, u"a;"_s}) {
            QVERIFY2(!DRSqlText::quotedName(name), qPrintable(name));
        }
    }

private:
    bool insertRow(qint64 value) { return m_database->executeUpdate(u"INSERT INTO t(x) VALUES (?)"_s, {value}); }

    QString oneText(const QString& sql, const DRSqlValues& values = {})
    {
        DRResultSet rows = m_database->executeQuery(sql, values);
        return rows.next() ? rows.stringAt(0) : kFailed;
    }

    qint64 rowCount()
    {
        DRResultSet rows = m_database->executeQuery(u"SELECT count(*) AS n FROM t"_s);
        return rows.next() ? rows.integer("n") : -1;
    }

    const QString kFailed = u"the statement failed"_s;

    std::optional<QTemporaryDir> m_folder;
    std::optional<DRDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestDatabase)

#include "TestDatabase.moc"
