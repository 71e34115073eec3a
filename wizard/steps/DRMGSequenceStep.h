#pragma once

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"
#include "platform/device/DRDCDevice.h"
#include "platform/sequence/DRSequenceStep.h"
#include "wizard/DRMGContext.h"

class DRMGSequence;

/// What the wizard's steps have in common: heading and name of the page, and the values that they share. Works only as
/// part of a `DRMGSequence`.
class DRMGSequenceStep : public DRSequenceStep {
    Q_OBJECT

public:
    /// The text of the heading resource.
    [[nodiscard]] QString localizedTitle() const override;

    [[nodiscard]] QStringList analyticsPageViewComponents() const override { return m_pageViewComponents; }

protected:
    struct Page {
        QString key;
        QString heading;                ///< identifier of the heading's text
        QStringList pageViewComponents; ///< name in page-view events; may be empty
    };

    DRMGSequenceStep(DRMGContext context, const Page& page);

    [[nodiscard]] const DRMGContext& context() const { return m_context; }

    /// The sequence that the step belongs to.
    [[nodiscard]] DRMGSequence& migration() const;

    /// The text under the identifier; empty when there is none.
    [[nodiscard]] QString text(const QString& identifier) const;

    /// The phone in use; null when there is none.
    [[nodiscard]] DRDCDevicePointer activeDevice() const;

    /// The chosen iPhone backup; null before the choice.
    [[nodiscard]] DRMigrateIPhoneBackupEntryPointer iPhoneBackupEntry() const;

    /// The data-type keys to move; empty before the first selection.
    [[nodiscard]] QStringList selectedTypes() const;

    /// Goes on with the stored selection: to the transfer or to what stands in its way.
    void routeTowardsTransfer();

    /// Gives the Cancel button another text while this step is shown.
    void relabelCancel(const QString& identifier);

private:
    DRMGContext m_context;
    QString m_heading;
    QStringList m_pageViewComponents;
};
