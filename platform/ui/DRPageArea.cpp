#include "platform/ui/DRPageArea.h"

#include "platform/ui/DRAccessibleRole.h"

#include <QScrollBar>
#include <QVBoxLayout>

namespace {

// In average characters and lines of the font: what a page may count on.
constexpr int kLeastCharacters = 48;
constexpr int kLeastLines = 12;

} // namespace

DRPageArea::DRPageArea(QWidget* parent) : QScrollArea(parent), m_pages(new QWidget)
{
    DRAccessibleRole::give(*this, QAccessible::Pane);
    // A layout leaves out what is hidden, so the height is that of the page that is shown, not of the tallest one.
    auto* const column = new QVBoxLayout(m_pages);
    column->setContentsMargins(0, 0, 0, 0);
    setWidget(m_pages);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this,
            [this](int least, int most) { setFocusPolicy(most > least ? Qt::TabFocus : Qt::NoFocus); });
}

void DRPageArea::showPage(QWidget* page)
{
    if (m_pages->layout()->indexOf(page) < 0) {
        m_pages->layout()->addWidget(page);
    }
    if (m_currentPage != nullptr && m_currentPage != page) {
        m_currentPage->hide();
    }
    m_currentPage = page;
    page->show();
    verticalScrollBar()->setValue(0);
}

QSize DRPageArea::minimumSizeHint() const
{
    return {kLeastCharacters * fontMetrics().averageCharWidth(), kLeastLines * fontMetrics().lineSpacing()};
}
