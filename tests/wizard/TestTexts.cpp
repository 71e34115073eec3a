#include "platform/core/DRLocalizedStrings.h"
#include "tests/support/DRTestTable.h"
#include "tests/wizard/DRTextTables.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/// The program's tables of texts: every language is complete and keeps what the program replaces.
class TestTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tables_data()
    {
        const DRTestTable<QString> row("name");
        for (const QString& name : QDir(DRTextTables::folder()).entryList({u"*.json"_s})) {
            row(qPrintable(name), name);
        }
    }

    void tables()
    {
        QFETCH(const QString, name);
        const QJsonObject english = DRTextTables::read(u"en.json"_s);
        const QJsonObject table = DRTextTables::read(name);
        QVERIFY(english.size() > 100);
        QCOMPARE(table.keys(), english.keys());
        static const QRegularExpression bareMarkUp(u"<(?!/?link>|&bull>|/?b>|br />)"_s);
        for (const QString& identifier : english.keys()) {
            const QString text = table[identifier].toString();
            QStringList wanted = DRTextTables::placeholders(english[identifier].toString());
            QStringList found = DRTextTables::placeholders(text);
            if (identifier.startsWith(u"wizard_")) { // there the order is free
                wanted.sort();
                found.sort();
            }
            QVERIFY2(!text.trimmed().isEmpty() && text == text.trimmed(), qPrintable(identifier));
            QVERIFY2(found == wanted, qPrintable(identifier + u": "_s + text));
            QVERIFY2(!text.contains(bareMarkUp), qPrintable(identifier + u": "_s + text));
            QVERIFY2(text.count(u"<b>"_s) == text.count(u"</b>"_s), qPrintable(identifier));
        }
    }

    void languageIsChosen_data()
    {
        const DRTestTable<QStringList, QString> row("languages", "next");
        row("German of Austria", {u"de-AT"_s, u"de"_s}, u"&Weiter"_s);
        row("English first", {u"en-GB"_s, u"de"_s}, u"&Next"_s);
        row("second choice", {u"fr"_s, u"de"_s}, u"&Weiter"_s);
        row("unknown", {u"xx"_s}, u"&Next"_s);
        row("no language", {u"C"_s}, u"&Next"_s);
    }

    void languageIsChosen()
    {
        QFETCH(const QStringList, languages);
        const auto strings = DRLocalizedStrings::fromFolder(DRTextTables::folder(), languages);
        QVERIFY(strings);
        QTEST(strings->text(u"dr_sequence_button_next"_s), "next");
    }

    void damagedTableIsRefused()
    {
        const QTemporaryDir folder;
        const auto write = [&folder](const QString& name, const QByteArray& json) {
            QFile file(folder.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(json) == json.size();
        };
        QVERIFY(write(u"en.json"_s, "{\"a\":\"one\",\"b\":\"two\"}") && write(u"de.json"_s, "{\"a\":\"eins\"}"));
        const auto strings = DRLocalizedStrings::fromFolder(folder.path(), {u"de"_s});
        QVERIFY(strings);
        QCOMPARE(strings->text(u"a"_s) + strings->text(u"b"_s), u"einstwo"_s);
        QVERIFY(write(u"de.json"_s, "{\"a\":1}"));
        QVERIFY(!DRLocalizedStrings::fromFolder(folder.path(), {u"de"_s}));
        QVERIFY(DRLocalizedStrings::fromFolder(folder.path(), {u"en"_s}));
    }
};

QTEST_GUILESS_MAIN(TestTexts)
#include "TestTexts.moc"
