#pragma once

#include "wizard/steps/DRMGStorageFigures.h"
#include "wizard/widgets/DRMigrateMemoryWarningPart.h"

#include <QHash>
#include <QMap>
#include <QWidget>

class DRLocalizedStrings;
class QPainter;

/// A bar of the phone's storage: what is in use already, the chosen music, videos and photos, and what stays free. The
/// whole bar turns red when the choice does not fit. Each part has a tooltip; screen readers hear all figures.
class DRMigrateMemoryWarningBar final : public QWidget {
    Q_OBJECT

public:
    using Figures = QHash<QString, quint64>;

    /// An empty bar. The tooltips, the name and the words for screen readers are looked up at once: "memory_bar_music",
    /// "memory_bar_videos", "memory_bar_images", "memory_bar_other", "wizard_storage_free", "wizard_name_storage".
    explicit DRMigrateMemoryWarningBar(const DRLocalizedStrings& strings, QWidget* parent = nullptr);

    /// The figures under their storage keys.
    [[nodiscard]] static Figures figuresOf(const DRMGStorageFigures& storage);

    /// Takes over the figures, bytes under storage keys. A part without a figure keeps its value; total and free become
    /// 0 without one.
    void updateParts(const Figures& figures);

    [[nodiscard]] const QMap<QString, DRMigrateMemoryWarningPart>& parts() const { return m_parts; }
    [[nodiscard]] const QStringList& partsDrawOrder() const { return m_partsDrawOrder; }
    [[nodiscard]] quint64 total() const { return m_total; }
    [[nodiscard]] quint64 free() const { return m_free; }

    /// What the bar looks like while the choice does not fit.
    [[nodiscard]] static QColor overflowColor() { return {0xe2, 0x70, 0x6e}; }

    /// The tooltip at this place of the widget as it was last drawn; empty where no part is.
    [[nodiscard]] QString tooltipAt(const QPointF& position) const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void drawRect(QPainter& painter);
    void placeParts();
    [[nodiscard]] QString description() const;

    QMap<QString, DRMigrateMemoryWarningPart> m_parts;
    QStringList m_partsDrawOrder;
    quint64 m_total = 0;
    quint64 m_free = 0;
    QColor m_overflowColor = overflowColor();
    QColor m_overflowHiliteColor;
    QColor m_overflowShadowColor;
    QString m_freeText;
};
