#pragma once

#include "model/phone_backup/DRPhoneRestorePlan.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/core/DRTimerSource.h"
#include "wizard/restore/DRMGRestoreStep.h"

#include <optional>
#include <vector>

/// The page that lists the phone backups of this computer. Next, labelled "Put back", goes on with the selected one; it
/// cannot be pressed for a backup that cannot be put back onto the phone in use, and the page says why.
class DRMGRestoreStepChoose final : public DRMGRestoreStep {
    Q_OBJECT

public:
    /// `preferred`: the folder of the backup that is selected first; may be empty.
    DRMGRestoreStepChoose(const DRMGContext& context, QString phoneBackupsFolder, QString preferred);

    /// Reads the list anew, and follows what happens to the phone until the page is left.
    void stepWillAppearInDirection(DRSequenceDirection direction) override;
    void stepWillDisappear() override;

    /// Hands the work to the next step, after a last look at the phone.
    [[nodiscard]] bool sequenceShouldChangeToNextStep() override;

    /// A row of the list as it is shown; plain texts.
    struct Row {
        QString name;
        QString date; ///< when it was made, short style
        QString phone;
        QString state; ///< whether it can be put back, in a few words
        bool canGoBack = false;

        bool operator==(const Row&) const = default;
    };

    /// The newest first.
    [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }

    /// -1 when none is selected.
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }

    /// Selects the row; one outside the list selects none.
    void selectRow(int row);

    /// What putting back means; HTML.
    [[nodiscard]] QString bodyHtml() const;

    /// Which apps go back, how much that is, and which stay as they are; empty when nothing can go back. Plain text.
    [[nodiscard]] QString planText() const;

    /// Why Next cannot be pressed; empty when it can. Plain text.
    [[nodiscard]] QString statusText() const;

    /// Whether there is no phone, or one that none of the backups can go to.
    [[nodiscard]] bool wantsPhone() const;

    /// For screen readers and headers: the list and its columns, in the order of `Row`.
    [[nodiscard]] QString listName() const;
    [[nodiscard]] QStringList columnTitles() const;

private:
    /// Whether a backup can be put back, and if not why.
    enum class Verdict {
        Wholly,
        InPart,
        NoBackup,
        Damaged,
        NoPhone,
        PhoneNotReady,
        PhoneTooOld,
        OtherPhone,
        NoApps,
    };
    struct VerdictText {
        Verdict verdict;
        const char16_t* state;  ///< identifier of the text in the list
        const char16_t* reason; ///< and of that below it; null when it can be put back
    };
    [[nodiscard]] static const VerdictText& textsOf(Verdict verdict);
    [[nodiscard]] static bool canGoBack(Verdict verdict);

    [[nodiscard]] Verdict verdictOn(const DRPhoneBackup& backup) const;
    [[nodiscard]] std::optional<Verdict> verdictOnPhone() const;
    [[nodiscard]] const DRPhoneBackup* selectedBackup() const;
    [[nodiscard]] QString skippedText(const DRPhoneRestorePlan& plan) const;
    [[nodiscard]] QString damageOf(const DRPhoneBackup& backup) const;
    [[nodiscard]] int firstChoice() const;
    [[nodiscard]] QString phoneState() const;
    void lookAtPhone();
    void makeRows();
    void select(int row);

    QString m_folder;
    QString m_preferred;
    std::vector<DRPhoneBackup> m_backups;
    std::vector<Verdict> m_verdicts; ///< one per backup
    std::vector<Row> m_rows;         ///< the same
    int m_selectedRow = -1;
    bool m_isChosen = false; ///< by the person
    std::optional<DRPhoneRestorePlan> m_plan;
    QString m_phoneState; ///< at the last look
    std::unique_ptr<DRTimer> m_lookTimer;
    std::unique_ptr<DRNotificationCenter::Registration> m_newPhone;
};
