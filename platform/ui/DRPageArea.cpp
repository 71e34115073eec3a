#include "platform/ui/DRPageArea.h"

#include "platform/ui/DRAccessibleRole.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// In average characters and lines of the font: what a page may count on.
constexpr int kLeastCharacters = 64;
constexpr int kLeastLines = 14;

constexpr int kMostCharacters = 130;

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

bool DRPageArea::scrollBy(int key)
{
    QScrollBar* const bar = verticalScrollBar();
    if (bar->maximum() <= bar->minimum()) {
        return false;
    }
    switch (key) {
    case Qt::Key_PageUp:
        bar->triggerAction(QScrollBar::SliderPageStepSub);
        return true;
    case Qt::Key_PageDown:
        bar->triggerAction(QScrollBar::SliderPageStepAdd);
        return true;
    case Qt::Key_Home:
        bar->triggerAction(QScrollBar::SliderToMinimum);
        return true;
    case Qt::Key_End:
        bar->triggerAction(QScrollBar::SliderToMaximum);
        return true;
    default:
        return false;
    }
}

void DRPageArea::keyPressEvent(QKeyEvent* event)
{
    if (!scrollBy(event->key())) {
        QScrollArea::keyPressEvent(event);
    }
}

void DRPageArea::focusInEvent(QFocusEvent* event)
{
    QScrollArea::focusInEvent(event);
    verticalScrollBar()->update();
}

void DRPageArea::focusOutEvent(QFocusEvent* event)
{
    QScrollArea::focusOutEvent(event);
    verticalScrollBar()->update();
}

void DRPageArea::resizeEvent(QResizeEvent* event)
{
    const int beyond = std::max(0, viewport()->width() - kMostCharacters * fontMetrics().averageCharWidth());
    const bool isMirrored = isRightToLeft();
    m_pages->layout()->setContentsMargins(isMirrored ? beyond : 0, 0, isMirrored ? 0 : beyond, 0);
    QScrollArea::resizeEvent(event);
}

QSize DRPageArea::minimumSizeHint() const
{
    return {kLeastCharacters * fontMetrics().averageCharWidth(), kLeastLines * fontMetrics().lineSpacing()};
}
