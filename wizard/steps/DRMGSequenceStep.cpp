#include "wizard/steps/DRMGSequenceStep.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/device/DRDCDeviceController.h"
#include "wizard/DRDateText.h"
#include "wizard/DRMGHtml.h"
#include "wizard/DRMGKindTexts.h"
#include "wizard/DRMGSequence.h"
#include "wizard/steps/DRMGSelectionBox.h"

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

std::optional<DRMGTooltip> DRMGSequenceStep::tooltipForLink(const QString&) const
{
    return std::nullopt;
}

bool DRMGSequenceStep::linkClicked(const QString&)
{
    return true;
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

QString DRMGSequenceStep::joined(const QString& format, const QStringList& identifiers) const
{
    QStringList texts;
    for (const QString& identifier : identifiers) {
        texts.append(text(identifier));
    }
    return DRMGHtml::joined(format, texts);
}

QString DRMGSequenceStep::boxLabel(const QString& key) const
{
    return text(DRMGSelection::labelIdentifier(key));
}

QString DRMGSequenceStep::boxStateText(const DRMGSelectionBox& box) const
{
    return DRMGKindTexts::state(m_context.strings, box.state);
}

QString DRMGSequenceStep::dateText(const QDateTime& moment) const
{
    return moment.isValid() ? shortDateText(moment) : text(u"wizard_date_unknown"_s);
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
