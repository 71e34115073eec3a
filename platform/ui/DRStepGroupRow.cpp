#include "platform/ui/DRStepGroupRow.h"

#include "platform/ui/DRDarkPalette.h"
#include "platform/ui/DRLeadingAlignment.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>

#include <array>
#include <cstddef>

using namespace Qt::StringLiterals;

namespace {

/// Of the title, in the order of DRStepGroupMark::State.
constexpr std::array<QRgb, 4> kTitleColors = {DRDarkPalette::kText, DRDarkPalette::kText, DRDarkPalette::kOnAccent,
                                              DRDarkPalette::kMutedText};

} // namespace

DRStepGroupRow::DRStepGroupRow(int number, const QString& title, QWidget* parent)
    : QWidget(parent), m_mark(new DRStepGroupMark(number, this)), m_title(new QLabel(title, this))
{
    m_title->setTextFormat(Qt::PlainText);
    m_title->setAlignment(leadingAlignment(*this));
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(fontMetrics().height() * 2 / 3);
    row->addWidget(m_mark);
    row->addWidget(m_title);
    row->addStretch(1);
    updateTitle();
}

void DRStepGroupRow::setState(DRStepGroupMark::State state, const QString& description)
{
    m_state = state;
    m_mark->setState(state);
    m_title->setAccessibleName(description.isEmpty() ? m_title->text() : m_title->text() + u", "_s + description);
    updateTitle();
}

void DRStepGroupRow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateTitle();
    }
}

void DRStepGroupRow::updateTitle()
{
    QPalette titlePalette = m_title->palette();
    titlePalette.setColor(QPalette::WindowText, QColor(kTitleColors[static_cast<std::size_t>(m_state)]));
    m_title->setPalette(titlePalette);

    // Room for the bold title is kept, so that the side does not change its width from page to page.
    QFont titleFont = font();
    titleFont.setBold(true);
    m_title->setMinimumWidth(QFontMetrics(titleFont).horizontalAdvance(m_title->text()) + 1);
    titleFont.setBold(m_state == DRStepGroupMark::State::Current);
    m_title->setFont(titleFont);
}
