#include "wizard/steps/DRMGSequenceStepComplete.h"

#include "platform/core/DRLog.h"
#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGHtml.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <QDir>
#include <QSet>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

const QString kSupportLink = u"vorn"_s;
const QString kBackupLink = u"backup"_s;

} // namespace

DRMGSequenceStepComplete::DRMGSequenceStepComplete(const DRMGContext& context)
    : DRMGSequenceStep(context,
                       {.key = DRMGStepKeys::kComplete,
                        .heading = u"IDD_STEPWIZ_FINISH_IDC_HEADER"_s,
                        .pageViewComponents = {u"finished"_s}})
{
}

QString DRMGSequenceStepComplete::localizedTitle() const
{
    return m_errorState == ErrorState::Success ? DRMGSequenceStep::localizedTitle()
                                               : text(u"IDD_STEPWIZ_FINISH_FAILED_IDC_HEADER"_s);
}

void DRMGSequenceStepComplete::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepWillAppearInDirection(direction);
    if (m_errorState != ErrorState::Success) {
        DRMGAnalyticsSendErrorEvent(context().analytics, m_errorState == ErrorState::BackupFailed
                                                             ? DRMGErrorEvent::BackupFailed
                                                             : DRMGErrorEvent::RestoreFailed);
    }
    makeSummary();
    setStateMask(kStateClosing | kStateUserGoesOn | kStateNextEnabled);
    Q_EMIT contentChanged();
}

void DRMGSequenceStepComplete::setErrorState(ErrorState state)
{
    m_errorState = state;
    Q_EMIT contentChanged();
}

QString DRMGSequenceStepComplete::backupName() const
{
    return sequence()->parameters().value<QString>(DRMGSequence::kBackupName);
}

QString DRMGSequenceStepComplete::bodyHtml() const
{
    if (m_errorState == ErrorState::Success) {
        return joined(u"%@<br />%@"_s, {u"IDD_STEPWIZ_FINISH_IDC_STATIC"_s, u"IDD_STEPWIZ_FINISH_IDC_STATIC_2"_s});
    }
    return DRMGHtml::joined(u"%@<br />%@<br />%@"_s,
                            {text(u"IDD_STEPWIZ_FINISH_FAILED_IDC_STATIC"_s),
                             text(u"IDD_STEPWIZ_FINISH_FAILED_IDC_RESTART"_s),
                             DRMGHtml::withLink(text(u"IDD_STEPWIZ_FINISH_FAILED_IDC_LINK"_s), kSupportLink)});
}

QString DRMGSequenceStepComplete::noteHtml() const
{
    switch (m_errorState) {
    case ErrorState::Success:
        return DRMGHtml::joined(u"%@<br />%@<br />%@"_s,
                                {text(u"IDD_STEPWIZ_FINISH_IDC_INFO_TXT"_s), text(u"IDD_STEPWIZ_FINISH_IDC_STATIC_3"_s),
                                 backupHtml(u"IDD_STEPWIZ_FINISH_IDC_BACKUP"_s)});
    case ErrorState::BackupFailed:
        return joined(u"%@<br />%@"_s,
                      {u"IDD_STEPWIZ_FINISH_FAILED_IDC_INFO_TXT"_s, u"IDD_STEPWIZ_FINISH_FAILED_IDC_NO_BACKUP"_s});
    case ErrorState::RestoreFailed:
        return DRMGHtml::joined(u"%@<br />%@<br />%@<br />%@"_s,
                                {text(u"IDD_STEPWIZ_FINISH_FAILED_IDC_INFO_TXT"_s),
                                 text(u"IDD_STEPWIZ_FINISH_FAILED_IDC_BACKUP_TXT1"_s),
                                 backupHtml(u"IDD_STEPWIZ_FINISH_FAILED_IDC_BACKUP"_s),
                                 text(u"IDD_STEPWIZ_FINISH_FAILED_IDC_BACKUP_TXT2"_s)});
    }
    return {};
}

QString DRMGSequenceStepComplete::imageName() const
{
    return m_errorState == ErrorState::Success ? u"tarvex_checkmark"_s : u"tarvex_alert"_s;
}

QString DRMGSequenceStepComplete::imageText() const
{
    return text(m_errorState == ErrorState::Success ? u"wizard_name_success"_s : u"wizard_name_failure"_s);
}

QString DRMGSequenceStepComplete::summaryTitle() const
{
    return text(u"wizard_summary_title"_s);
}

bool DRMGSequenceStepComplete::linkClicked(const QString& link)
{
    if (DRMGHtml::isLink(link, kSupportLink) && !context().supportAddress.isEmpty()) {
        Q_EMIT migration().openUrlRequested(QUrl(context().supportAddress));
    }
    if (DRMGHtml::isLink(link, kBackupLink)) {
        DRMGAnalyticsSendBackupAndRestoreClickedEvent(context().analytics);
        sequence()->next();
        Q_EMIT migration().restoreSelected();
    }
    return true;
}

QString DRMGSequenceStepComplete::backupHtml(const QString& identifier) const
{
    return DRMGHtml::withLink(text(identifier), kBackupLink).replace(u"%ws"_s, backupName().toHtmlEscaped());
}

void DRMGSequenceStepComplete::addLossesLeftOut()
{
    const QSet<QString> told(m_remarks.begin(), m_remarks.end());
    for (const DRMGSummaryRow& row : m_summaryRows) {
        std::ranges::copy_if(row.allLosses, std::back_inserter(m_remarks),
                             [&told](const QString& loss) { return !told.contains(loss); });
    }
}

void DRMGSequenceStepComplete::makeSummary()
{
    const DRTransferSummary summary = migration().transferSummary();
    m_summaryRows = DRMGSummaryRow::rowsOf(summary, migration().gate().plan(), context().strings);
    m_remarks.clear();
    for (const QString& detail : summary.result.errorDetails) {
        m_remarks.append(withoutControlCharacters(detail));
    }
    if (m_errorState == ErrorState::Success && std::ranges::any_of(m_summaryRows, &DRMGSummaryRow::isLoss)) {
        m_remarks.append(text(u"wizard_summary_incomplete"_s));
    }
    addLossesLeftOut();
    if (m_remarks.isEmpty() && summary.result.errorCode == DRMGSequenceStepTransfer::kErrorPhoneGone) {
        m_remarks.append(text(u"wizard_summary_phone_gone"_s));
    }
    if (migration().gate().hasForgotten()) {
        m_remarks.append(
            text(u"wizard_summary_forgotten"_s).replace(u"%1"_s, QDir::toNativeSeparators(context().ledgerPath)));
    }
}
