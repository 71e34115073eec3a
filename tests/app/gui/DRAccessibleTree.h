#pragma once

#include <QAccessible>
#include <QMetaEnum>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>

#include <vector>

/// What a screen reader finds in a window: its visible elements, parents before children.
class DRAccessibleTree {
public:
    struct Element {
        QAccessibleInterface* interface;
        int depth;
        QAccessible::Role role;
        QAccessible::State state;
        QString name;

        [[nodiscard]] QString text(QAccessible::Text kind) const { return interface->text(kind); }
        [[nodiscard]] QObject* object() const { return interface->object(); }
    };

    explicit DRAccessibleTree(QObject& window) { walk(QAccessible::queryAccessibleInterface(&window), 0); }

    [[nodiscard]] const std::vector<Element>& elements() const { return m_elements; }

    /// The visible elements of this role.
    [[nodiscard]] std::vector<Element> ofRole(QAccessible::Role role) const
    {
        std::vector<Element> found;
        for (const Element& element : m_elements) {
            if (element.role == role) {
                found.push_back(element);
            }
        }
        return found;
    }

    /// The element of the object; null when it is none.
    [[nodiscard]] const Element* of(const QObject* object) const
    {
        for (const Element& element : m_elements) {
            if (element.object() == object) {
                return &element;
            }
        }
        return nullptr;
    }

    /// One line for each element: depth, role, name, state, value, description.
    [[nodiscard]] QString toText() const
    {
        QString text;
        for (const Element& element : m_elements) {
            text += QString(qsizetype{2} * element.depth, u' ') + line(element) + u'\n';
        }
        return text;
    }

    [[nodiscard]] static QString line(const Element& element)
    {
        const QMetaEnum roles = QMetaEnum::fromType<QAccessible::Role>();
        QStringList parts{QLatin1String(roles.valueToKey(element.role)), u'"' + element.name + u'"'};
        for (const auto& [isSet, word] : words(element.state)) {
            if (isSet) {
                parts.append(QLatin1String(word));
            }
        }
        for (const auto& [kind, word] :
             {std::pair(QAccessible::Value, "value"), std::pair(QAccessible::Description, "description")}) {
            if (const QString said = element.text(kind); !said.isEmpty()) {
                parts.append(QLatin1String(word) + QStringLiteral("=\"") + said + u'"');
            }
        }
        return parts.join(u' ').replace(u'\n', u' ');
    }

private:
    static std::vector<std::pair<bool, const char*>> words(const QAccessible::State& state)
    {
        return {{state.disabled != 0, "disabled"},     {state.focusable != 0, "focusable"},
                {state.focused != 0, "focused"},       {state.checkable != 0, "checkable"},
                {state.checked != 0, "checked"},       {state.checkStateMixed != 0, "mixed"},
                {state.defaultButton != 0, "default"}, {state.selectable != 0, "selectable"},
                {state.selected != 0, "selected"},     {state.readOnly != 0, "readonly"}};
    }

    void walk(QAccessibleInterface* interface, int depth)
    {
        if (interface == nullptr || !interface->isValid() || interface->state().invisible != 0) {
            return;
        }
        m_elements.push_back(
            {interface, depth, interface->role(), interface->state(), interface->text(QAccessible::Name)});
        for (int child = 0; child < interface->childCount(); ++child) {
            walk(interface->child(child), depth + 1);
        }
    }

    std::vector<Element> m_elements;
};
