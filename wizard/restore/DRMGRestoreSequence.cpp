#include "wizard/restore/DRMGRestoreSequence.h"

#include "platform/core/DRLocalizedStrings.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "wizard/restore/DRMGRestoreKeys.h"
#include "wizard/restore/DRMGRestoreStepChoose.h"
#include "wizard/restore/DRMGRestoreStepOutcome.h"
#include "wizard/restore/DRMGRestoreStepPutBack.h"

using namespace Qt::StringLiterals;

DRMGRestoreSequence::DRMGRestoreSequence(const DRMGContext& context, const Backups& backups)
    : DRSequence(context.analytics), m_context(context)
{
    using namespace DRMGRestoreGroups;
    m_context.resources.registerBundle(u":/migrate/images"_s); // of programs that show the pages
    m_choose = push(std::make_unique<DRMGRestoreStepChoose>(m_context, backups.folder, backups.preferred), kChoose,
                    u"wizard_restore_group_choose"_s);
    m_putBack = push(std::make_unique<DRMGRestoreStepPutBack>(m_context, backups.isWorkingFolderInUse), kPutBack,
                     u"wizard_restore_group_put_back"_s);
    m_outcome = push(std::make_unique<DRMGRestoreStepOutcome>(m_context), kFinish, u"IDS_STEPWIZ_FINISH"_s);
}

DRMGRestoreSequence::~DRMGRestoreSequence() = default;

template <typename Step> Step* DRMGRestoreSequence::push(std::unique_ptr<Step> step, int group, const QString& title)
{
    Step* const pushed = step.get();
    addStepGroupWithIdentifier(group, m_context.strings.text(title));
    pushStep(std::move(step), group);
    return pushed;
}

bool DRMGRestoreSequence::hasStepGroupFailed(int identifier) const
{
    return identifier == DRMGRestoreGroups::kPutBack && currentStep() == m_outcome && m_outcome->hasFailed();
}

void DRMGRestoreSequence::updateUI()
{
    DRSequence::updateUI();
    setNextKeyEquivalent(currentStep() == m_outcome ? u"\r"_s : QString());
}

QStringList DRMGRestoreSequence::analyticsPageViewComponentsForComponents(const QStringList& components) const
{
    return QStringList{u"restore"_s} + components;
}
