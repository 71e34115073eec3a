#pragma once

#include <QAccessible>

class QWidget;

/// What a widget is for screen readers, where its class does not tell them.
class DRAccessibleRole {
public:
    /// Gives the widget the role; to be called by its constructor. It is known by its accessible name. Without one it is
    /// decoration, which screen readers pass over.
    static void give(QWidget& widget, QAccessible::Role role);
};
