#include "app/cli/DRRestoreRun.h"

#include "app/cli/DRRestoreText.h"
#include "app/DRInterrupt.h"

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

DRRestoreRun::DRRestoreRun(DRPhoneUndo::Setup setup, DRRunReporter& reporter, DRInterrupt& interrupt)
    : m_reporter(reporter), m_interrupt(interrupt), m_undo(std::move(setup), *this)
{
}

std::optional<DRPhoneRestorePlan> DRRestoreRun::check(const DRPhoneRestorePlan& plan)
{
    m_reporter.phaseChanged(u"Checking the phone backup"_s, {{u"name"_s, u"check"_s}});
    std::optional<DRPhoneRestorePlan> checked;
    m_interrupt.setHandler([this] {
        m_undo.cancel();
        m_loop.quit();
    });
    m_undo.check(plan, [this, &checked](const DRPhoneRestorePlan& result) {
        checked = result;
        m_loop.quit();
    });
    m_loop.exec();
    m_interrupt.setHandler({});
    return m_interrupt.hasCome() ? std::nullopt : checked;
}

std::optional<DRPhoneRestoreResult> DRRestoreRun::run(const DRDCDevicePointer& phone, const DRPhoneRestorePlan& plan)
{
    if (m_interrupt.hasCome()) {
        return std::nullopt;
    }
    m_sinceStart.start();
    m_undo.start(phone, plan);
    m_interrupt.setHandler([this] { onInterrupt(); });
    m_loop.exec();
    m_interrupt.setHandler({});
    return m_result;
}

void DRRestoreRun::phaseChanged(Phase phase)
{
    m_phase = phase;
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
        m_undo.cancel();
        m_loop.quit();
        return;
    }
    if (!std::exchange(m_hasBeenInterrupted, true)) {
        m_reporter.interruptedWhileWriting();
        return;
    }
    const DRCommandOutcome outcome = DRRunReporter::abandoned(m_undo.keptPath());
    m_reporter.writeLine(DRRestoreText::jsonOfRefusal(outcome));
    m_reporter.tell(outcome);
    std::_Exit(static_cast<int>(DRExitCode::Interrupted));
}
