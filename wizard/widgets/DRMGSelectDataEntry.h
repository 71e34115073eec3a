#pragma once

#include <QAbstractButton>

#include <array>

class DRSequenceResourceManager;
class DRSpinner;
class DRTimerSource;

/// The tick box of one kind of content: tick, icon, label with the number of items and, where asked for, their size.
/// Works like every check box for mouse, keyboard and screen readers; while it is pressed it shows the mixed image.
/// The icon is that of the button (`setIcon`).
class DRMGSelectDataEntry final : public QAbstractButton {
    Q_OBJECT

public:
    /// What is known of the content.
    enum class Content {
        Ready,
        Loading,    ///< being counted: a spinner turns behind the label
        Unreadable, ///< could not be read: marked
        Missing     ///< not in the backup: marked
    };

    static constexpr qint64 kStateMixed = -1; ///< never stays: pressing and letting go leads to a tick
    static constexpr qint64 kStateClear = 0;
    static constexpr qint64 kStateTicked = 1;

    /// A ticked box without label. The images are those named "checkbox-active", "checkbox-mixed", "checkbox-passive",
    /// "migrate_mark_unreadable" and "migrate_mark_missing".
    /// The timers turn the spinner; they must outlive the box.
    DRMGSelectDataEntry(const DRSequenceResourceManager& resources, DRTimerSource& timers, QWidget* parent = nullptr);

    /// The label, "%i" in it standing for the count.
    [[nodiscard]] const QString& stringValue() const { return m_stringValue; }
    void setStringValue(const QString& stringValue);

    [[nodiscard]] quint64 dataCounter() const { return m_dataCounter; }
    void setDataCounter(quint64 dataCounter);

    [[nodiscard]] qint64 state() const { return m_state; }

    /// Values other than those named look clear. Tells nobody: only a person's toggling does.
    void setState(qint64 state);

    /// Shown behind the label when `showSize` is set.
    [[nodiscard]] quint64 sizeBytes() const { return m_sizeBytes; }
    void setSizeBytes(quint64 sizeBytes);

    [[nodiscard]] bool showSize() const { return m_showSize; }
    void setShowSize(bool showSize);

    [[nodiscard]] Content content() const { return m_content; }

    /// `explanation` is for people, such as "Could not be read", and stands below the label; empty for none. What is
    /// unreadable may have a count all the same, of the part that could be read.
    void setContent(Content content, const QString& explanation = QString());

    /// The image that stands for the tick now: "checkbox-mixed" while pressed.
    [[nodiscard]] QString checkboxImageName() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

Q_SIGNALS:
    /// A person toggled the box.
    void selectDataEntrySelectionDidChange();

protected:
    void nextCheckState() override;
    void checkStateSet() override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// The places of the parts, left to right or mirrored.
    struct Places {
        QRect checkbox;
        QRect icon;
        QRect text;
        QRect mark;
    };

    [[nodiscard]] Places places() const;
    [[nodiscard]] QSize textSize(int width) const;
    [[nodiscard]] int spaceBehindText() const;
    [[nodiscard]] QIcon checkboxIcon() const;
    [[nodiscard]] QIcon markIcon() const;
    void updateWithState();
    void placeSpinner();

    QString m_stringValue;
    quint64 m_dataCounter = 0;
    qint64 m_state = kStateTicked;
    quint64 m_sizeBytes = 0;
    bool m_showSize = false;
    Content m_content = Content::Ready;
    QString m_explanation;
    std::array<QIcon, 3> m_checkboxImages;
    QIcon m_unreadableMark;
    QIcon m_missingMark;
    DRSpinner* m_spinner;
};
