#include "platform/ui/DRSequenceButtons.h"

#include "platform/sequence/DRSequence.h"
#include "platform/ui/DRDarkPalette.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kFastestRepress = 20; // milliseconds

QPushButton* makeButton(QWidget* parent)
{
    auto* const button = new QPushButton(parent);
    // Return presses the button that has the focus, as Space does.
    button->setAutoDefault(true);
    QSizePolicy policy = button->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    button->setSizePolicy(policy);
    return button;
}

} // namespace

DRSequenceButtons::DRSequenceButtons(DRSequence& sequence, TextLookup text, QWidget* parent)
    : QWidget(parent),
      m_sequence(sequence),
      m_text(std::move(text)),
      m_cancel(makeButton(this)),
      m_next(makeButton(this))
{
    m_cancel->setObjectName(u"cancel"_s);
    m_next->setObjectName(u"next"_s);
    m_next->setPalette(DRDarkPalette::mainButtonPalette());
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(fontMetrics().height() * 2 / 3);
    row->addStretch(1);
    row->addWidget(m_cancel);
    row->addWidget(m_next);
    connect(m_cancel, &QPushButton::clicked, this, &DRSequenceButtons::cancelPressed);
    connect(m_next, &QPushButton::clicked, &m_sequence, &DRSequence::pressNext);
    m_cancel->installEventFilter(this);
    m_next->installEventFilter(this);
    refresh();
}

bool DRSequenceButtons::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyRelease) {
        m_lastKeyRelease = static_cast<QKeyEvent*>(event)->timestamp();
    }
    const bool isHeldKey = event->type() == QEvent::KeyPress && isHeld(*static_cast<QKeyEvent*>(event));
    return isHeldKey || event->type() == QEvent::MouseButtonDblClick || QWidget::eventFilter(watched, event);
}

/// X11 sends a release and a press for each repeat of a held key, and the toolkit does not always see that they belong
/// together. Nobody presses a key again that fast. Events that were not made by a keyboard have no time.
bool DRSequenceButtons::isHeld(const QKeyEvent& press) const
{
    return press.isAutoRepeat() || (press.timestamp() != 0 && press.timestamp() - m_lastKeyRelease < kFastestRepress);
}

void DRSequenceButtons::refresh()
{
    const DRSequenceStep* const step = m_sequence.currentStep();
    const int mask = step == nullptr ? 0 : step->stateMask();
    const auto has = [mask](int bit) { return (mask & bit) != 0; };

    m_next->setText(m_text(m_sequence.resolvedLocalizationKey(u"dr_sequence_button_next"_s)));
    m_next->setEnabled(has(DRSequenceStep::kStateNextEnabled));
    m_next->setDefault(!m_sequence.nextKeyEquivalent().isEmpty());

    m_cancel->setText(m_text(m_sequence.resolvedLocalizationKey(u"dr_sequence_button_cancel"_s)));
    m_cancel->setVisible(!has(DRSequenceStep::kStateClosing));
    m_cancel->setEnabled(has(DRSequenceStep::kStateCancelEnabled));
}
