#pragma once

#include "wizard/steps/DRMGSelectionBox.h"
#include "wizard/steps/DRMGSequenceStep.h"
#include "wizard/steps/DRMGStorageFigures.h"

/// The page shown when the selection does not fit on the phone. It offers the media again, with their sizes and the
/// phone's storage. Next routes towards the transfer, which shows this page again while it does not fit; Cancel returns
/// to the data selection.
class DRMGSequenceStepMemoryWarning final : public DRMGSequenceStep {
    Q_OBJECT

public:
    explicit DRMGSequenceStepMemoryWarning(const DRMGContext& context);

    void stepWillAppearInDirection(DRSequenceDirection direction) override;

    /// Sends the error event, on every visit.
    void stepDidAppearInDirection(DRSequenceDirection direction) override;
    void stepWillDisappear() override;

    [[nodiscard]] bool sequenceShouldChangeToNextStep() override;
    [[nodiscard]] bool sequenceShouldCancel() override;

    /// One box per media kind, in display order, with sizes.
    [[nodiscard]] const DRMGSelectionBoxes& boxes() const { return m_boxes; }
    using DRMGSequenceStep::boxLabel;
    using DRMGSequenceStep::boxStateText;

    /// Above and below the boxes.
    [[nodiscard]] QString bodyHtml() const;
    [[nodiscard]] QString pressNextHtml() const;

    /// The storage in words, from left to right as the bar shows it, and the bar's name for screen readers. The last row
    /// is what stays free, or what is missing.
    struct StorageRow {
        enum class Part { Other, Music, Videos, Images, Free, Missing };

        Part part = Part::Other;
        QString label;
        quint64 sizeBytes = 0;

        bool operator==(const StorageRow&) const = default;
    };
    [[nodiscard]] std::vector<StorageRow> storageRows() const;
    [[nodiscard]] QString storageName() const;

    /// The phone's storage with the ticked media on it; all 0 without a phone.
    [[nodiscard]] const DRMGStorageFigures& storage() const { return m_storage; }

    /// That it does not fit although the bar has room for the media: how much is needed, of kinds that have no box here,
    /// too, and how much is free. Empty otherwise. Plain text.
    [[nodiscard]] const QString& statusText() const { return m_statusText; }

    /// Ticks or clears a box. Next is disabled while ticked media overflow the phone.
    void setTicked(const QString& key, bool ticked);

private:
    void updateEntry();
    void updateMemoryWithEntry(const DRMigrateIPhoneBackupEntry& entry);
    void saveSelections();
    [[nodiscard]] QString whatIsMissing(const DRMigrateIPhoneBackupEntry& entry) const;

    DRMGSelectionBoxes m_boxes;
    DRMGStorageFigures m_storage;
    QString m_statusText;
};
