#include "app/gui/DRSleepInhibitor.h"
#include "platform/ui/DRDarkStyle.h"
#include "tests/app/gui/DRRestoreWindowRun.h"
#include "wizard/restore/DRMGRestoreKeys.h"

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QProcess>
#include <QStandardPaths>

#include <array>
#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRMGSequenceStepTransfer::Phase;

constexpr int kLongest = 60'000; ///< milliseconds that a transfer of the sample may take on a busy machine

/// Stands for the system: gives out one end of a pipe and sees at the other when it is let go.
class Login : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    ~Login() override { forget(); }

    [[nodiscard]] bool isHeld() const
    {
        pollfd end{.fd = m_end, .events = POLLIN, .revents = 0};
        return m_end >= 0 && ::poll(&end, 1, 0) == 0; // nothing is ever written, so only a closed pipe has news
    }
    [[nodiscard]] const QStringList& requests() const { return m_requests; }

public Q_SLOTS:
    QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why, const QString& mode)
    {
        m_requests.append(QStringList{what, who, why, mode}.join(u'|'));
        forget();
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            return {};
        }
        m_end = ends[0];
        QDBusUnixFileDescriptor given;
        given.giveFileDescriptor(ends[1]);
        return given;
    }

private:
    void forget()
    {
        if (m_end >= 0) {
            ::close(m_end);
        }
        m_end = -1;
    }

    int m_end = -1;
    QStringList m_requests;
};

} // namespace

/// The computer is kept awake on a bus of its own.
class TestSleepInhibitor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString program = QStandardPaths::findExecutable(u"dbus-daemon"_s);
        if (program.isEmpty()) {
            QSKIP("dbus-daemon is not installed");
        }
        m_bus.start(program, {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s});
        QVERIFY(m_bus.waitForReadyRead());
        const QByteArray address = m_bus.readLine().trimmed();
        QVERIFY(qputenv("DBUS_SYSTEM_BUS_ADDRESS", address));

        QDBusConnection system = QDBusConnection::connectToBus(QString::fromUtf8(address), u"system"_s);
        QVERIFY(system.registerObject(u"/org/freedesktop/login1"_s, &m_login, QDBusConnection::ExportAllSlots));
        QVERIFY(system.registerService(u"org.freedesktop.login1"_s));
        DRDarkStyle::applyToApplication();
    }

    void cleanupTestCase()
    {
        QDBusConnection::disconnectFromBus(u"system"_s);
        m_bus.kill();
        m_bus.waitForFinished();
    }

    void awakeWhileATransferRuns()
    {
        const DRWizardPlaces places;
        const DRWizardRun run(places);
        auto& transfer = run.step<DRMGSequenceStepTransfer>(DRMGStepKeys::kTransfer);
        bool wasHeld = false;
        connect(&transfer, &DRMGSequenceStepTransfer::progressPhaseChanged, run.window.get(),
                [&] { wasHeld = transfer.progressPhase() == Phase::TransferMedia ? m_login.isHeld() : wasHeld; });
        run.click(u"next"_s);
        QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectData);
        QVERIFY(m_login.requests().isEmpty());
        run.click(u"next"_s);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGStepKeys::kComplete, kLongest);
        QVERIFY(wasHeld);
        QTRY_VERIFY(!m_login.isHeld());
        QCOMPARE(m_login.requests().size(), 1);
        QVERIFY(m_login.requests().front().startsWith(u"sleep:idle|"_s));
        QVERIFY(m_login.requests().front().endsWith(u"|block"_s));

        // The same while the apps are put back.
        run.window->showPhoneBackups();
        const DRRestoreWindowRun undo(*run.window->restoreWindow());
        auto& putBack = undo.sequence().putBack();
        wasHeld = false;
        connect(&putBack, &DRMGRestoreStepPutBack::workPhaseChanged, &undo.widget(), [&] {
            wasHeld = putBack.phase() == DRMGRestoreStepPutBack::Phase::Verify ? m_login.isHeld() : wasHeld;
        });
        undo.click(u"next"_s);
        QTRY_COMPARE_WITH_TIMEOUT(undo.pageKey(), DRMGRestoreKeys::kOutcome, kLongest);
        QVERIFY(wasHeld);
        QTRY_VERIFY(!m_login.isHeld());
    }

    void releasedBeforeTheSystemAnswers()
    {
        const auto before = m_login.requests().size();
        DRSleepInhibitor inhibitor;
        inhibitor.inhibit(u"who"_s, u"why"_s);
        inhibitor.inhibit(u"who"_s, u"why"_s);
        inhibitor.release();
        QTRY_COMPARE(m_login.requests().size(), before + 1);
        QTRY_VERIFY(!m_login.isHeld());
        inhibitor.inhibit(u"who"_s, u"why"_s);
        QTRY_VERIFY(m_login.isHeld());
    }

    void systemThatRefuses()
    {
        QDBusConnection system(u"system"_s);
        system.unregisterObject(u"/org/freedesktop/login1"_s);
        DRSleepInhibitor inhibitor;
        inhibitor.inhibit(u"who"_s, u"why"_s);
        QTRY_VERIFY(inhibitor.findChildren<QObject*>().isEmpty()); // the answer has come
        inhibitor.release();
    }

private:
    QProcess m_bus;
    Login m_login;
};

QTEST_MAIN(TestSleepInhibitor)

#include "TestSleepInhibitor.moc"
