#include "platform/ui/DRSequenceWindow.h"

#include "platform/sequence/DRSequence.h"
#include "platform/ui/DRAccessibleRole.h"
#include "platform/ui/DRLeadingAlignment.h"
#include "platform/ui/DRPageArea.h"
#include "platform/ui/DRReadingOrder.h"
#include "platform/ui/DRSequenceButtons.h"
#include "platform/ui/DRStepGroupList.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr double kHeadingShare = 1.6; ///< of the size of ordinary text
// In average characters and lines of the font.
constexpr int kUsualCharacters = 136;
constexpr int kUsualLines = 43;

QString sizeKey()
{
    return u"window/size"_s;
}

QFrame* makeLine(QWidget* parent)
{
    auto* const line = new QFrame(parent);
    line->setFrameStyle(QFrame::HLine | QFrame::Plain);
    QPalette linePalette = line->palette();
    linePalette.setColor(QPalette::WindowText, linePalette.color(QPalette::Light));
    line->setPalette(linePalette);
    return line;
}

} // namespace

DRSequenceWindow::DRSequenceWindow(DRSequence& sequence, Setup setup, QWidget* parent)
    : QWidget(parent),
      m_sequence(sequence),
      m_setup(std::move(setup)),
      m_groups(new DRStepGroupList(sequence, m_setup.text, this)),
      m_heading(new QLabel(this)),
      m_pageArea(new DRPageArea(this)),
      m_buttons(new DRSequenceButtons(sequence, m_setup.text, this))
{
    DRAccessibleRole::give(*m_heading, QAccessible::Heading);
    m_heading->setObjectName(u"heading"_s);
    m_heading->setTextFormat(Qt::PlainText);
    m_heading->setWordWrap(true);
    m_heading->setAlignment(leadingAlignment(*this));
    updateHeadingFont();
    layOut();
    connectSequence();
    restoreSize();
    if (m_sequence.currentStep() != nullptr) {
        showCurrentStep();
        refreshButtons();
    }
}

DRSequenceWindow::~DRSequenceWindow() = default;

QSize DRSequenceWindow::sizeHint() const
{
    return usualSize();
}

QSize DRSequenceWindow::usualSize() const
{
    return {kUsualCharacters * fontMetrics().averageCharWidth(), kUsualLines * fontMetrics().lineSpacing()};
}

void DRSequenceWindow::layOut()
{
    const int line = fontMetrics().height();
    auto* const main = new QVBoxLayout;
    main->setContentsMargins(line * 2, line * 2, line * 2, line * 3 / 2);
    main->setSpacing(line);
    main->addWidget(m_heading);
    main->addWidget(m_pageArea, 1);
    main->addWidget(makeLine(this));
    main->addWidget(m_buttons);

    auto* const all = new QHBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addWidget(m_groups);
    all->addLayout(main, 1);
}

void DRSequenceWindow::connectSequence()
{
    connect(&m_sequence, &DRSequence::currentStepChanged, this, &DRSequenceWindow::showCurrentStep);
    connect(&m_sequence, &DRSequence::uiUpdated, this, &DRSequenceWindow::refreshButtons);
    connect(m_buttons, &DRSequenceButtons::cancelPressed, this, &DRSequenceWindow::pressCancel);
    connect(&m_sequence, &DRSequence::ended, this, &QWidget::close);
}

void DRSequenceWindow::showCurrentStep()
{
    DRSequenceStep* const step = m_sequence.currentStep();
    if (step == nullptr) {
        return;
    }
    setUpdatesEnabled(false); // until the buttons fit the page
    m_groups->markCurrentGroup();
    m_pageArea->showPage(pageOf(*step));
    contentChanged();
    m_awaitsFirstFocus = true;
}

QWidget* DRSequenceWindow::pageOf(DRSequenceStep& step)
{
    Page& page = m_pages[step.key()];
    if (page.widget == nullptr) {
        page.widget = m_setup.makePage(step);
        page.widget = page.widget == nullptr ? new QWidget(this) : page.widget;
        page.firstFocus = page.widget->focusProxy();
        page.widget->setFocusProxy(nullptr); // Tab would go round between the two for ever
        connect(&step, &DRSequenceStep::contentChanged, this, &DRSequenceWindow::contentChanged);
    }
    return page.widget;
}

void DRSequenceWindow::contentChanged()
{
    updateHeading();
    DRReadingOrder::arrange(*m_pageArea->currentPage());
}

void DRSequenceWindow::updateHeading()
{
    const DRSequenceStep* const step = m_sequence.currentStep();
    if (step == nullptr) {
        return;
    }
    const QString title = step->localizedTitle();
    m_heading->setText(title);
    m_heading->setAccessibleName(title);
    m_pageArea->setAccessibleName(title);
    // Screen readers announce a window's new title.
    setWindowTitle(title);
}

void DRSequenceWindow::updateHeadingFont()
{
    QFont headingFont = font();
    headingFont.setPointSizeF(headingFont.pointSizeF() * kHeadingShare);
    headingFont.setWeight(QFont::DemiBold);
    m_heading->setFont(headingFont);
}

void DRSequenceWindow::refreshButtons()
{
    m_buttons->refresh();
    if (!std::exchange(m_awaitsFirstFocus, false)) {
        return;
    }
    // Only now is the new page complete, and known whether Next may be pressed on it.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    setUpdatesEnabled(true);
    setFirstFocus();
}

void DRSequenceWindow::setFirstFocus()
{
    QWidget* const first = m_pages.value(m_sequence.currentStep()->key()).firstFocus;
    QWidget* const next = m_buttons->nextButton();
    if (first != nullptr) {
        first->setFocus(Qt::OtherFocusReason);
        return;
    }
    if (next->isEnabled() && next->isVisibleTo(this)) {
        next->setFocus(Qt::OtherFocusReason);
        return;
    }
    setFocus(Qt::OtherFocusReason);
}

bool DRSequenceWindow::focusNextPrevChild(bool isNext)
{
    QWidgetList widgets{m_pageArea};
    widgets += m_pageArea->currentPage() == nullptr ? QWidgetList() : DRReadingOrder::of(*m_pageArea->currentPage());
    widgets += {m_buttons->cancelButton(), m_buttons->nextButton()};
    QWidget* const stop = DRReadingOrder::tabStop(widgets, focusWidget(), isNext);
    if (stop == nullptr) {
        return false;
    }
    stop->setFocus(isNext ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void DRSequenceWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->isAutoRepeat()) { // a key held too long must not run through the pages
        return;
    }
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        pressCancel();
        return;
    }
    if (!event->text().isEmpty() && event->text() == m_sequence.nextKeyEquivalent()) {
        m_sequence.pressNext();
        return;
    }
    if (!m_pageArea->scrollBy(event->key())) {
        QWidget::keyPressEvent(event);
    }
}

void DRSequenceWindow::pressCancel()
{
    if (m_buttons->cancelButton()->isEnabled() && isLeavingAllowed()) {
        m_sequence.pressCancel();
    }
}

void DRSequenceWindow::closeEvent(QCloseEvent* event)
{
    if (!isLeavingAllowed()) {
        event->ignore();
        return;
    }
    saveSize();
    event->accept();
    m_sequence.abandon();
}

bool DRSequenceWindow::isLeavingAllowed() const
{
    return m_sequence.currentStep() == nullptr || !m_setup.mayLeave || m_setup.mayLeave();
}

void DRSequenceWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateHeadingFont();
    }
}

void DRSequenceWindow::restoreSize()
{
    QSize size = usualSize();
    if (!m_setup.settingsPath.isEmpty()) {
        const QSize kept = QSettings(m_setup.settingsPath, QSettings::IniFormat).value(sizeKey()).toSize();
        size = kept.isValid() ? kept : size;
    }
    resize(size.boundedTo(screen()->availableSize()).expandedTo(minimumSizeHint()));
}

void DRSequenceWindow::saveSize() const
{
    if (!m_setup.settingsPath.isEmpty()) {
        const QSize plain = isMaximized() || isFullScreen() ? normalGeometry().size() : size();
        QSettings(m_setup.settingsPath, QSettings::IniFormat).setValue(sizeKey(), plain);
    }
}
