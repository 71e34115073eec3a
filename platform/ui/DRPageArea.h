#pragma once

#include <QScrollArea>

/// Where the pages of a window stand, one of them shown. Scrolls when a page does not fit, also by keyboard: it takes
/// the focus only then, which its scroll bar shows. Pages do not grow wider than lines can be read well.
class DRPageArea : public QScrollArea {
    Q_OBJECT

public:
    explicit DRPageArea(QWidget* parent = nullptr);

    /// Shows the page from its top and hides the others, taking it over when it is new.
    void showPage(QWidget* page);

    /// The page that is shown; null before the first.
    [[nodiscard]] QWidget* currentPage() const { return m_currentPage; }

    /// Scrolls as Page Up, Page Down, Home or End says; false for another key or a page that fits.
    bool scrollBy(int key);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* m_pages;
    QWidget* m_currentPage = nullptr;
};
