#pragma once

#include "wizard/DRMGContext.h"
#include "wizard/DRMGRepeatQuestion.h"
#include "wizard/DRTransferPlan.h"
#include "wizard/DRTransferResult.h"

#include <QObject>

#include <optional>

/// Stands before the transfer: refuses one that would move nothing, asks before it doubles what the phone has, and
/// remembers what went there. Does nothing of that when the context names no ledger.
class DRMGTransferGate final : public QObject {
    Q_OBJECT

public:
    /// The context outlives the gate.
    explicit DRMGTransferGate(const DRMGContext& context);

    /// Whether the kinds may go to the phone now. If not, either `refusal` tells why, or `question` waits for an answer,
    /// and the same call has to be made again after it. An answer counts once, and only while the question is still the
    /// same.
    [[nodiscard]] bool
    isOpenFor(const DRMigrateIPhoneBackupEntryPointer& backup, const DRDCDevicePointer& phone, const QStringList& keys);

    [[nodiscard]] const std::optional<DRMGRepeatQuestion>& question() const { return m_question; }

    /// Why the transfer would be pointless.
    enum class Refusal {
        None,
        NewerLayout, ///< the backup keeps its files in a way that cannot be read
        NothingMoves,
    };
    [[nodiscard]] Refusal refusal() const { return m_refusal; }

    /// Whether nothing of the backup can be read.
    [[nodiscard]] static bool hasNewerLayout(const DRMigrateIPhoneBackupEntry& backup);

    /// Takes the answer to the question; "stop" makes an end of it.
    void answer(DRMGRepeatQuestion::Answer answer);

    /// The kinds that the person left out of the transfer that may begin.
    [[nodiscard]] const QStringList& leftOut() const { return m_leftOut; }

    /// What the transfer does that may begin; an empty plan without a ledger.
    [[nodiscard]] const DRTransferPlan& plan() const { return m_plan; }

    /// To be called before the phone is written: what is on it must be known even if this process dies in the middle.
    void remember();

    /// To be called when the transfer has ended: what did not reach the phone is forgotten again.
    void settle(const DRTransferResult& result);

    /// Whether the last transfer put something onto the phone that could not be remembered.
    [[nodiscard]] bool hasForgotten() const { return m_hasForgotten; }

private:
    void makePlan(const QStringList& keys);
    [[nodiscard]] Refusal makeRefusal(const QStringList& keys) const;
    [[nodiscard]] std::optional<DRMGRepeatQuestion> makeQuestion() const;
    [[nodiscard]] QString questionText() const;

    const DRMGContext& m_context;
    DRMigrateIPhoneBackupEntryPointer m_backup;
    DRDCDevicePointer m_phone;
    std::optional<DRTransferLedger> m_ledger;
    DRTransferPlan m_plan;
    Refusal m_refusal = Refusal::None;
    std::optional<DRMGRepeatQuestion> m_question;
    std::optional<DRMGRepeatQuestion::Answer> m_answer;
    QStringList m_leftOut;
    bool m_isRemembered = false; ///< whether this run has been entered into the ledger, well or not
    bool m_hasForgotten = false;
};
