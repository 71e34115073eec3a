#include "app/sample/DRSampleMedia.h"
#include "app/sample/DRSampleMovie.h"
#include "tests/app/sample/DRBoxReading.h"
#include "tests/app/sample/DRSampleFixture.h"
#include "tests/support/DRTestTable.h"

using namespace DRBoxReading;
using namespace Qt::StringLiterals;

class TestSampleMessages : public QObject {
    Q_OBJECT

    const DRSampleFixture m_sample{1};
    const QString m_store = m_sample.stored(u"HomeDomain-Library/SMS/sms.db"_s);

private Q_SLOTS:
    void storeIsWhatAnIPhoneHolds_data()
    {
        const DRTestTable<QString, QString> row("sql", "expected");
        row("sound", u"SELECT * FROM pragma_integrity_check"_s, u"ok"_s);
        row("references", u"SELECT COUNT(*) FROM pragma_foreign_key_check"_s, u"0"_s);
        row("chats", u"SELECT COUNT(*) FROM chat"_s, u"19"_s);
        row("each message in one layout and one place",
            u"SELECT COUNT(*) || ',' || SUM((group_id IS NULL) = (SELECT COUNT(*) = 1 FROM chat_message_join WHERE "
            "message_id = message.ROWID)) = COUNT(*) || ',' || COUNT(*) FROM message"_s,
            u"1"_s);
        row("messages of the older layout", u"SELECT COUNT(*) BETWEEN 60 AND 120 FROM message WHERE group_id > 0"_s,
            u"1"_s);
        row("messages of no group",
            u"SELECT COUNT(*) FROM message WHERE group_id NOT IN (SELECT ROWID FROM msg_group)"_s, u"0"_s);
        row("pieces of nothing",
            u"SELECT COUNT(*) FROM msg_pieces WHERE message_id NOT IN (SELECT ROWID FROM message WHERE group_id > 0)"_s,
            u"0"_s);
        row("members of no group",
            u"SELECT COUNT(*) FROM group_member WHERE group_id NOT IN (SELECT ROWID FROM msg_group)"_s, u"0"_s);
        row("a sent message for each of three people",
            u"SELECT COUNT(*) || ',' || COUNT(DISTINCT address) FROM message WHERE group_id = 300 AND association_id = "
            "(SELECT MIN(association_id) FROM message WHERE group_id = 300 AND association_id <> 0)"_s,
            u"3,3"_s);
        row("rows without association", u"SELECT COUNT(*) FROM message WHERE group_id > 0 AND association_id IS NULL"_s,
            u"2"_s);
        row("senders are in the chat",
            u"SELECT COUNT(*) FROM message JOIN chat_message_join ON message_id = message.ROWID WHERE handle_id <> 0 "
            "AND handle_id NOT IN (SELECT handle_id FROM chat_handle_join AS people WHERE people.chat_id = "
            "chat_message_join.chat_id)"_s,
            u"0"_s);
        row("chats without handles", // and therefore with none that could be a sender
            u"SELECT COUNT(*) FROM chat WHERE ROWID NOT IN (SELECT chat_id FROM chat_handle_join)"_s, u"1"_s);
        row("chats without messages",
            u"SELECT COUNT(*) FROM chat WHERE ROWID NOT IN (SELECT chat_id FROM chat_message_join)"_s, u"1"_s);
        row("dates of the newer layout, before the backup", // 2014-05-06 07:08:09 UTC
            u"SELECT COUNT(*) FROM message WHERE group_id IS NULL AND date <> 0 AND date NOT BETWEEN 1399360089 - "
            "978307200 - 380 * 86400 AND 1399360088 - 978307200"_s,
            u"0"_s);
        row("dates of the older layout, years before",
            u"SELECT COUNT(*) FROM message WHERE group_id > 0 AND date <> 0 AND date NOT BETWEEN 1399360089 - 1502 * "
            "86400 AND 1399360089 - 900 * 86400"_s,
            u"0"_s);
        row("messages of a second",
            u"SELECT COUNT(*) FROM message WHERE text IN ('first', 'second', 'third') GROUP BY date"_s, u"3"_s);
        row("a byte order mark", u"SELECT COUNT(*) FROM message WHERE unicode(text) = 65279"_s, u"1"_s);
        row("no text, and an empty one",
            u"SELECT SUM(text IS NULL AND group_id IS NULL) || ',' || SUM(text = '') FROM message"_s, u"4,2"_s);
        row("unread ones", u"SELECT COUNT(*) > 0 FROM message WHERE is_from_me = 0 AND is_read = 0"_s, u"1"_s);
        row("text of a piece as bytes",
            u"SELECT COUNT(*) FROM msg_pieces WHERE data IS NOT NULL AND typeof(data) <> 'blob'"_s, u"0"_s);
        row("ways to name a path",
            u"SELECT (SUM(filename LIKE '~/%') > 0) + (SUM(filename LIKE '/var/mobile/%') > 0) FROM attachment"_s,
            u"2"_s);
    }

    void storeIsWhatAnIPhoneHolds()
    {
        QFETCH(const QString, sql);
        QTEST(DRSampleFixture::answer(m_store, sql), "expected");
    }

    void noFileIsMissing_data()
    {
        const DRTestTable<QString, qint64> row("sql", "least"); // sql: path from the user's folder on, size or NULL
        row("attachments",
            u"SELECT replace(replace(filename, '~/', ''), '/var/mobile/', ''), total_bytes FROM attachment"_s, 45);
        row("attachments of groups", u"SELECT replace(filename, '/var/mobile/', ''), NULL FROM madrid_attachment"_s, 2);
        row("pieces",
            u"SELECT printf('Library/SMS/Parts/%02x/%d-%d.%s', group_id, message_id, part_id, CASE "
            "substr(content_type, 1, 9) WHEN 'image/jpe' THEN 'JPG' WHEN 'video/qui' THEN 'MOV' WHEN "
            "'text/plai' THEN 'txt' ELSE substr(content_type, 7) END), NULL FROM msg_pieces JOIN "
            "message ON message.ROWID = message_id WHERE content_loc NOT LIKE '''%'"_s,
            9);
    }

    void noFileIsMissing()
    {
        QFETCH(const QString, sql);
        QFETCH(const qint64, least);
        auto database = DRDatabase::open(m_store, DRDatabase::Profile::Source);
        QVERIFY(database);
        auto rows = database->executeQuery(sql);
        qint64 count = 0;
        for (; rows.next(); ++count) {
            const QFileInfo file(m_sample.stored(u"MediaDomain-"_s + rows.stringAt(0)));
            QVERIFY2(file.exists(), qPrintable(rows.stringAt(0)));
            QVERIFY2(rows.isNullAt(1) || rows.stringAt(1).toLongLong() == file.size(), qPrintable(rows.stringAt(0)));
        }
        QVERIFY2(!rows.hasFailed(), qPrintable(database->lastErrorMessage()));
        QVERIFY2(count >= least, qPrintable(QString::number(count)));
    }

    void filmHoldsItsPicturesWhereItSays_data()
    {
        const DRTestTable<DRSampleMovie::Order, QByteArray> row("order", "boxes");
        row("description first", DRSampleMovie::Order::DescriptionFirst, "ftypmoovmdat");
        row("pictures first", DRSampleMovie::Order::PicturesFirst, "ftypmdatmoov");
    }

    void filmHoldsItsPicturesWhereItSays()
    {
        QFETCH(const DRSampleMovie::Order, order);
        const QByteArray film = encodeSampleMovie({.seed = 7,
                                                   .pictures = 3,
                                                   .created = m_sample.clock.now(),
                                                   .title = u"Sjön"_s,
                                                   .location = u"+59.3293+018.0686/"_s,
                                                   .order = order});
        QByteArray types;
        for (qsizetype place = 0; place < film.size(); place += static_cast<qsizetype>(number(film, place))) {
            types += film.mid(place + 4, 4);
            QVERIFY(number(film, place) >= 8);
        }
        QTEST(types, "boxes");
        QCOMPARE(boxContent(film, "moov/udta/\xA9nam"), QByteArray("\0\5\x15\xC7Sj\xC3\xB6n", 9));
        QCOMPARE(boxContent(film, "moov/udta/\xA9xyz").mid(4), QByteArray("+59.3293+018.0686/"));

        const QByteArray tables = "moov/trak/mdia/minf/stbl/";
        const QByteArray sizes = boxContent(film, tables + "stsz");
        const QByteArray places = boxContent(film, tables + "stco");
        QCOMPARE(number(sizes, 8), 3U);
        QCOMPARE(number(places, 4), 3U);
        QByteArray pictures;
        for (qsizetype index = 0; index < 3; ++index) {
            const QByteArray picture = film.mid(number(places, 8 + 4 * index), number(sizes, 12 + 4 * index));
            QVERIFY(picture.startsWith("\xFF\xD8\xFF") && picture.endsWith("\xFF\xD9"));
            pictures += picture;
        }
        QCOMPARE(pictures, boxContent(film, "mdat"));
    }

    void pageIsFoundWhereTheDocumentSays()
    {
        const QByteArray pdf = DRSampleMedia::pdf("Table for 2");
        const qsizetype table = pdf.mid(pdf.lastIndexOf("startxref\n") + 10).split('\n').front().toLongLong();
        QVERIFY(pdf.mid(table).startsWith("xref\n0 6\n0000000000 65535 f \n"));
        for (qsizetype object = 1; object <= 5; ++object) {
            const qsizetype place = pdf.mid(table + 9 + 20 * object, 10).toLongLong();
            QVERIFY(pdf.mid(place).startsWith(QByteArray::number(object) + " 0 obj\n"));
        }
        const QByteArray stream = pdf.mid(pdf.indexOf("stream\n") + 7);
        QVERIFY(pdf.contains("/Length " + QByteArray::number(stream.indexOf("endstream")) + " "));
    }
};

QTEST_GUILESS_MAIN(TestSampleMessages)
#include "TestSampleMessages.moc"
