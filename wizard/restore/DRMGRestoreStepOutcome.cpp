#include "wizard/restore/DRMGRestoreStepOutcome.h"

#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"
#include "wizard/restore/DRMGRestoreKeys.h"
#include "wizard/restore/DRMGRestoreSequence.h"
#include "wizard/restore/DRMGRestoreStepChoose.h"

#include <QDir>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Ending = DRPhoneRestoreResult::Ending;

bool isWritten(const std::optional<DRPhoneRestoreResult>& result)
{
    return result && (result->ending == Ending::PutBack || result->ending == Ending::Failed);
}

} // namespace

/// The texts of an ending, by identifier.
struct DRMGRestoreStepOutcome::EndingText {
    Ending ending;
    const char16_t* title;
    const char16_t* body;
    const char16_t* nextStep;
};

DRMGRestoreStepOutcome::DRMGRestoreStepOutcome(const DRMGContext& context)
    : DRMGRestoreStep(context,
                      {.key = DRMGRestoreKeys::kOutcome,
                       .heading = u"wizard_restore_done_header"_s,
                       .pageViewComponents = {u"finished"_s}})
{
    localizations().setAliasString(u"dr_sequence_button_done"_s, u"dr_sequence_button_next"_s);
    relabelCancel(u"IDD_STEPWIZ_SHEET_IDC_BACK"_s);
}

const DRMGRestoreStepOutcome::EndingText& DRMGRestoreStepOutcome::endingText() const
{
    static constexpr EndingText kDamaged{
        {}, u"wizard_restore_unchanged_header", u"wizard_restore_damaged", u"wizard_restore_damaged_next"};
    static constexpr std::array<EndingText, 5> kTexts{{
        {Ending::PutBack, u"wizard_restore_done_header", u"wizard_restore_done", u"wizard_restore_done_next"},
        {Ending::NotKept, u"wizard_restore_unchanged_header", u"wizard_restore_not_kept",
         u"wizard_restore_not_kept_next"},
        {Ending::NotEnoughSpace, u"wizard_restore_unchanged_header", u"wizard_restore_no_space",
         u"wizard_restore_no_space_next"},
        {Ending::PhoneGone, u"wizard_restore_unchanged_header", u"wizard_restore_phone_gone",
         u"wizard_restore_phone_gone_next"},
        {Ending::Failed, u"wizard_restore_failed_header", u"wizard_restore_failed", u"wizard_restore_failed_next"},
    }};
    return m_outcome.result ? *std::ranges::find(kTexts, m_outcome.result->ending, &EndingText::ending) : kDamaged;
}

void DRMGRestoreStepOutcome::setOutcome(Outcome outcome)
{
    m_outcome = std::move(outcome);
    m_rows = DRMGRestoreRows::of(m_outcome.plan, m_outcome.result.value_or(DRPhoneRestoreResult()), context().strings);
}

QString DRMGRestoreStepOutcome::localizedTitle() const
{
    return text(QString::fromUtf16(endingText().title));
}

void DRMGRestoreStepOutcome::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGRestoreStep::stepWillAppearInDirection(direction);
    setStateMask(hasFailed() ? kStateAllEnabled : kStateClosing | kStateUserGoesOn | kStateNextEnabled);
    Q_EMIT contentChanged();
}

bool DRMGRestoreStepOutcome::sequenceShouldCancel()
{
    sequence()->gotoStep(&restore().choose(), DRMGRestoreGroups::kChoose);
    return false;
}

bool DRMGRestoreStepOutcome::hasFailed() const
{
    return !m_outcome.result || m_outcome.result->ending != Ending::PutBack;
}

QString DRMGRestoreStepOutcome::bodyHtml() const
{
    const QString of = m_outcome.result && m_outcome.result->ending == Ending::NotEnoughSpace
                           ? sizeText(m_outcome.result->missingBytes, QLocale())
                           : dateText(m_outcome.plan.backup.date);
    return filled(QString::fromUtf16(endingText().body), of.toHtmlEscaped()) + u"<br />"_s +
           filled(QString::fromUtf16(endingText().nextStep),
                  withoutControlCharacters(m_outcome.keptName).toHtmlEscaped());
}

QStringList DRMGRestoreStepOutcome::remarks() const
{
    QStringList remarks;
    if (isWritten(m_outcome.result)) {
        remarks.append(text(u"wizard_restore_media_stay"_s));
    }
    if (!m_outcome.isNoted) {
        remarks.append(filled(u"wizard_restore_forgotten"_s, QDir::toNativeSeparators(context().ledgerPath)));
    }
    if (m_outcome.areFilesLeft) {
        remarks.append(text(u"wizard_restore_files_left"_s));
    }
    return remarks;
}

QString DRMGRestoreStepOutcome::keptText() const
{
    return keptPath().isEmpty() ? QString()
                                : filled(u"wizard_restore_kept"_s, withoutControlCharacters(m_outcome.keptName));
}

QString DRMGRestoreStepOutcome::keptPath() const
{
    return m_outcome.result ? QDir::toNativeSeparators(m_outcome.result->keptPath) : QString();
}

QString DRMGRestoreStepOutcome::imageName() const
{
    return hasFailed() ? u"tarvex_alert"_s : u"tarvex_checkmark"_s;
}

QString DRMGRestoreStepOutcome::imageText() const
{
    return text(hasFailed() ? u"wizard_name_failure"_s : u"wizard_name_success"_s);
}

QString DRMGRestoreStepOutcome::rowsTitle() const
{
    return text(u"wizard_restore_rows_title"_s);
}
