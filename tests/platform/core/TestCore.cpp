#include "platform/core/DRDates.h"
#include "platform/core/DREventLoopTimerSource.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/core/DRThreadPoolTaskQueue.h"
#include "platform/core/DRUserFolders.h"
#include "platform/core/DRUtf8.h"
#include "tests/support/DRTestTable.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryFile>
#include <QThread>

#include <atomic>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr qint64 kMost = std::numeric_limits<qint64>::max();
constexpr qint64 kLeast = std::numeric_limits<qint64>::min();

} // namespace

class TestCore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void secondsSaturate_data()
    {
        const DRTestTable<double, qint64, qint64> row("seconds", "integer", "milliseconds");
        row("truncated toward zero", -1.9996, -1, -1999);
        row("just below the limit", 9223372036854774784.0, 9223372036854774784, kMost);
        row("at the limit", 9223372036854775808.0, kMost, kMost);
        row("at the lower limit", -9223372036854775808.0, kLeast, kLeast);
        row("infinity", kInfinity, kMost, kMost);
        row("minus infinity", -kInfinity, kLeast, kLeast);
        row("not a number", std::numeric_limits<double>::quiet_NaN(), 0, 0);
    }

    void secondsSaturate()
    {
        QFETCH(double, seconds);
        QTEST(DRDates::saturatingInteger(seconds), "integer");
        QTEST(DRDates::unixMilliseconds(seconds), "milliseconds");
    }

    void datesCountFromTheReferenceDate()
    {
        QCOMPARE(DRDates::rfc3339(DRDates::fromReferenceSeconds(416082600)), u"2014-03-09T18:30:00Z"_s);
        QCOMPARE(DRDates::rfc3339(DRDates::fromReferenceSeconds(std::numeric_limits<double>::quiet_NaN())),
                 u"2001-01-01T00:00:00Z"_s);
        QCOMPARE(DRDates::toReferenceSeconds(DRDates::fromReferenceSeconds(-0.25)), -0.25);
        QCOMPARE(DRDates::fromReferenceSeconds(kInfinity).toMSecsSinceEpoch(), kMost);
        QVERIFY(DRDates::toReferenceSeconds(DRDates::fromUnixSeconds(-kInfinity)) < -9e15);
        QVERIFY(DRDates::rfc3339(QDateTime()).isNull() &&
                DRDates::rfc3339(DRDates::fromUnixSeconds(kInfinity)).isEmpty());
    }

    void textIsDecodedAndEncodedWhole_data()
    {
        const DRTestTable<QByteArray, QString, QByteArray> row("bytes", "text", "encoded");
        row("leading U+FEFF", "\xEF\xBB\xBF\xEF\xBB\xBFx", u"\uFEFF\uFEFFx"_s, "\xEF\xBB\xBF\xEF\xBB\xBFx");
        row("NUL", QByteArray("a\0b", 3), u"ab"_s, "ab");
        row("invalid", "a\xFF", u"a\uFFFD"_s, "a\xEF\xBF\xBD");
        row("beyond the BMP", "\xF0\x9F\x98\x80", u"\U0001F600"_s, "\xF0\x9F\x98\x80");
    }

    void textIsDecodedAndEncodedWhole()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(DRUtf8::decode(bytes), text);
        QTEST(DRUtf8::encode(text), "encoded");
    }

    void loneSurrogatesAreReplaced()
    {
        const QString text = QString(QChar(0xDC00)) + u"\U0001F600"_s + QChar(0xD83D);
        QCOMPARE(DRUtf8::encode(text), "\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD");
        QCOMPARE(DRUtf8::encode(u"a"_s + QChar(u'\0')), "a");
    }

    void controlCharactersDoNotReachTheTerminal()
    {
        QCOMPARE(withoutControlCharacters(u"a\x1b[2J\n\u0085\u202E\u2066b\u00E9"_s), u"a?[2J????b\u00E9"_s);
    }

    void observersChangeDuringDelivery()
    {
        DRNotificationCenter center;
        QStringList calls;
        std::unique_ptr<DRNotificationCenter::Registration> own;
        std::unique_ptr<DRNotificationCenter::Registration> next;
        std::unique_ptr<DRNotificationCenter::Registration> added;
        own = center.observe(u"event"_s, [&](const DRNotification&) {
            calls << u"own"_s;
            own.reset();
            next.reset();
            added = center.observe(u"event"_s, [&](const DRNotification&) { calls << u"added"_s; });
        });
        next = center.observe(u"event"_s, [&](const DRNotification&) { calls << u"next"_s; });
        const auto last = center.observe(u"event"_s, [&](const DRNotification&) { calls << u"last"_s; });
        center.post({.name = u"event"_s, .object = {}, .userInfo = {}});
        center.post({.name = u"other"_s, .object = {}, .userInfo = {}});
        QCOMPARE(calls, (QStringList{u"own"_s, u"last"_s}));
        center.post({.name = u"event"_s, .object = {}, .userInfo = {}});
        QCOMPARE(calls.mid(2), (QStringList{u"last"_s, u"added"_s}));
    }

    void registrationMayOutliveItsCenter()
    {
        auto center = std::make_unique<DRNotificationCenter>();
        auto registration = center->observe(u"event"_s, [](const DRNotification&) {});
        center.reset();
        registration.reset();
    }

    void mainTasksRunInTheOrderOfSubmission()
    {
        DRThreadPoolTaskQueue queue;
        constexpr int kTasks = 200;
        QList<int> order;
        bool ranElsewhere = false;
        queue.runInBackground([&] {
            for (int i = 0; i < kTasks; ++i) {
                queue.runOnMainThread([&, i] {
                    order << i;
                    ranElsewhere |= QThread::currentThread() != thread();
                });
            }
        });
        QTRY_COMPARE(order.size(), qsizetype{kTasks});
        QVERIFY(std::is_sorted(order.cbegin(), order.cend()) && !ranElsewhere);
        queue.runOnMainThread([&] { order.clear(); });
        QVERIFY(!order.isEmpty()); // not before the caller has returned to the event loop
        QTRY_VERIFY(order.isEmpty());
    }

    void fourTasksRunAtTheSameTime()
    {
        std::atomic<int> arrived = 0;
        DRThreadPoolTaskQueue queue;
        for (int i = 0; i < 4; ++i) {
            queue.runInBackground([&arrived] {
                ++arrived;
                arrived.notify_all();
                for (int seen = arrived; seen < 4; seen = arrived) {
                    arrived.wait(seen);
                }
            });
        }
        QTRY_COMPARE(arrived.load(), 4);
    }

    void timerMayEndItself()
    {
        DREventLoopTimerSource source;
        int ticks = 0;
        std::unique_ptr<DRTimer> repeating;
        repeating = source.repeatEvery(1ms, [&] {
            if (++ticks == 3) {
                repeating.reset();
            }
        });
        bool hasEnded = false;
        std::unique_ptr<DRTimer> once = source.runAfter(1ms, [&] { hasEnded = !hasEnded; });
        QTRY_COMPARE(ticks, 3);
        QTRY_VERIFY(hasEnded);
        QVERIFY(!repeating);
    }

    void relativeBaseFoldersAreIgnored()
    {
        const QByteArray before = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", "relative");
        const DRUserFolders folders = DRUserFolders::ofCurrentUser();
        qputenv("XDG_DATA_HOME", "/base/");
        const QString absolute = DRUserFolders::ofCurrentUser().data;
        qputenv("XDG_DATA_HOME", before);
        QCOMPARE(folders.data, QDir::home().canonicalPath() + u"/.local/share/phone-migrate"_s);
        QCOMPARE(absolute, u"/base/phone-migrate"_s);
    }

    void textTableIsOneObjectOfTexts_data()
    {
        const DRTestTable<QByteArray, bool> row("json", "isRead");
        row("table", "{'IDS_A': 'text'}", true);
        row("number", "{'IDS_A': 1}", false);
        row("array", "['IDS_A']", false);
        row("cut", "{'IDS_A': 'te", false);
    }

    void textTableIsOneObjectOfTexts()
    {
        QFETCH(QByteArray, json);
        json.replace('\'', '"');
        QFETCH(bool, isRead);
        QTemporaryFile file;
        QVERIFY(file.open() && file.write(json) == json.size() && file.flush());
        const auto strings = DRLocalizedStrings::fromFile(file.fileName());
        QCOMPARE(strings.has_value(), isRead);
        QVERIFY(!isRead || (strings->text(u"IDS_A"_s) == u"text" && strings->text(u"IDS_B"_s).isEmpty()));
    }
};

QTEST_GUILESS_MAIN(TestCore)

#include "TestCore.moc"
