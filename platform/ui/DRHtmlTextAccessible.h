#pragma once

#include <QAccessibleWidget>

#include <vector>

class DRHtmlTextView;

/// What screen readers know of an HTML text: the text, to be read piece by piece, and its links as elements of their
/// own, which can be pressed. The toolkit's own description of a text browser knows no links.
class DRHtmlTextAccessible final : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    /// From now on the toolkit describes every DRHtmlTextView in this way.
    static void install();

    /// Tells screen readers that the keyboard's focus is on the link of the view at this place in the text.
    static void tellFocus(DRHtmlTextView& view, int position);

    explicit DRHtmlTextAccessible(DRHtmlTextView& view);
    ~DRHtmlTextAccessible() override;
    DRHtmlTextAccessible(const DRHtmlTextAccessible&) = delete;
    DRHtmlTextAccessible& operator=(const DRHtmlTextAccessible&) = delete;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override;

    // Places in the text count from 0; places on the screen are in points of the desktop.
    void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int startOffset, int endOffset) const override;
    using QAccessibleWidget::text;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    [[nodiscard]] QString attributes(int offset, int* startOffset, int* endOffset) const override;

private:
    DRHtmlTextView& m_view;
    mutable std::vector<QAccessible::Id> m_links; ///< made when they are asked for
};
