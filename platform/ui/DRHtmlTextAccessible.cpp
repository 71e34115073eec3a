#include "platform/ui/DRHtmlTextAccessible.h"

#include "platform/ui/DRHtmlLinkAccessible.h"
#include "platform/ui/DRHtmlTextView.h"

#include <QScrollBar>

#include <algorithm>

namespace {

/// For the toolkit, which owns the answer.
QAccessibleInterface* interfaceOf(const QString& /*className*/, QObject* object)
{
    auto* const view = qobject_cast<DRHtmlTextView*>(object);
    return view == nullptr ? nullptr : new DRHtmlTextAccessible(*view);
}

} // namespace

void DRHtmlTextAccessible::install()
{
    QAccessible::installFactory(interfaceOf); // more than once counts once
}

void DRHtmlTextAccessible::tellFocus(DRHtmlTextView& view, int position)
{
    if (!QAccessible::isActive()) {
        return;
    }
    const auto links = DRHtmlLinks::linksOf(*view.document());
    const auto focused = std::ranges::find_if(
        links, [position](const DRHtmlLinks::Link& link) { return link.start < position && position <= link.end; });
    QAccessibleInterface* const text = QAccessible::queryAccessibleInterface(&view);
    if (focused != links.end() && text != nullptr) {
        QAccessibleEvent event(text->child(static_cast<int>(focused - links.begin())), QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

DRHtmlTextAccessible::DRHtmlTextAccessible(DRHtmlTextView& view)
    : QAccessibleWidget(&view, QAccessible::StaticText), m_view(view)
{
}

DRHtmlTextAccessible::~DRHtmlTextAccessible()
{
    for (const QAccessible::Id link : m_links) {
        QAccessible::deleteAccessibleInterface(link);
    }
}

int DRHtmlTextAccessible::childCount() const
{
    return static_cast<int>(DRHtmlLinks::linksOf(*m_view.document()).size());
}

QAccessibleInterface* DRHtmlTextAccessible::child(int index) const
{
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    const auto at = static_cast<std::size_t>(index);
    while (m_links.size() <= at) {
        m_links.push_back(QAccessible::registerAccessibleInterface(new DRHtmlLinkAccessible(m_view, m_links.size())));
    }
    return QAccessible::accessibleInterface(m_links[at]);
}

int DRHtmlTextAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    const auto found = std::ranges::find(m_links, QAccessible::uniqueId(const_cast<QAccessibleInterface*>(child)));
    return found == m_links.end() ? -1 : static_cast<int>(found - m_links.begin());
}

QAccessibleInterface* DRHtmlTextAccessible::childAt(int x, int y) const
{
    for (int index = 0; index < childCount(); ++index) {
        if (child(index)->rect().contains(x, y)) {
            return child(index);
        }
    }
    return nullptr;
}

QAccessibleInterface* DRHtmlTextAccessible::focusChild() const
{
    for (int index = 0; index < childCount(); ++index) {
        if (child(index)->state().focused != 0) {
            return child(index);
        }
    }
    return QAccessibleWidget::focusChild();
}

QAccessible::State DRHtmlTextAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    return state;
}

void* DRHtmlTextAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                              : QAccessibleWidget::interface_cast(type);
}

void DRHtmlTextAccessible::selection(int selectionIndex, int* startOffset, int* endOffset) const
{
    const QTextCursor cursor = m_view.textCursor();
    const bool isThere = selectionIndex == 0 && cursor.hasSelection();
    *startOffset = isThere ? cursor.selectionStart() : 0;
    *endOffset = isThere ? cursor.selectionEnd() : 0;
}

int DRHtmlTextAccessible::selectionCount() const
{
    return m_view.textCursor().hasSelection() ? 1 : 0;
}

// What is selected marks the link that has the focus, so it is not for others to change.
void DRHtmlTextAccessible::addSelection(int /*startOffset*/, int /*endOffset*/) {}
void DRHtmlTextAccessible::removeSelection(int /*selectionIndex*/) {}
void DRHtmlTextAccessible::setSelection(int /*selectionIndex*/, int /*startOffset*/, int /*endOffset*/) {}
void DRHtmlTextAccessible::setCursorPosition(int /*position*/) {}

int DRHtmlTextAccessible::cursorPosition() const
{
    return m_view.textCursor().position();
}

QString DRHtmlTextAccessible::text(int startOffset, int endOffset) const
{
    return m_view.toPlainText().mid(startOffset, endOffset - startOffset);
}

int DRHtmlTextAccessible::characterCount() const
{
    return static_cast<int>(m_view.toPlainText().size());
}

QRect DRHtmlTextAccessible::characterRect(int offset) const
{
    QTextCursor cursor(m_view.document());
    cursor.setPosition(std::clamp(offset, 0, characterCount()));
    QRect place = m_view.cursorRect(cursor);
    cursor.movePosition(QTextCursor::NextCharacter);
    const QRect next = m_view.cursorRect(cursor);
    place = next.top() == place.top() ? place.united(next) : place;
    return place.translated(m_view.viewport()->mapToGlobal(QPoint(0, 0)));
}

int DRHtmlTextAccessible::offsetAtPoint(const QPoint& point) const
{
    return m_view.cursorForPosition(m_view.viewport()->mapFromGlobal(point)).position();
}

void DRHtmlTextAccessible::scrollToSubstring(int startIndex, int /*endIndex*/)
{
    QScrollBar& scrollBar = *m_view.verticalScrollBar();
    const int top = m_view.viewport()->mapFromGlobal(characterRect(startIndex).topLeft()).y();
    scrollBar.setValue(scrollBar.value() + top);
}

QString DRHtmlTextAccessible::attributes(int /*offset*/, int* startOffset, int* endOffset) const
{
    *startOffset = 0;
    *endOffset = characterCount();
    return {};
}
