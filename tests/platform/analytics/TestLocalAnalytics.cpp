#include "platform/analytics/DRLocalAnalytics.h"
#include "tests/support/DRTestClock.h"
#include "tests/support/DRTestFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestLocalAnalytics : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eventsAreLinesOfAPrivateFile()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"state/usage.jsonl"_s);
        const DRTestClock clock;
        DRLocalAnalytics analytics(path, clock);
        analytics.trackEvent(u"Migrate"_s, u"Sequence started"_s, {});
        analytics.trackEvent(u"Migrate"_s, u"Sequence error"_s, u"Error: 1\n"_s);
        analytics.trackPageView({u"migrate"_s, u"welcome"_s});
        QCOMPARE(readFile(path),
                 "{\"action\":\"Sequence started\",\"category\":\"Migrate\",\"time\":\"2014-05-06T07:08:09.000Z\"}\n"
                 "{\"action\":\"Sequence error\",\"category\":\"Migrate\",\"label\":\"Error: 1\\n\","
                 "\"time\":\"2014-05-06T07:08:09.000Z\"}\n"
                 "{\"page\":\"migrate/welcome\",\"time\":\"2014-05-06T07:08:09.000Z\"}\n"_ba);
        constexpr auto kOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                                 QFile::WriteOther | QFile::ExeOther;
        QVERIFY((QFile::permissions(path) & kOthers) == 0);
        QVERIFY((QFile::permissions(QFileInfo(path).path()) & kOthers) == 0);
    }

    void aFullFileIsPutAside()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"usage.jsonl"_s);
        const DRTestClock clock;
        DRLocalAnalytics analytics(path, clock);
        analytics.trackEvent(u"Migrate"_s, u"long"_s, QString(qint64{1024} * 1024, u'x'));
        analytics.trackEvent(u"Migrate"_s, u"first of the new file"_s, {});
        QVERIFY(readFile(path).startsWith("{\"action\":\"first of the new file\""));
        QVERIFY(readFile(path + u".old"_s).size() > qint64{1024} * 1024);
    }

    void failureIsToldOnce()
    {
        const QTemporaryDir folder;
        const DRTestClock clock;
        DRLocalAnalytics analytics(folder.path(), clock); // a folder cannot be appended to
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Usage events cannot be written"_s));
        analytics.trackPageView({u"migrate"_s});
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        analytics.trackPageView({u"migrate"_s});
    }
};

QTEST_GUILESS_MAIN(TestLocalAnalytics)
#include "TestLocalAnalytics.moc"
