#pragma once

#include <QFrame>
#include <QPropertyAnimation>

class DRHtmlTextView;

/// A borderless panel that explains a link: it grows out of the place where the link is, takes no focus from the page
/// and closes on Escape. A text that is longer than the panel scrolls, with the wheel or the Page keys. The window
/// system gives it its shadow.
class DRMigrateTooltipWindowController final : public QFrame {
    Q_OBJECT

public:
    static constexpr QSize kInitialSize{300, 400};
    static constexpr int kTextInset = 20; ///< on every side, in points

    /// Hidden, without text. The parent's window is the one that the panel belongs to.
    explicit DRMigrateTooltipWindowController(QWidget* parent = nullptr);
    ~DRMigrateTooltipWindowController() override;

    /// The place of a panel of this size whose left edge has its middle at the position, moved as far as it must be to
    /// stay within the available area; its upper left corner stays within in any case. All in points of the desktop.
    [[nodiscard]] static QRect frameFor(const QPoint& position, const QSize& size, const QRect& available);

    /// What the panel says; its owner sets the text before it zooms.
    [[nodiscard]] DRHtmlTextView& textView() const { return *m_textView; }

    /// Shows the panel at the position, of no size, and lets it grow to `toSize`; at once where the user has switched
    /// animations off. Screen readers are told the text. In points of the desktop.
    void zoomFromPosition(const QPoint& position, const QSize& toSize);

protected:
    /// Watches the keyboard of the whole program while the panel is shown.
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void tellScreenReaders();
    [[nodiscard]] bool handleKey(int key);

    DRHtmlTextView* m_textView;
    QPropertyAnimation m_growth;
};
