#include "wizard/pages/DRMGSelectionEntries.h"

#include "platform/sequence/DRSequenceResourceManager.h"
#include "wizard/widgets/DRMGSelectDataEntry.h"

#include <algorithm>
#include <utility>

namespace {

DRMGSelectDataEntry::Content contentOf(DRKindContent::State state)
{
    switch (state) {
    case DRKindContent::State::Loaded:
        return DRMGSelectDataEntry::Content::Ready;
    case DRKindContent::State::Loading:
        return DRMGSelectDataEntry::Content::Loading;
    case DRKindContent::State::Unreadable:
        return DRMGSelectDataEntry::Content::Unreadable;
    case DRKindContent::State::NotSupported:
    case DRKindContent::State::NotInBackup:
    case DRKindContent::State::NotAvailable:
        break;
    }
    return DRMGSelectDataEntry::Content::Missing;
}

void showBox(DRMGSelectDataEntry& entry, const DRMGSelectionBox& box, const QString& label, const QString& stateText)
{
    entry.setStringValue(label);
    entry.setDataCounter(static_cast<quint64>(box.count));
    entry.setState(box.isTicked ? DRMGSelectDataEntry::kStateTicked : DRMGSelectDataEntry::kStateClear);
    entry.setShowSize(box.sizeBytes.has_value());
    entry.setSizeBytes(box.sizeBytes.value_or(0));
    entry.setContent(contentOf(box.state), stateText);
}

} // namespace

DRMGSelectionEntries::DRMGSelectionEntries(QWidget& page, DRMGPageTools tools, Source source)
    : m_page(page), m_tools(std::move(tools)), m_source(std::move(source))
{
}

DRMGSelectDataEntry* DRMGSelectionEntries::add(const DRMGSelectionCategory& category)
{
    const DRMGContext& context = m_tools.context;
    auto* const entry = new DRMGSelectDataEntry(context.resources, context.timers, &m_page);
    entry->setObjectName(category.key);
    entry->setIcon(QIcon(context.resources.pathForResource(category.iconName)));
    entry->hide();
    QObject::connect(entry, &DRMGSelectDataEntry::selectDataEntrySelectionDidChange, entry,
                     [entry, key = category.key, setTicked = m_source.setTicked] {
                         setTicked(key, entry->state() == DRMGSelectDataEntry::kStateTicked);
                     });
    m_entries[category.key] = entry;
    return entry;
}

void DRMGSelectionEntries::show(const DRMGSelectionBoxes& boxes)
{
    for (const auto& [key, entry] : m_entries) {
        const auto box = std::ranges::find(boxes, key, &DRMGSelectionBox::key);
        if (box != boxes.end()) {
            showBox(*entry, *box, m_source.label(key), m_source.stateText(*box));
        }
        entry->setVisible(box != boxes.end());
    }
}
