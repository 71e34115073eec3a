#include "tests/app/gui/DRAccessibilityFaults.h"

#include "platform/ui/DRIconLabel.h"
#include "platform/ui/DRSpinner.h"

#include <QKeySequence>

#include <algorithm>
#include <iterator>
#include <set>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Element = DRAccessibleTree::Element;

constexpr int kMostStops = 60; ///< more places for the focus than any page has

bool isControl(const Element& element)
{
    static const std::set<QAccessible::Role> kControls{QAccessible::Button,       QAccessible::CheckBox,
                                                       QAccessible::Link,         QAccessible::Table,
                                                       QAccessible::EditableText, QAccessible::ProgressBar};
    return kControls.contains(element.role);
}

bool isEnabled(const Element& element)
{
    return element.state.disabled == 0;
}

/// Whether Tab stops at the element itself: links are reached in place of their text, and cells by the arrow keys.
bool isTabStop(const Element& element)
{
    const bool isPart = element.role == QAccessible::Cell || element.role == QAccessible::ColumnHeader;
    const bool isTextWithLinks = element.role == QAccessible::StaticText && element.interface->childCount() > 0;
    return element.state.focusable != 0 && isEnabled(element) && !isPart && !isTextWithLinks;
}

QStringList faultsOfNames(const DRAccessibleTree& tree)
{
    QStringList faults;
    std::set<QString> seen;
    for (const Element& element : tree.elements()) {
        const QString line = DRAccessibleTree::line(element);
        if ((isControl(element) || element.state.focusable != 0) && element.name.isEmpty()) {
            faults.append(u"no name: "_s + line);
        }
        if (element.role == QAccessible::Client && element.depth > 0 && element.state.focusable != 0) {
            faults.append(u"no role: "_s + line);
        }
        if (isControl(element) && isEnabled(element) && !seen.insert(element.name).second) {
            faults.append(u"name of another, too: "_s + line);
        }
    }
    return faults;
}

/// Of widgets that the tree must know, as what they are.
QStringList faultsOfWidgets(const DRAccessibleTree& tree, const QWidget& window)
{
    QStringList faults;
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
        const Element* const element = tree.of(widget);
        const bool isPicture = qobject_cast<const DRIconLabel*>(widget) || qobject_cast<const DRSpinner*>(widget);
        const bool canHaveFocus = (widget->focusPolicy() & Qt::TabFocus) != 0;
        if (!widget->isVisible() || (!isPicture && !canHaveFocus)) {
            continue;
        }
        const QString what = QLatin1String(widget->metaObject()->className()) + u' ' + widget->objectName();
        if (element == nullptr) {
            faults.append(u"not in the tree: "_s + what);
        } else if (isPicture && element->name.isEmpty() != (element->role == QAccessible::Client)) {
            faults.append(u"neither picture nor decoration: "_s + what);
        }
    }
    return faults;
}

/// Down, or along the line.
bool comesAfter(const QRect& one, const QRect& other)
{
    return other.top() >= one.bottom() || other.left() >= one.right();
}

/// The parts of the page, which may be longer than the window, are read in the order in which they are seen.
QStringList faultsOfReadingOrder(const DRAccessibleTree& tree)
{
    static const std::set<QAccessible::Role> kRead{
        QAccessible::StaticText, QAccessible::Button, QAccessible::CheckBox,    QAccessible::Table,
        QAccessible::Graphic,    QAccessible::Chart,  QAccessible::ProgressBar, QAccessible::EditableText};
    QStringList faults;
    const Element* before = nullptr;
    const auto isPane = [](const Element& element) { return element.role == QAccessible::Pane && element.depth == 1; };
    const auto& all = tree.elements();
    for (auto element = std::ranges::find_if(all, isPane) + 1; element != all.end() && element->depth > 1; ++element) {
        if (!kRead.contains(element->role) || element->name.isEmpty()) {
            continue;
        }
        if (before != nullptr && !comesAfter(before->interface->rect(), element->interface->rect())) {
            faults.append(u"\"%1\" is read before \"%2\""_s.arg(before->name, element->name));
        }
        before = &*element;
    }
    return faults;
}

QStringList faultsOfMnemonics(const QWidget& window)
{
    QStringList faults;
    std::set<QKeySequence> seen;
    for (const QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
        const QKeySequence key = QKeySequence::mnemonic(button->text());
        if (button->isVisible() && !key.isEmpty() && !seen.insert(key).second) {
            faults.append(u"key of another, too: "_s + button->text());
        }
    }
    return faults;
}

/// What has the keyboard's focus: a widget, or a link in one.
QAccessibleInterface* focusedElement(const DRWindowRun& run)
{
    QAccessibleInterface* const widget = QAccessible::queryAccessibleInterface(run.widget().focusWidget());
    const bool hasLinks = widget != nullptr && widget->role() == QAccessible::StaticText;
    return hasLinks ? widget->focusChild() : widget;
}

/// Where Tab, or Shift+Tab, stops until it comes to the first place again.
std::vector<QAccessibleInterface*> tabStops(const DRWindowRun& run, Qt::KeyboardModifiers modifiers)
{
    std::vector<QAccessibleInterface*> stops;
    for (int count = 0; count < kMostStops; ++count) {
        run.press(modifiers == Qt::NoModifier ? Qt::Key_Tab : Qt::Key_Backtab, modifiers);
        QAccessibleInterface* const stop = focusedElement(run);
        if (!stops.empty() && stop == stops.front()) {
            return stops;
        }
        stops.push_back(stop);
    }
    return stops;
}

QString nameOf(QAccessibleInterface* element)
{
    return element == nullptr ? u"nothing"_s : element->text(QAccessible::Name);
}

/// Turns the ring so that it begins with the one that stands first on the page.
std::vector<QAccessibleInterface*> fromTheTop(std::vector<QAccessibleInterface*> ring,
                                              const std::vector<QAccessibleInterface*>& expected)
{
    const auto first = std::ranges::find(ring, expected.front());
    std::rotate(ring.begin(), first == ring.end() ? ring.begin() : first, ring.end());
    return ring;
}

QStringList namesOf(const std::vector<QAccessibleInterface*>& elements)
{
    QStringList names;
    std::ranges::transform(elements, std::back_inserter(names), nameOf);
    return names;
}

QStringList faultsOfTabOrder(const DRAccessibleTree& tree, const DRWindowRun& run)
{
    std::vector<QAccessibleInterface*> expected;
    for (const Element& element : tree.elements()) {
        if (isTabStop(element)) {
            expected.push_back(element.interface);
        }
    }
    const auto forward = fromTheTop(tabStops(run, Qt::NoModifier), expected);
    auto backward = tabStops(run, Qt::ShiftModifier);
    std::ranges::reverse(backward);
    QStringList faults;
    if (namesOf(forward) != namesOf(expected)) {
        faults.append(u"Tab: "_s + namesOf(forward).join(u" | "_s) + u" instead of "_s +
                      namesOf(expected).join(u" | "_s));
    }
    if (fromTheTop(backward, expected) != forward) {
        faults.append(u"Shift+Tab: "_s + namesOf(fromTheTop(backward, expected)).join(u" | "_s));
    }
    for (std::size_t index = 1; index < forward.size() && !forward.empty(); ++index) {
        QAccessibleInterface* const before = forward[index - 1];
        if (before != nullptr && forward[index] != nullptr && before->role() != QAccessible::Pane &&
            !comesAfter(before->rect(), forward[index]->rect())) {
            faults.append(u"up: "_s + nameOf(before) + u" | "_s + nameOf(forward[index]));
        }
    }
    return faults;
}

} // namespace

QStringList accessibilityFaults(const DRAccessibleTree& tree, const DRWindowRun& run)
{
    return faultsOfNames(tree) + faultsOfWidgets(tree, run.widget()) + faultsOfMnemonics(run.widget()) +
           faultsOfReadingOrder(tree) + faultsOfTabOrder(tree, run);
}
