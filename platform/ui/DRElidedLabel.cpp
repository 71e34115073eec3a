#include "platform/ui/DRElidedLabel.h"

#include "platform/ui/DRLeadingAlignment.h"

#include <QEvent>

namespace {

constexpr int kLeastCharacters = 4;

} // namespace

DRElidedLabel::DRElidedLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setAlignment(leadingAlignment(*this));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void DRElidedLabel::setWholeText(const QString& text)
{
    m_text = text;
    setToolTip(text.toHtmlEscaped());
    setAccessibleName(text);
    elide();
}

/// The text shown says nothing of the room that the whole would take.
QSize DRElidedLabel::sizeHint() const
{
    return minimumSizeHint();
}

QSize DRElidedLabel::minimumSizeHint() const
{
    return {kLeastCharacters * fontMetrics().averageCharWidth(), QLabel::minimumSizeHint().height()};
}

void DRElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    elide();
}

void DRElidedLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        elide();
    }
}

void DRElidedLabel::elide()
{
    setText(fontMetrics().elidedText(m_text, Qt::ElideMiddle, contentsRect().width()));
}
