/// Measures how readily the window answers, without a display: the time from the start to the first painted page, and how
/// long events wait while the content of a backup is read, beside a window that does nothing in the same process. With
/// --transfer also while everything is moved to the phone of the sample, which changes that. The resident memory is that
/// of the process at each of these points; --scale 0 shows it without a backup.
///
///     bench_window [--sample FOLDER] [--scale N] [--transfer]
///
/// FOLDER is made when it is not there: a sample of N times the usual amount, 1,519 messages and 66 photos and videos.

#include "app/DRMigrateStartup.h"
#include "app/gui/DRArtwork.h"
#include "app/gui/DRMigrateWizardWindow.h"
#include "app/sample/DRSample.h"
#include "platform/ui/DRDarkStyle.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepSelectData.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr auto kTick = 5ms;
constexpr auto kIdle = 2000ms;

double resident(const QByteArray& field)
{
    QFile status(u"/proc/self/status"_s);
    const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    return text.mid(text.indexOf(field) + field.size()).trimmed().split(' ').front().toDouble() / 1024;
}

/// What a phase took; how long its events kept the others waiting at most, and the processor time of the main thread in
/// between, which other programs do not change.
struct Waiting {
    Milliseconds longest{0};
    Milliseconds busiest{0};
    Milliseconds all{0};
};

Milliseconds processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// Runs the event loop until the condition holds; a timer tells how long events wait.
Waiting waitUntil(const std::function<bool()>& isDone)
{
    Waiting waiting;
    QEventLoop loop;
    QTimer timer;
    const auto start = Clock::now();
    auto before = start;
    Milliseconds busyBefore = processorTime();
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        const auto now = Clock::now();
        const Milliseconds busy = processorTime();
        waiting.longest = std::max<Milliseconds>(waiting.longest, now - std::exchange(before, now) - kTick);
        waiting.busiest = std::max(waiting.busiest, busy - std::exchange(busyBefore, busy));
        if (isDone()) {
            loop.quit();
        }
    });
    timer.start(kTick);
    loop.exec();
    waiting.all = Clock::now() - start;
    return waiting;
}

void report(const char* phase, const Waiting& waiting)
{
    std::printf("%-12s %8.0f ms, events wait at most %6.1f ms (of work: %6.1f ms), %6.1f MiB\n", phase,
                waiting.all.count(), waiting.longest.count(), waiting.busiest.count(), resident("VmRSS:"));
}

/// Notes when the widget has been painted for the first time.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
    [[nodiscard]] bool isPainted() const { return m_isPainted; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return QObject::eventFilter(watched, event);
    }

private:
    bool m_isPainted = false;
};

DRMigrateStartupOptions sampleIn(const QString& folder, int scale)
{
    if (scale > 0 && !QDir(folder + u"/backups"_s).exists() && !writeSample(folder, scale, DRSystemClock()).isWritten) {
        static_cast<void>(std::fputs("the sample cannot be made\n", stderr));
        std::exit(1);
    }
    return {.backupsFolder = folder + u"/backups"_s,
            .phoneFolder = folder + u"/phone"_s,
            .musicLibrary = folder + u"/music/iTunes Music Library.xml"_s};
}

bool isEverythingLoaded(const DRMGSequence& migration)
{
    const auto* const step = qobject_cast<DRMGSequenceStepSelectData*>(migration.stepForKey(DRMGStepKeys::kSelectData));
    return std::ranges::none_of(step->boxes(),
                                [](const auto& box) { return box.state == DRKindContent::State::Loading; });
}

/// The program's own work from its start; the clock begins before anything else of it.
void measure(const DRMigrateStartupOptions& options, Clock::time_point start, bool withTransfer)
{
    DRMigrateStartup startup(options);
    DRMGContext context = startup.context();
    context.resources.registerBundle(DRArtwork::folder());
    DRDarkStyle::applyToApplication();
    startup.openPhone();
    const auto migration = DRMGSequence::sequence(context);
    DRMigrateWizardWindow window(*migration, startup);
    const PaintWatch watch(window);
    migration->start();
    window.show();
    while (!watch.isPainted()) {
        QCoreApplication::processEvents();
    }
    std::printf("first page   %8.0f ms\n", Milliseconds(Clock::now() - start).count());
    report("idle", waitUntil([end = Clock::now() + kIdle] { return Clock::now() > end; }));

    const auto isOn = [&migration](const QString& key) {
        return migration->currentStep() != nullptr && migration->currentStep()->key() == key;
    };
    QTimer::singleShot(0, migration.get(), &DRSequence::pressNext);
    report("to the data", waitUntil([&] { return !isOn(DRMGStepKeys::kWelcome); }));
    if (!isOn(DRMGStepKeys::kSelectData)) {
        return;
    }
    report("reading", waitUntil([&] { return isEverythingLoaded(*migration); }));
    if (withTransfer) {
        QTimer::singleShot(0, migration.get(), &DRSequence::pressNext);
        report("moving", waitUntil([&] { return !isOn(DRMGStepKeys::kSelectData) && !isOn(DRMGStepKeys::kTransfer); }));
    }
    std::printf("peak %69.1f MiB\n", resident("VmHWM:"));
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QTemporaryDir folder;
    for (const char* const variable : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"}) {
        qputenv(variable, QFile::encodeName(folder.filePath(QLatin1String(variable))));
    }
    QCommandLineParser parser;
    parser.addOption({u"sample"_s, u"where it is or goes"_s, u"folder"_s, folder.filePath(u"sample"_s)});
    parser.addOption({u"scale"_s, u"of a sample that is to be made"_s, u"number"_s, u"10"_s});
    parser.addOption({u"transfer"_s, u"moves everything, too"_s});
    parser.addHelpOption();
    QStringList arguments;
    std::transform(argv, argv + argc, std::back_inserter(arguments),
                   [](const char* argument) { return QFile::decodeName(argument); });
    parser.parse(arguments);
    const auto options = sampleIn(parser.value(u"sample"_s), parser.value(u"scale"_s).toInt());

    const auto start = Clock::now();
    const QApplication application(argc, argv);
    measure(options, start, parser.isSet(u"transfer"_s));
    return 0;
}
