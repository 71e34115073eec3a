#pragma once

#include <QIcon>
#include <QPointer>
#include <QString>

#include <functional>
#include <vector>

class QMessageBox;
class QWidget;

/// A question over a window. The program goes on behind it: nothing waits for the answer.
struct DRQuestionBox {
    struct Button {
        QString text; ///< "&" marks its Alt key
        std::function<void()> action;
    };

    QIcon icon;
    QString title;
    QString text;
    std::vector<Button> buttons; ///< the last one is the safe answer: that of Return and Escape

    /// Opens the question, in plain text; the window owns the box, which goes when it is answered or closed from outside.
    QPointer<QMessageBox> ask(QWidget& window) const;
};
