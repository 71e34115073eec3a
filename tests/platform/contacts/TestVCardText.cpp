#include "platform/contacts/DRVCardPicture.h"
#include "platform/contacts/DRVCardText.h"
#include "tests/platform/contacts/DRVCardReading.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

class TestVCardText : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void escapes_data()
    {
        const DRTestTable<QString, QString> row("text", "value");
        row("special characters", u"a\\b;c,d:e\"f"_s, u"a\\\\b\\;c\\,d:e\"f"_s);
        row("line breaks", u"\r\na\n\nb\r\rc\n\rd\r\n"_s, u"\\na\\n\\nb\\n\\nc\\n\\nd\\n"_s);
        row("controls", u"a\tb\u0001\u001b\u007f\u0085\u009fc\u00a0\u2028"_s, u"a\tbc\u00a0\u2028"_s);
        row("NUL", QString::fromUtf16(u"a\0b", 3), u"ab"_s);
        row("letter n is no line break", u"\\n"_s, u"\\\\n"_s);
    }

    void escapes()
    {
        QFETCH(QString, text);
        QTEST(DRVCardText::escaped(text), "value");
    }

    void folds_data()
    {
        const DRTestTable<QString, QByteArray> row("value", "lines");
        const QByteArray full = "X:" + QByteArray(73, 'a');
        row("75 bytes", QString(73, u'a'), full + "\r\n");
        row("76 bytes", QString(74, u'a'), full + "\r\n a\r\n");
        row("blank counts", QString(73 + 74 + 1, u'a'), full + "\r\n " + QByteArray(74, 'a') + "\r\n a\r\n");
        row("character over the edge", QString(70, u'a') + u"😀b"_s,
            "X:" + QByteArray(70, 'a') +
                "\r\n \xF0\x9F\x98\x80"
                "b\r\n");
        row("character before the edge", QString(69, u'a') + u"😀b"_s,
            "X:" + QByteArray(69, 'a') + "\xF0\x9F\x98\x80\r\n b\r\n");
        row("lone surrogate", QString(QChar(0xd83d)), "X:\xEF\xBF\xBD\r\n");
        row("marker", u"bEGIN:vCARD"_s, "X:bEGIN:vC\r\n ARD\r\n");
        row("marker over the parts", u"VCARD:end:vcardEND:VCAR"_s, "X:VCARD:end:vc\r\n ardEND:VCAR\r\n");
    }

    void folds()
    {
        QFETCH(QString, value);
        QTEST(DRVCardText::property(u"X"_s, value), "lines");
    }

    /// Wherever the folds fall, the text comes back, no line is too long and no marker stays whole.
    void everyOffsetKeepsTextAndHidesMarkers()
    {
        const QString texts[] = {u"BEGIN:VCARD"_s, u"x;end:vCard,"_s, u"End:VCARDBEGIN:VCARDEND:VCARD\nbegin:vcard"_s};
        for (const QString& filler : {u"x"_s, u"é"_s, u"\n"_s, u"山"_s, u"😀"_s, u" "_s}) {
            for (qsizetype i = 0; i < 483; ++i) { // each text with 0 to 160 characters around it
                const QString text = filler.repeated(i / 3) + texts[i % 3] + filler.repeated(i / 3);
                const QByteArray lines = DRVCardText::property(u"NOTE"_s, DRVCardText::escaped(text));
                QVERIFY(lines.isValidUtf8());
                QVERIFY2(DRVCardReading::longestLine(lines) <= 75, lines.constData());
                QVERIFY2(!lines.toUpper().contains("BEGIN:VCARD"), lines.constData());
                QVERIFY2(!lines.toUpper().contains("END:VCARD"), lines.constData());
                QCOMPARE(DRVCardReading::unfolded(lines).size(), 1);
                const QString value = DRVCardReading::unfolded(lines).value(0).sliced(5);
                QCOMPARE(DRVCardReading::unescaped(value).value(0), text);
            }
        }
    }

    void quotesTypes_data()
    {
        const DRTestTable<QString, QString> row("type", "parameter");
        row("word", u"X-Pager2"_s, u";TYPE=X-Pager2"_s);
        row("letters of any script", u"X-Größe-山"_s, u";TYPE=X-Größe-山"_s);
        row("blank", u"X-Home Fax"_s, u";TYPE=\"X-Home Fax\""_s);
        row("structure", u"X-a:b;c,d=\\"_s, u";TYPE=\"X-a:b;c,d=\\\""_s);
        row("what no parameter holds", u"X-\"a\"\r\n"_s, u";TYPE=\"X-'a'  \""_s);
    }

    void quotesTypes()
    {
        QFETCH(QString, type);
        QTEST(DRVCardText::typeParameter(type), "parameter");
    }

    void addsPictures_data()
    {
        const DRTestTable<QByteArray, QByteArray> row("picture", "head");
        const QByteArray bulk(1000, '\xA5');
        row("jpeg", QByteArray("\xFF\xD8\xFF\xE0") + bulk, "PHOTO;ENCODING=b;TYPE=JPEG:");
        row("png", QByteArray("\x89PNG\r\n\x1A\n") + bulk, "PHOTO;ENCODING=b;TYPE=PNG:");
        row("shortest jpeg", "\xFF\xD8\xFF", "PHOTO;ENCODING=b;TYPE=JPEG:");
        row("cut png", "\x89PNG\r\n\x1A", {});
        row("gif", QByteArray("GIF89a") + bulk, {});
        row("none", {}, {});
    }

    void addsPictures()
    {
        QFETCH(QByteArray, picture);
        QFETCH(QByteArray, head);
        const QByteArray start = "BEGIN:VCARD\r\nVERSION:3.0\r\nN:;;;;\r\nFN:\r\n";
        const QByteArray card = start + "END:VCARD\r\n";
        const QByteArray result = DRVCardPicture::withPicture(card, picture);
        QCOMPARE(DRVCardPicture::formatOf(picture) == DRVCardPicture::Format::Unknown, head.isEmpty());
        if (head.isEmpty()) {
            QCOMPARE(result, card);
            return;
        }
        QVERIFY(result.startsWith(start + head) && result.endsWith("\r\nEND:VCARD\r\n"));
        QVERIFY(DRVCardReading::longestLine(result) <= 75);
        const QString line = DRVCardReading::unfolded(result).value(4);
        QCOMPARE(QByteArray::fromBase64(line.sliced(head.size()).toLatin1()), picture);
    }
};

QTEST_APPLESS_MAIN(TestVCardText)
#include "TestVCardText.moc"
