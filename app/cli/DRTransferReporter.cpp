#include "app/cli/DRTransferReporter.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRTerminal.h"
#include "app/cli/DRTransferSummaryText.h"
#include "platform/core/DRLog.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRMGSequenceStepTransfer::Phase;

constexpr qint64 kMillisecondsBetweenStatusLines = 100;

struct PhaseName {
    Phase phase;
    QString name;  ///< for scripts
    QString title; ///< for people
};

const PhaseName* nameOfPhase(Phase phase)
{
    static const std::array<PhaseName, 7> kNames{{
        {Phase::BackUp, u"backUp"_s, u"Backing up the phone's apps"_s},
        {Phase::Load, u"load"_s, u"Reading the phone's apps"_s},
        {Phase::Merge, u"merge"_s, u"Adding the iPhone's content"_s},
        {Phase::Save, u"save"_s, u"Packing the phone's apps"_s},
        {Phase::Restore, u"restore"_s, u"Writing the phone's apps"_s},
        {Phase::TransferMedia, u"transferMedia"_s, u"Copying files to the phone"_s},
        {Phase::Done, u"done"_s, u"Done"_s},
    }};
    const auto found = std::ranges::find(kNames, phase, &PhaseName::phase);
    return found == kNames.end() ? nullptr : &*found;
}

} // namespace

DRTransferReporter::DRTransferReporter(DRTerminal& terminal, const DRCommandLine& line, RestoreHandler restore)
    : m_terminal(terminal),
      m_progress(terminal, line.json && line.progress == DRProgressMode::Auto ? DRProgressMode::None : line.progress),
      m_restore(std::move(restore)),
      m_isJson(line.json)
{
}

void DRTransferReporter::phaseChanged(Phase phase)
{
    const PhaseName* name = nameOfPhase(phase);
    if (name == nullptr) {
        return;
    }
    if (phase != Phase::Done) {
        m_progress.phase(name->title);
    }
    writeLine({{u"type"_s, u"phase"_s}, {u"phase"_s, static_cast<qint64>(phase)}, {u"name"_s, name->name}});
}

void DRTransferReporter::progressed(double fraction, double secondsRemaining)
{
    m_progress.progress(fraction, DRMGSequenceStepTransfer::timeText(secondsRemaining));
    if (m_sinceStatus.isValid() && m_sinceStatus.elapsed() < kMillisecondsBetweenStatusLines) {
        return;
    }
    m_sinceStatus.start();
    const double seconds = std::isfinite(secondsRemaining) ? secondsRemaining : 0.0;
    writeLine({{u"type"_s, u"status"_s}, {u"fraction"_s, fraction}, {u"secondsRemaining"_s, seconds}});
}

void DRTransferReporter::warned(const QString& message)
{
    writeLine({{u"type"_s, u"warning"_s}, {u"message"_s, message}});
    m_terminal.say(u"Warning: "_s + withoutControlCharacters(message));
}

void DRTransferReporter::restoreWillBegin()
{
    m_restore();
}

void DRTransferReporter::interruptedWhileWriting()
{
    m_terminal.say(u"The phone is being written; this is finished first. Pressing Ctrl-C again ends at once and may "
                   u"leave the phone "
                   "partly changed."_s);
}

void DRTransferReporter::willBeAbandoned(const QString& phoneBackup)
{
    const QString where =
        phoneBackup.isEmpty()
            ? QString()
            : u" Its apps as they were before lie in %1."_s.arg(withoutControlCharacters(phoneBackup));
    const DRCommandOutcome outcome{
        DRExitCode::Interrupted, u"Stopped while the phone was written; it may be partly changed."_s + where, {}};
    writeLine(DRTransferSummaryText::jsonOfRefusal(outcome));
    m_terminal.error(outcome);
}

void DRTransferReporter::writeLine(const QJsonObject& object)
{
    if (m_isJson) {
        m_terminal.data(DRJsonOutput::line(object));
    }
}
