#include "platform/ui/DRHtmlLinkAccessible.h"

#include "platform/ui/DRHtmlTextView.h"

DRHtmlLinkAccessible::DRHtmlLinkAccessible(DRHtmlTextView& view, std::size_t index) : m_view(view), m_index(index) {}

std::optional<DRHtmlLinks::Link> DRHtmlLinkAccessible::link() const
{
    const auto links = DRHtmlLinks::linksOf(*m_view.document());
    return m_index < links.size() ? std::optional(links[m_index]) : std::nullopt;
}

QWindow* DRHtmlLinkAccessible::window() const
{
    return m_view.window()->windowHandle();
}

QAccessibleInterface* DRHtmlLinkAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(&m_view);
}

QString DRHtmlLinkAccessible::text(QAccessible::Text kind) const
{
    const auto found = link();
    return found && kind == QAccessible::Name ? found->text : QString();
}

QRect DRHtmlLinkAccessible::rect() const
{
    const auto found = link();
    if (!found) {
        return {};
    }
    QTextCursor cursor(m_view.document());
    cursor.setPosition(found->start);
    const QRect first = m_view.cursorRect(cursor);
    cursor.setPosition(found->end);
    QRect all = first.united(m_view.cursorRect(cursor));
    if (all.height() > first.height()) {
        all.setLeft(0);
        all.setRight(m_view.viewport()->width());
    }
    return all.translated(m_view.viewport()->mapToGlobal(QPoint(0, 0)));
}

QAccessible::State DRHtmlLinkAccessible::state() const
{
    QAccessible::State state;
    const auto found = link();
    if (!found) {
        state.invalid = true;
        return state;
    }
    state.linked = true;
    state.focusable = true;
    state.invisible = !m_view.isVisible();
    state.disabled = !m_view.isEnabled();
    state.focused = m_view.hasFocus() && m_view.textCursor().selectionEnd() == found->end;
    return state;
}

void* DRHtmlLinkAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList DRHtmlLinkAccessible::actionNames() const
{
    return {pressAction()};
}

void DRHtmlLinkAccessible::doAction(const QString& actionName)
{
    const auto found = link();
    if (found && actionName == pressAction()) {
        Q_EMIT m_view.anchorClicked(QUrl(found->address));
    }
}

QStringList DRHtmlLinkAccessible::keyBindingsForAction(const QString& /*actionName*/) const
{
    return {};
}
