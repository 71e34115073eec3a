#include "wizard/steps/DRMGSequenceStep.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/device/DRDCDeviceController.h"
#include "wizard/DRMGSequence.h"

#include <utility>

using namespace Qt::StringLiterals;

DRMGSequenceStep::DRMGSequenceStep(DRMGContext context, const Page& page)
    : DRSequenceStep(page.key),
      m_context(std::move(context)),
      m_heading(page.heading),
      m_pageViewComponents(page.pageViewComponents)
{
}

QString DRMGSequenceStep::localizedTitle() const
{
    return text(m_heading);
}

DRMGSequence& DRMGSequenceStep::migration() const
{
    auto* const migration = qobject_cast<DRMGSequence*>(sequence());
    Q_ASSERT(migration != nullptr);
    return *migration;
}

QString DRMGSequenceStep::text(const QString& identifier) const
{
    return m_context.strings.text(identifier);
}

DRDCDevicePointer DRMGSequenceStep::activeDevice() const
{
    return m_context.services.deviceController.activeDevice();
}

DRMigrateIPhoneBackupEntryPointer DRMGSequenceStep::iPhoneBackupEntry() const
{
    return sequence()->parameters().value<DRMigrateIPhoneBackupEntryPointer>(DRMGSequence::kIPhoneBackupEntry);
}

QStringList DRMGSequenceStep::selectedTypes() const
{
    return sequence()->parameters().value<QStringList>(DRMGSequence::kSelectedTypes);
}

void DRMGSequenceStep::routeTowardsTransfer()
{
    const auto entry = iPhoneBackupEntry();
    migration().gotoTransferWithDevice(activeDevice(), entry ? entry->bytesNeededForSelectedTypes(selectedTypes()) : 0);
}

void DRMGSequenceStep::relabelCancel(const QString& identifier)
{
    localizations().setAliasString(identifier, u"dr_sequence_button_cancel"_s);
}
