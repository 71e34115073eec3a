#include "platform/ui/DRHtmlTextView.h"

#include "platform/ui/DRHtmlLinks.h"
#include "platform/ui/DRHtmlTextAccessible.h"

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QImage>
#include <QKeyEvent>
#include <QScrollArea>
#include <QTextBlock>

#include <cmath>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kUsualCharacters = 60;
constexpr int kLeastCharacters = 12;

/// HTML names its margins left and right, but means the sides where lines begin and end.
void mirrorMargins(const QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        const double left = format.leftMargin();
        format.setLeftMargin(format.rightMargin());
        format.setRightMargin(left);
        QTextCursor(block).setBlockFormat(format);
    }
}

} // namespace

DRHtmlTextView::DRHtmlTextView(QWidget* parent) : QTextBrowser(parent)
{
    DRHtmlTextAccessible::install();
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setAcceptDrops(false);
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setBlockSelection(false);
    connect(this, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& address) { Q_EMIT clickedOnLink(DRHtmlLinks::nameOf(address)); });
}

DRHtmlTextView::~DRHtmlTextView() = default;

void DRHtmlTextView::setHtml(const QString& html)
{
    hideTooltip();
    m_html = DRHtmlLinks::withoutLinkMarks(html);
    updateLook();
    setAccessibleName(document()->toPlainText());
    updateFocusPolicy();
}

void DRHtmlTextView::updateLook()
{
    document()->setDefaultStyleSheet(u"a { color: %1; }"_s.arg(palette().color(QPalette::Link).name()));
    QTextOption option = document()->defaultTextOption();
    option.setTextDirection(layoutDirection());
    document()->setDefaultTextOption(option);
    QTextBrowser::setHtml(m_html);
    if (layoutDirection() == Qt::RightToLeft) {
        mirrorMargins(*document());
    }
    updateGeometry();
}

void DRHtmlTextView::setBlockSelection(bool isBlocked)
{
    m_isSelectionBlocked = isBlocked;
    const Qt::TextInteractionFlags links = Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard;
    setTextInteractionFlags(isBlocked ? links : links | Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setContextMenuPolicy(isBlocked ? Qt::NoContextMenu : Qt::DefaultContextMenu);
    updateFocusPolicy();
}

void DRHtmlTextView::removePadding()
{
    document()->setDocumentMargin(0);
    updateGeometry();
}

void DRHtmlTextView::updateFocusPolicy()
{
    if (!DRHtmlLinks::linksOf(*document()).empty()) {
        setFocusPolicy(Qt::StrongFocus);
        return;
    }
    setFocusPolicy(m_isSelectionBlocked ? Qt::NoFocus : Qt::ClickFocus);
}

QSize DRHtmlTextView::sizeHint() const
{
    const int width = kUsualCharacters * fontMetrics().averageCharWidth();
    return {width, heightForWidth(width)};
}

QSize DRHtmlTextView::minimumSizeHint() const
{
    return {kLeastCharacters * fontMetrics().averageCharWidth(), fontMetrics().height()};
}

int DRHtmlTextView::heightForWidth(int width) const
{
    // A copy is laid out, since the shown one answers to the width that the view has now.
    // It has the same parent, which answers for the resources that the text names.
    const std::unique_ptr<QTextDocument> copy(document()->clone(document()->parent()));
    copy->documentLayout()->setPaintDevice(viewport());
    copy->setDocumentMargin(document()->documentMargin());
    copy->setTextWidth(width);
    return static_cast<int>(std::ceil(copy->size().height()));
}

QVariant DRHtmlTextView::loadResource(int type, const QUrl&)
{
    // No answer would let the document look for the file itself, so everything is there and empty.
    if (type != QTextDocument::ImageResource) {
        return QByteArray("");
    }
    QImage nothing(1, 1, QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return nothing;
}

bool DRHtmlTextView::focusNextPrevChild(bool isNext)
{
    const bool isMoved = leavesByStart(isNext)
                             ? QTextEdit::focusNextPrevChild(isNext) // NOLINT(bugprone-parent-virtual-call)
                             : QTextBrowser::focusNextPrevChild(isNext);
    linkFocusChanged();
    return isMoved;
}

/// The toolkit would keep the focus on a link with which the text begins.
bool DRHtmlTextView::leavesByStart(bool isNext)
{
    QTextCursor cursor = textCursor();
    if (isNext || focusedLinkName().isEmpty() || cursor.selectionStart() > 0) {
        return false;
    }
    cursor.clearSelection();
    setTextCursor(cursor);
    return true;
}

void DRHtmlTextView::focusInEvent(QFocusEvent* event)
{
    QTextBrowser::focusInEvent(event);
    // Coming by Tab the focus goes to a link at once, not first to the text as a whole.
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) {
        focusNextPrevChild(event->reason() == Qt::TabFocusReason);
    }
}

void DRHtmlTextView::focusOutEvent(QFocusEvent* event)
{
    QTextBrowser::focusOutEvent(event);
    linkFocusChanged();
}

void DRHtmlTextView::linkFocusChanged()
{
    const QString linkName = focusedLinkName();
    if (linkName.isEmpty()) {
        setAccessibleDescription(QString());
        hideTooltip();
        return;
    }
    setAccessibleDescription(textCursor().selectedText());
    DRHtmlTextAccessible::tellFocus(*this, textCursor().selectionEnd());
    scrollToFocusedLink();
    showTooltip(linkName, viewport()->mapToGlobal(cursorRect(selectionEnd()).center()));
}

QString DRHtmlTextView::focusedLinkName() const
{
    const bool isLinkFocused = hasFocus() && textCursor().hasSelection();
    return isLinkFocused ? DRHtmlLinks::nameOf(QUrl(selectionEnd().charFormat().anchorHref())) : QString();
}

QTextCursor DRHtmlTextView::selectionEnd() const
{
    // A cursor's format is that of the character before it, so the end of a link is within the link. Going backward, the
    // selection's own cursor stands at its start.
    QTextCursor end = textCursor();
    end.setPosition(end.selectionEnd());
    return end;
}

void DRHtmlTextView::scrollToFocusedLink()
{
    for (QWidget* ancestor = parentWidget(); ancestor != nullptr; ancestor = ancestor->parentWidget()) {
        auto* const area = qobject_cast<QScrollArea*>(ancestor);
        if (area != nullptr && area->widget() != nullptr) {
            const QPoint place = viewport()->mapTo(area->widget(), cursorRect(selectionEnd()).center());
            area->ensureVisible(place.x(), place.y());
            return;
        }
    }
}

bool DRHtmlTextView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        const QString linkName = linkNameAt(help->pos());
        if (!linkName.isEmpty()) {
            showTooltip(linkName, help->globalPos());
        }
        return true;
    }
    if (event->type() == QEvent::Leave) {
        hideTooltipUnlessAt(QString());
    }
    return QTextBrowser::viewportEvent(event);
}

void DRHtmlTextView::mouseMoveEvent(QMouseEvent* event)
{
    QTextBrowser::mouseMoveEvent(event);
    hideTooltipUnlessAt(linkNameAt(event->position().toPoint()));
}

void DRHtmlTextView::hideEvent(QHideEvent* event)
{
    QTextBrowser::hideEvent(event);
    hideTooltip();
}

bool DRHtmlTextView::eventFilter(QObject* watched, QEvent* event)
{
    // While a tooltip is open Escape closes it and does nothing else, wherever the focus is.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        hideTooltip();
        return true;
    }
    return QTextBrowser::eventFilter(watched, event);
}

void DRHtmlTextView::changeEvent(QEvent* event)
{
    QTextBrowser::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::LayoutDirectionChange:
    case QEvent::FontChange:
        updateLook();
        break;
    default:
        break;
    }
}

QString DRHtmlTextView::linkNameAt(const QPoint& position) const
{
    return DRHtmlLinks::nameOf(QUrl(anchorAt(position)));
}

void DRHtmlTextView::showTooltip(const QString& linkName, const QPoint& globalPosition)
{
    if (!m_hasCustomTooltips || DRHtmlLinks::isSameName(linkName, m_shownTooltip)) {
        return;
    }
    hideTooltip();
    m_shownTooltip = linkName;
    Q_EMIT shouldDisplayCustomTooltip(linkName, globalPosition);
    // After the tooltip itself, so that this filter is asked first and knows that the tooltip is gone.
    QCoreApplication::instance()->installEventFilter(this);
}

void DRHtmlTextView::hideTooltip()
{
    if (m_shownTooltip.isEmpty()) {
        return;
    }
    QCoreApplication::instance()->removeEventFilter(this);
    Q_EMIT shouldHideCustomTooltip(std::exchange(m_shownTooltip, QString()));
}

void DRHtmlTextView::hideTooltipUnlessAt(const QString& linkName)
{
    // What the keyboard has opened stays while the pointer moves about.
    if (!DRHtmlLinks::isSameName(linkName, m_shownTooltip) &&
        !DRHtmlLinks::isSameName(focusedLinkName(), m_shownTooltip)) {
        hideTooltip();
    }
}
