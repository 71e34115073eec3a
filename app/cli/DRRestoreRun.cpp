#include "app/cli/DRRestoreRun.h"

#include "app/cli/DRRestoreText.h"
#include "app/DRInterrupt.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRTaskQueue.h"

#include <array>
#include <cstdlib>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRPhoneRestore::Phase;

struct PhaseName {
    QString name;  ///< for scripts
    QString title; ///< for people
};

const PhaseName& nameOf(Phase phase)
{
    static const std::array<PhaseName, 3> kNames{{
        {u"backUp"_s, u"Backing up the phone's apps as they are now"_s},
        {u"restore"_s, u"Writing the phone's apps"_s},
        {u"verify"_s, u"Verifying the phone's apps"_s},
    }};
    return kNames.at(static_cast<std::size_t>(phase));
}

} // namespace

DRRestoreRun::DRRestoreRun(const DRMigrateServices& services, DRRunReporter& reporter, DRInterrupt& interrupt)
    : m_services(services), m_reporter(reporter), m_interrupt(interrupt)
{
}

std::optional<DRPhoneRestorePlan> DRRestoreRun::check(const DRPhoneRestorePlan& plan)
{
    m_reporter.phaseChanged(u"Checking the phone backup"_s, {{u"name"_s, u"check"_s}});
    // Both outlive an interrupted check, which goes on in the background until the program ends.
    const auto checked = std::make_shared<DRPhoneRestorePlan>(plan);
    const auto loop = std::make_shared<QEventLoop>();
    m_interrupt.setHandler([loop] { loop->quit(); });
    m_services.taskQueue.runInBackground([checked, loop, &queue = m_services.taskQueue] {
        checked->check();
        queue.runOnMainThread([loop] { loop->quit(); });
    });
    loop->exec();
    m_interrupt.setHandler({});
    return m_interrupt.hasCome() ? std::nullopt : std::optional(*checked);
}

std::optional<DRPhoneRestoreResult> DRRestoreRun::run(DRPhoneRestore::Request request, std::function<void()> willWrite)
{
    if (m_interrupt.hasCome()) {
        return std::nullopt;
    }
    m_willWrite = std::move(willWrite);
    m_sinceStart.start();
    m_restore = DRPhoneRestore::start(std::move(request), m_services, *this);
    m_interrupt.setHandler([this] { onInterrupt(); });
    m_loop.exec();
    m_interrupt.setHandler({});
    return m_result;
}

void DRRestoreRun::phaseChanged(Phase phase)
{
    m_phase = phase;
    if (phase == Phase::Restore) {
        m_willWrite();
    }
    m_reporter.phaseChanged(nameOf(phase).title, {{u"name"_s, nameOf(phase).name}});
}

void DRRestoreRun::progressed(double fraction)
{
    const double seconds = static_cast<double>(m_sinceStart.elapsed()) / 1000.0;
    m_reporter.progressed(fraction, fraction > 0.0 ? seconds * (1.0 - fraction) / fraction : 0.0);
}

void DRRestoreRun::ended(const DRPhoneRestoreResult& result)
{
    m_result = result;
    m_loop.quit();
}

void DRRestoreRun::onInterrupt()
{
    if (m_phase == Phase::BackUp) {
        m_restore->cancel();
        m_loop.quit();
        return;
    }
    if (!std::exchange(m_hasBeenInterrupted, true)) {
        m_reporter.interruptedWhileWriting();
        return;
    }
    const DRCommandOutcome outcome = DRRunReporter::abandoned(m_restore->keptPath());
    m_reporter.writeLine(DRRestoreText::jsonOfRefusal(outcome));
    m_reporter.tell(outcome);
    std::_Exit(static_cast<int>(DRExitCode::Interrupted));
}
