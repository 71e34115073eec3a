#include "app/gui/DRWizardOptions.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestWizardOptions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void argumentsAreUnderstood_data();
    void argumentsAreUnderstood();
};

void TestWizardOptions::argumentsAreUnderstood_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("backups");
    QTest::addColumn<QString>("phone");
    QTest::addColumn<bool>("isError");
    QTest::addColumn<bool>("isHelp");
    QTest::newRow("nothing typed") << QStringList() << u"/of/environment"_s << QString() << false << false;
    QTest::newRow("typed goes first") << QStringList{u"--backups"_s, u"/b"_s, u"--phone=/p"_s} << u"/b"_s << u"/p"_s
                                      << false << false;
    QTest::newRow("unknown option") << QStringList{u"--backup-all"_s} << u"/of/environment"_s << QString() << true
                                    << false;
    QTest::newRow("value missing") << QStringList{u"--phone"_s} << u"/of/environment"_s << QString() << true << false;
    QTest::newRow("too much") << QStringList{u"transfer"_s} << u"/of/environment"_s << QString() << true << false;
    QTest::newRow("help") << QStringList{u"--help"_s} << u"/of/environment"_s << QString() << false << true;
    QTest::newRow("version") << QStringList{u"--version"_s} << u"/of/environment"_s << QString() << false << true;
}

void TestWizardOptions::argumentsAreUnderstood()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, isError);
    QFETCH(bool, isHelp);
    qputenv("PHONE_MIGRATE_BACKUPS", "/of/environment");
    qunsetenv("PHONE_MIGRATE_PHONE");
    const DRWizardOptions options = DRWizardOptions::parse(QStringList{u"phone-migrate-wizard"_s} + arguments);
    QTEST(options.startup.backupsFolder, "backups");
    QTEST(options.startup.phoneFolder, "phone");
    QCOMPARE(!options.error.isNull(), isError);
    QCOMPARE(!options.help.isNull(), isHelp);
}

QTEST_GUILESS_MAIN(TestWizardOptions)

#include "TestWizardOptions.moc"
