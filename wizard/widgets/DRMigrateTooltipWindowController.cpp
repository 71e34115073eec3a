#include "wizard/widgets/DRMigrateTooltipWindowController.h"

#include "platform/ui/DRDarkPalette.h"
#include "platform/ui/DRHtmlTextView.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>

namespace {

QRect availableAreaAt(const QPoint& position)
{
    const QScreen* const screen = QGuiApplication::screenAt(position);
    return (screen == nullptr ? QGuiApplication::primaryScreen() : screen)->availableGeometry();
}

/// The colours of the panel and its edge, with a text view that lets them through.
QPalette panelPalette(QPalette palette)
{
    palette.setColor(QPalette::Window, QColor::fromRgb(DRDarkPalette::kPanel));
    palette.setColor(QPalette::WindowText, QColor::fromRgb(DRDarkPalette::kLine));
    palette.setColor(QPalette::Base, Qt::transparent);
    return palette;
}

} // namespace

DRMigrateTooltipWindowController::DRMigrateTooltipWindowController(QWidget* parent)
    : QFrame(parent, Qt::ToolTip | Qt::FramelessWindowHint),
      m_textView(new DRHtmlTextView(this)),
      m_growth(this, "geometry")
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setAutoFillBackground(true);
    setPalette(panelPalette(palette()));
    m_textView->setPalette(palette());
    m_textView->setFocusPolicy(Qt::NoFocus);
    m_textView->removePadding();
    m_textView->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    resize(kInitialSize);
    m_textView->setGeometry(rect().marginsRemoved({kTextInset, kTextInset, kTextInset, kTextInset}));
    m_growth.setEasingCurve(QEasingCurve::OutCubic);
}

DRMigrateTooltipWindowController::~DRMigrateTooltipWindowController() = default;

QRect DRMigrateTooltipWindowController::frameFor(const QPoint& position, const QSize& size, const QRect& available)
{
    QRect frame(QPoint(position.x(), position.y() - size.height() / 2), size);
    frame.moveRight(std::min(frame.right(), available.right()));
    frame.moveBottom(std::min(frame.bottom(), available.bottom()));
    frame.moveLeft(std::max(frame.left(), available.left()));
    frame.moveTop(std::max(frame.top(), available.top()));
    return frame;
}

void DRMigrateTooltipWindowController::zoomFromPosition(const QPoint& position, const QSize& toSize)
{
    const QRect target = frameFor(position, toSize, availableAreaAt(position));
    m_growth.stop();
    setGeometry(QRect(position, QSize(0, 0)));
    m_textView->setGeometry(kTextInset, kTextInset, toSize.width() - 2 * kTextInset, toSize.height() - 2 * kTextInset);
    show();
    tellScreenReaders();
    const int duration = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this);
    if (duration <= 0) {
        setGeometry(target);
        return;
    }
    m_growth.setDuration(duration);
    m_growth.setStartValue(geometry());
    m_growth.setEndValue(target);
    m_growth.start();
}

bool DRMigrateTooltipWindowController::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept(); // so that Escape comes as a key and does not cancel the page
        return true;
    }
    if (event->type() == QEvent::KeyPress && handleKey(static_cast<QKeyEvent*>(event)->key())) {
        return true;
    }
    return QFrame::eventFilter(watched, event);
}

void DRMigrateTooltipWindowController::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    qApp->installEventFilter(this);
}

void DRMigrateTooltipWindowController::hideEvent(QHideEvent* event)
{
    qApp->removeEventFilter(this);
    m_growth.stop();
    QFrame::hideEvent(event);
}

void DRMigrateTooltipWindowController::tellScreenReaders()
{
    setAccessibleName(m_textView->toPlainText());
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

/// Whether the key was one of the panel's. The Page keys are when there is something to scroll.
bool DRMigrateTooltipWindowController::handleKey(int key)
{
    if (key == Qt::Key_Escape) {
        close();
        return true;
    }
    QScrollBar* const scrollBar = m_textView->verticalScrollBar();
    if (scrollBar->maximum() == 0 || (key != Qt::Key_PageDown && key != Qt::Key_PageUp)) {
        return false;
    }
    scrollBar->triggerAction(key == Qt::Key_PageDown ? QScrollBar::SliderPageStepAdd : QScrollBar::SliderPageStepSub);
    return true;
}
