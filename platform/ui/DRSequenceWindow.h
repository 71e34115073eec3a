#pragma once

#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

class DRPageArea;
class DRSequence;
class DRSequenceButtons;
class DRSequenceStep;
class DRStepGroupList;
class QLabel;

/// The frame of any sequence: its step groups at the side, the heading and the view of the current page, and the
/// buttons. Forwards buttons and keys to the sequence and shows what that decides; closes when the sequence ends.
///
/// Keys: Escape presses Cancel, the sequence's key equivalent presses Next, both unless the page uses the key itself.
/// When a page appears the focus goes to the page's focus proxy, if it has one, else to Next, or nowhere while that may
/// not be pressed, so that a key pressed too long cancels nothing.
class DRSequenceWindow : public QWidget {
    Q_OBJECT

public:
    struct Setup {
        /// Makes the view of a step when that is first shown; the window takes it over and keeps it. May answer null for
        /// a page that shows its heading only.
        std::function<QWidget*(DRSequenceStep&)> makePage;

        /// The text behind an identifier, such as that of a button; empty when there is none.
        std::function<QString(const QString& identifier)> text;

        /// Asked when the user closes the window or presses Cancel while the sequence runs; false keeps the page as it is.
        /// Unset means yes.
        std::function<bool()> mayLeave;

        /// The file that keeps the window's size; empty keeps none.
        QString settingsPath;
    };

    /// The sequence, with all its steps, must outlive the window. It may be started before or after.
    DRSequenceWindow(DRSequence& sequence, Setup setup, QWidget* parent = nullptr);
    ~DRSequenceWindow() override;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    /// Tab goes through the page from its top, then to the buttons.
    bool focusNextPrevChild(bool isNext) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] QSize usualSize() const;
    struct Page {
        QWidget* widget = nullptr;
        QPointer<QWidget> firstFocus; ///< null when it is up to the buttons
    };

    void layOut();
    void connectSequence();
    void pressCancel();
    void showCurrentStep();
    void contentChanged();
    void updateHeading();
    void updateHeadingFont();
    void refreshButtons();
    void setFirstFocus();
    [[nodiscard]] QWidget* pageOf(DRSequenceStep& step);
    [[nodiscard]] bool isLeavingAllowed() const;
    void restoreSize();
    void saveSize() const;

    DRSequence& m_sequence;
    Setup m_setup;
    DRStepGroupList* m_groups;
    QLabel* m_heading;
    DRPageArea* m_pageArea;
    DRSequenceButtons* m_buttons;
    QHash<QString, Page> m_pages; ///< by step key
    bool m_awaitsFirstFocus = false;
};
