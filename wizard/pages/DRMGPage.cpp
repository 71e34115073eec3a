#include "wizard/pages/DRMGPage.h"

#include "platform/core/DRLocalizedStrings.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"
#include "platform/ui/DRLeadingAlignment.h"
#include "wizard/steps/DRMGSequenceStep.h"
#include "wizard/widgets/DRMigrateTooltipWindowController.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace {

constexpr QPoint kTooltipDistance{20, 0}; ///< from the pointer, so that the panel does not cover it

} // namespace

DRMGPage::DRMGPage(DRMGSequenceStep& step, DRMGPageTools tools)
    : m_step(step), m_tools(std::move(tools)), m_tooltip(new DRMigrateTooltipWindowController(this))
{
    connect(&step, &DRSequenceStep::contentChanged, this, [this] { render(); });
    connect(&step, &DRSequenceStep::stateMaskChanged, this, [this] { render(); });
}

QString DRMGPage::text(const QString& identifier) const
{
    return m_tools.context.strings.text(identifier);
}

int DRMGPage::smallGap() const
{
    return fontMetrics().height() / 2;
}

int DRMGPage::largeGap() const
{
    return fontMetrics().height() * 5 / 4;
}

DRHtmlTextView* DRMGPage::makeHtmlView(Tooltips tooltips)
{
    auto* const view = new DRHtmlTextView(this);
    view->setBlockSelection(true);
    view->removePadding();
    view->setCustomTooltips(tooltips == Tooltips::OfLinks);
    connect(view, &DRHtmlTextView::clickedOnLink, this, [this](const QString& link) { m_step.linkClicked(link); });
    connect(view, &DRHtmlTextView::shouldDisplayCustomTooltip, this, &DRMGPage::showTooltip);
    connect(view, &DRHtmlTextView::shouldHideCustomTooltip, m_tooltip, &QWidget::hide);
    return view;
}

void DRMGPage::showHtml(DRHtmlTextView& view, const QString& html)
{
    QString& shown = m_shownHtml[&view];
    if (shown != html) {
        shown = html;
        view.setHtml(html);
    }
}

QLabel* DRMGPage::makeLabel()
{
    auto* const label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(leadingAlignment(*this));
    return label;
}

DRIconLabel* DRMGPage::makePicture(const QSize& size)
{
    auto* const picture = new DRIconLabel(m_tools.context.resources, this);
    picture->setIconSize(size);
    return picture;
}

QHBoxLayout* DRMGPage::makePictureRow(DRIconLabel* picture) const
{
    auto* const row = new QHBoxLayout;
    row->setSpacing(largeGap());
    row->addWidget(picture, 0, Qt::AlignTop);
    return row;
}

QPushButton* DRMGPage::makeButton(const QString& textIdentifier, const std::function<void()>& action)
{
    if (!action) {
        return nullptr;
    }
    auto* const button = new QPushButton(text(textIdentifier), this);
    button->setObjectName(textIdentifier);
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, action);
    return button;
}

void DRMGPage::showEvent(QShowEvent* event)
{
    render();
    QWidget::showEvent(event);
}

void DRMGPage::hideEvent(QHideEvent* event)
{
    m_tooltip->hide();
    QWidget::hideEvent(event);
}

void DRMGPage::showTooltip(const QString& link, const QPoint& globalPosition)
{
    const auto tooltip = m_step.tooltipForLink(link);
    if (!tooltip) {
        return;
    }
    m_tooltip->textView().setHtml(tooltip->html);
    m_tooltip->zoomFromPosition(globalPosition + kTooltipDistance, tooltip->size);
}
