#include "app/gui/DRQuestionBox.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace {

constexpr QSize kIconSize{48, 48};  // in points
constexpr int kTextCharacters = 56; ///< the least width of the text, in average characters of the font

} // namespace

QPointer<QMessageBox> DRQuestionBox::ask(QWidget& window) const
{
    auto* const box = new QMessageBox(QMessageBox::NoIcon, title, title, QMessageBox::NoButton, &window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(text);
    for (QLabel* const label : box->findChildren<QLabel*>()) {
        if (label->wordWrap()) {
            label->setMinimumWidth(kTextCharacters * window.fontMetrics().averageCharWidth());
        }
    }
    box->setIconPixmap(icon.pixmap(kIconSize, window.devicePixelRatioF()));
    for (const Button& button : buttons) {
        // One role for all keeps them in the order in which they are given.
        QPushButton* const made = box->addButton(button.text, QMessageBox::ActionRole);
        QObject::connect(made, &QPushButton::clicked, &window, button.action);
        box->setDefaultButton(made);
        box->setEscapeButton(made);
    }
    box->open();
    return box;
}
