#pragma once

#include "wizard/DRMGContext.h"

#include <QHash>
#include <QWidget>

#include <functional>

class DRHtmlTextView;
class DRIconLabel;
class DRMGSequenceStep;
class DRMigrateTooltipWindowController;
class QHBoxLayout;
class QLabel;
class QPushButton;

/// What the pages work with. The context outlives them.
struct DRMGPageTools {
    const DRMGContext& context;
    std::function<void()> chooseBackupsFolder;   ///< lets the person choose; the page has no button for it when unset
    std::function<void()> choosePhone;           ///< the same
    std::function<void()> showPhoneBackups = {}; ///< from which a phone can be put back; the same
};

/// The view of one step: shows what the step says whenever that changes, and decides nothing. What its texts say, and
/// what opens over their links, comes from the step.
class DRMGPage : public QWidget {
    Q_OBJECT

protected:
    static constexpr QSize kSignSize{56, 56}; ///< of the picture that stands for what a page says, in points

    /// The step outlives the page.
    DRMGPage(DRMGSequenceStep& step, DRMGPageTools tools);

    /// Brings the widgets in line with the step. Runs when the page is shown and when the step has changed.
    virtual void render() = 0;

    [[nodiscard]] const DRMGPageTools& tools() const { return m_tools; }
    [[nodiscard]] QString text(const QString& identifier) const;

    /// Space between parts of the page that belong together, and between those that do not; both grow with the font.
    [[nodiscard]] int smallGap() const;
    [[nodiscard]] int largeGap() const;

    enum class Tooltips { None, OfLinks };

    /// An HTML text of the step, whose links are those of the step, with its tooltips if they have any. Texts cannot be
    /// selected.
    [[nodiscard]] DRHtmlTextView* makeHtmlView(Tooltips tooltips = Tooltips::None);

    /// Gives the view the text, unless it shows that already: setting it anew would take away the focus and the tooltip
    /// of its links.
    void showHtml(DRHtmlTextView& view, const QString& html);

    /// A label for plain text, of any length.
    [[nodiscard]] QLabel* makeLabel();

    /// A picture of this size, in points.
    [[nodiscard]] DRIconLabel* makePicture(const QSize& size = kSignSize);

    /// A row that begins with the picture that stands for what the page says.
    [[nodiscard]] QHBoxLayout* makePictureRow(DRIconLabel* picture) const;

    /// A button that has the program do something beside the step's own business; null when the program does not.
    [[nodiscard]] QPushButton* makeButton(const QString& textIdentifier, const std::function<void()>& action);

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void showTooltip(const QString& link, const QPoint& globalPosition);

    DRMGSequenceStep& m_step;
    DRMGPageTools m_tools;
    QHash<const DRHtmlTextView*, QString> m_shownHtml;
    DRMigrateTooltipWindowController* m_tooltip;
};
