#include "platform/ui/DRAccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace {

constexpr const char* kProperty = "accessibleRole";

class Named final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QAccessible::Role role() const override
    {
        return widget()->accessibleName().isEmpty() ? QAccessible::Client : QAccessibleWidget::role();
    }
};

/// For the toolkit, which owns the answer.
QAccessibleInterface* interfaceOf(const QString& /*className*/, QObject* object)
{
    const QVariant role = object->property(kProperty);
    auto* const widget = qobject_cast<QWidget*>(object);
    return role.isValid() && widget != nullptr ? new Named(widget, static_cast<QAccessible::Role>(role.toInt()))
                                               : nullptr;
}

} // namespace

void DRAccessibleRole::give(QWidget& widget, QAccessible::Role role)
{
    widget.setProperty(kProperty, static_cast<int>(role));
    QAccessible::installFactory(interfaceOf); // more than once counts once
}
