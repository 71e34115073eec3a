#pragma once

#include <QWidget>

#include <functional>

class DRSequence;
class QKeyEvent;
class QPushButton;

/// The row of buttons below the pages of a sequence: Cancel (or Back, as its label says) and Next (or Done). Labels,
/// and which may be pressed, follow the sequence. Next is passed on to it, Cancel is left to the frame.
class DRSequenceButtons : public QWidget {
    Q_OBJECT

public:
    using TextLookup = std::function<QString(const QString& identifier)>;

    /// The sequence must outlive the buttons.
    DRSequenceButtons(DRSequence& sequence, TextLookup text, QWidget* parent = nullptr);

    /// Brings both buttons in line with the sequence. The closing page has no Cancel.
    void refresh();

    [[nodiscard]] QPushButton* cancelButton() const { return m_cancel; }
    [[nodiscard]] QPushButton* nextButton() const { return m_next; }

    /// Keeps the second click of a double click, and a key held too long, from pressing a button of the next page.
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void cancelPressed();

private:
    [[nodiscard]] bool isHeld(const QKeyEvent& press) const;

    DRSequence& m_sequence;
    TextLookup m_text;
    QPushButton* m_cancel;
    QPushButton* m_next;
    quint64 m_lastKeyRelease = 0; ///< in milliseconds of the system
};
