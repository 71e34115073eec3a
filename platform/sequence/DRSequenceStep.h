#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include "platform/sequence/DRLocalizationAliases.h"

class DRSequence;

/// The way in which a page was reached.
enum class DRSequenceDirection { Forward, Backward };

/// One page of a sequence, without widgets: it owns what the page shows and decides where to go; views render it. The
/// sequence calls the operations in this order: `stepWillDisappear` of the page that is left,
/// `stepWillAppearInDirection`, the page is current, `stepDidAppearInDirection`.
class DRSequenceStep : public QObject {
    Q_OBJECT

public:
    /// Bits of `stateMask`.
    static constexpr int kStateCancelEnabled = 1;
    static constexpr int kStateNextEnabled = 2;
    static constexpr int kStateUserGoesOn = 4; ///< without it the page goes on by itself
    static constexpr int kStateClosing = 16;   ///< the closing page: Next becomes Done

    /// Masks of ordinary pages.
    static constexpr int kStateNextDisabled = kStateCancelEnabled | kStateUserGoesOn;
    static constexpr int kStateAllEnabled = kStateNextDisabled | kStateNextEnabled;

    /// `key` names the step within its sequence.
    explicit DRSequenceStep(QString key);
    ~DRSequenceStep() override;

    [[nodiscard]] const QString& key() const { return m_key; }

    /// The sequence that the step was added to; null before.
    [[nodiscard]] DRSequence* sequence() const { return m_sequence; }

    /// The page's heading.
    [[nodiscard]] virtual QString localizedTitle() const = 0;

    /// The page's name in page-view events; the base has none.
    [[nodiscard]] virtual QStringList analyticsPageViewComponents() const { return {}; }

    virtual void stepWillAppearInDirection(DRSequenceDirection direction);
    virtual void stepDidAppearInDirection(DRSequenceDirection direction);
    virtual void stepWillDisappear();

    /// Next or Cancel was pressed. True leaves moving on, or ending the sequence, to the sequence; false means that the
    /// step has done what was to be done.
    [[nodiscard]] virtual bool sequenceShouldChangeToNextStep() { return true; }
    [[nodiscard]] virtual bool sequenceShouldCancel() { return true; }

    /// Which buttons may be pressed, as a sum of the bits above.
    [[nodiscard]] int stateMask() const { return m_stateMask; }
    void setStateMask(int mask);

    /// The step's own labels of the frame's buttons.
    [[nodiscard]] DRLocalizationAliases& localizations() { return m_localizations; }
    [[nodiscard]] const DRLocalizationAliases& localizations() const { return m_localizations; }

Q_SIGNALS:
    void stateMaskChanged();

    /// Something that the page shows has changed.
    void contentChanged();

private:
    friend class DRSequence;

    QString m_key;
    DRSequence* m_sequence = nullptr;
    int m_stateMask = kStateAllEnabled;
    DRLocalizationAliases m_localizations;
};
