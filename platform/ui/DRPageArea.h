#pragma once

#include <QScrollArea>

/// Where the pages of a window stand, one of them shown. Scrolls when a page does not fit, also by keyboard: it takes
/// the focus only then.
class DRPageArea : public QScrollArea {
    Q_OBJECT

public:
    explicit DRPageArea(QWidget* parent = nullptr);

    /// Shows the page from its top and hides the others, taking it over when it is new.
    void showPage(QWidget* page);

    /// The page that is shown; null before the first.
    [[nodiscard]] QWidget* currentPage() const { return m_currentPage; }

    [[nodiscard]] QSize minimumSizeHint() const override;

private:
    QWidget* m_pages;
    QWidget* m_currentPage = nullptr;
};
