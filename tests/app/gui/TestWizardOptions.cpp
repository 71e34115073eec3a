#include "app/gui/DRWizardOptions.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

class TestWizardOptions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void argumentsAreUnderstood_data()
    {
        const DRTestTable<QStringList, QString, QString, bool, bool> row("arguments", "backups", "phone", "isError",
                                                                         "isHelp");
        row("nothing typed", {}, u"/of/environment"_s, {}, false, false);
        row("typed goes first", {u"--backups"_s, u"/b"_s, u"--phone=/p"_s}, u"/b"_s, u"/p"_s, false, false);
        row("undo", {u"--restore"_s, u"--phone=/p"_s}, u"/of/environment"_s, u"/p"_s, false, false);
        row("unknown option", {u"--backup-all"_s}, u"/of/environment"_s, {}, true, false);
        row("value missing", {u"--phone"_s}, u"/of/environment"_s, {}, true, false);
        row("too much", {u"transfer"_s}, u"/of/environment"_s, {}, true, false);
        row("help", {u"--help"_s}, u"/of/environment"_s, {}, false, true);
        row("version", {u"--version"_s}, u"/of/environment"_s, {}, false, true);
    }

    void argumentsAreUnderstood()
    {
        QFETCH(QStringList, arguments);
        qputenv("PHONE_MIGRATE_BACKUPS", "/of/environment");
        qunsetenv("PHONE_MIGRATE_PHONE");
        const DRWizardOptions options = DRWizardOptions::parse(QStringList{u"phone-migrate-wizard"_s} + arguments);
        QTEST(options.startup.backupsFolder, "backups");
        QTEST(options.startup.phoneFolder, "phone");
        QTEST(!options.error.isNull(), "isError");
        QTEST(!options.help.isNull(), "isHelp");
        QCOMPARE(options.isRestore, arguments.contains(u"--restore"_s));
    }
};

QTEST_GUILESS_MAIN(TestWizardOptions)

#include "TestWizardOptions.moc"
