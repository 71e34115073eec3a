#pragma once

#include "platform/ui/DRHtmlLinks.h"

#include <QAccessible>

#include <optional>

class DRHtmlTextView;

/// What screen readers know of one link of an HTML text. It stands for the link at its place among the links, whichever
/// that is at the moment, and is invalid while there are fewer. The view outlives it.
class DRHtmlLinkAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    DRHtmlLinkAccessible(DRHtmlTextView& view, std::size_t index);

    [[nodiscard]] bool isValid() const override { return link().has_value(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    /// Around its words, in points of the desktop; as wide as the text where it goes over several lines.
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Link; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& actionName) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& actionName) const override;

private:
    [[nodiscard]] std::optional<DRHtmlLinks::Link> link() const;

    DRHtmlTextView& m_view;
    std::size_t m_index;
};
