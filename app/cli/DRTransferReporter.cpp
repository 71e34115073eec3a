#include "app/cli/DRTransferReporter.h"

#include "app/cli/DRTransferSummaryText.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRMGSequenceStepTransfer::Phase;

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
    : m_reporter(terminal, line), m_restore(std::move(restore))
{
}

void DRTransferReporter::phaseChanged(Phase phase)
{
    if (const PhaseName* name = nameOfPhase(phase)) {
        m_reporter.phaseChanged(phase == Phase::Done ? QString() : name->title,
                                {{u"phase"_s, static_cast<qint64>(phase)}, {u"name"_s, name->name}});
    }
}

void DRTransferReporter::willBeAbandoned(const QString& phoneBackup)
{
    const DRCommandOutcome outcome = DRRunReporter::abandoned(phoneBackup);
    m_reporter.writeLine(DRTransferSummaryText::jsonOfRefusal(outcome));
    m_reporter.tell(outcome);
}
