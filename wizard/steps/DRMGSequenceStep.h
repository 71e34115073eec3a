#pragma once

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"
#include "platform/device/DRDCDevice.h"
#include "platform/sequence/DRSequenceStep.h"
#include "wizard/DRMGContext.h"
#include "wizard/DRMGTooltip.h"

#include <chrono>
#include <optional>

class DRMGSequence;
struct DRMGSelectionBox;

/// What the steps of the program's windows have in common: heading and name of the page, and the values that they share.
/// What needs the migration works only as part of a `DRMGSequence`.
class DRMGSequenceStep : public DRSequenceStep {
    Q_OBJECT

public:
    /// The text of the heading resource.
    [[nodiscard]] QString localizedTitle() const override;

    [[nodiscard]] QStringList analyticsPageViewComponents() const override { return m_pageViewComponents; }

    /// What opens over the link of the page's texts; none for a link without tooltip. Names are compared in any case.
    [[nodiscard]] virtual std::optional<DRMGTooltip> tooltipForLink(const QString& link) const;

    /// A link was clicked, by its name. True when that has been dealt with; the base has nothing to do, since most links
    /// only carry a tooltip.
    virtual bool linkClicked(const QString& link);

protected:
    /// How often a page that waits for the phone looks for it.
    static constexpr std::chrono::milliseconds kLookForPhoneInterval{1000};

    struct Page {
        QString key;
        QString heading;                ///< identifier of the heading's text
        QStringList pageViewComponents; ///< name in page-view events; may be empty
    };

    DRMGSequenceStep(DRMGContext context, const Page& page);

    [[nodiscard]] const DRMGContext& context() const { return m_context; }

    /// The migration that the step belongs to.
    [[nodiscard]] DRMGSequence& migration() const;

    /// The text under the identifier; empty when there is none.
    [[nodiscard]] QString text(const QString& identifier) const;

    /// The texts under the identifiers, put in the places of "%@" in the format.
    [[nodiscard]] QString joined(const QString& format, const QStringList& identifiers) const;

    /// The label of a selection box, with "%i" in the place of the count.
    [[nodiscard]] QString boxLabel(const QString& key) const;

    /// What is to be said of the box's content; empty when it is simply there.
    [[nodiscard]] QString boxStateText(const DRMGSelectionBox& box) const;

    /// The moment in the short style; the word for an unknown one when it is null.
    [[nodiscard]] QString dateText(const QDateTime& moment) const;

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
