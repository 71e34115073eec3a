#include "wizard/restore/DRMGRestoreStepChoose.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"
#include "platform/device/DRDCDevice.h"
#include "platform/device/DRDCNotifications.h"
#include "wizard/DRMGSequence.h"
#include "wizard/restore/DRMGRestoreKeys.h"
#include "wizard/restore/DRMGRestoreRows.h"
#include "wizard/restore/DRMGRestoreSequence.h"
#include "wizard/restore/DRMGRestoreStepPutBack.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Obstacle = DRPhoneRestorePlan::Obstacle;
using State = DRPhoneBackup::State;

bool isSameFolder(const QString& one, const QString& other)
{
    return QFileInfo(one).canonicalFilePath() == QFileInfo(other).canonicalFilePath();
}

} // namespace

const DRMGRestoreStepChoose::VerdictText& DRMGRestoreStepChoose::textsOf(Verdict verdict)
{
    static constexpr std::array<VerdictText, 9> kTexts{{
        {Verdict::Wholly, u"wizard_restore_state_wholly", nullptr},
        {Verdict::InPart, u"wizard_restore_state_in_part", nullptr},
        {Verdict::NoBackup, u"wizard_restore_state_no_backup", u"wizard_restore_why_no_backup"},
        {Verdict::Damaged, u"wizard_restore_state_damaged", u"wizard_restore_why_damaged"},
        {Verdict::NoPhone, u"wizard_restore_state_no_phone", u"wizard_restore_why_no_phone"},
        {Verdict::PhoneNotReady, u"wizard_restore_state_no_phone", u"wizard_restore_why_not_ready"},
        {Verdict::PhoneTooOld, u"wizard_restore_state_no_phone", u"wizard_restore_why_too_old"},
        {Verdict::OtherPhone, u"wizard_restore_state_other_phone", u"wizard_restore_why_other_phone"},
        {Verdict::NoApps, u"wizard_restore_state_no_apps", u"wizard_restore_why_no_apps"},
    }};
    return *std::ranges::find(kTexts, verdict, &VerdictText::verdict);
}

bool DRMGRestoreStepChoose::canGoBack(Verdict verdict)
{
    return textsOf(verdict).reason == nullptr;
}

DRMGRestoreStepChoose::DRMGRestoreStepChoose(const DRMGContext& context, QString phoneBackupsFolder, QString preferred)
    : DRMGRestoreStep(context,
                      {.key = DRMGRestoreKeys::kChoose,
                       .heading = u"wizard_restore_choose_header"_s,
                       .pageViewComponents = {u"choose"_s}}),
      m_folder(std::move(phoneBackupsFolder)),
      m_preferred(std::move(preferred))
{
    localizations().setAliasString(u"wizard_restore_put_back"_s, u"dr_sequence_button_next"_s);
}

void DRMGRestoreStepChoose::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGRestoreStep::stepWillAppearInDirection(direction);
    m_backups = DRPhoneBackup::allBelow(m_folder);
    m_isChosen = false;
    makeRows();
    // A phone that was in use and comes back is not announced anew.
    m_lookTimer = context().timers.repeatEvery(kLookForPhoneInterval, [this] { lookAtPhone(); });
    m_newPhone = context().services.notificationCenter.observe(DRDCNotifications::kActiveDeviceDidFinishEnumeration,
                                                               [this](const DRNotification&) { lookAtPhone(); });
}

void DRMGRestoreStepChoose::stepWillDisappear()
{
    m_lookTimer.reset();
    m_newPhone.reset();
    DRMGRestoreStep::stepWillDisappear();
}

bool DRMGRestoreStepChoose::sequenceShouldChangeToNextStep()
{
    lookAtPhone();
    if (!m_plan) {
        return false;
    }
    restore().putBack().setWork(activeDevice(), *m_plan);
    return true;
}

void DRMGRestoreStepChoose::selectRow(int row)
{
    if (row != m_selectedRow) {
        m_isChosen = true;
        select(row);
    }
}

QString DRMGRestoreStepChoose::bodyHtml() const
{
    return joined(u"%@ %@"_s, {u"wizard_restore_choose_text1"_s, u"wizard_restore_choose_text2"_s});
}

QString DRMGRestoreStepChoose::planText() const
{
    if (!m_plan) {
        return {};
    }
    return filled(u"wizard_restore_plan"_s, kindNames(m_plan->packetIDs()), sizeText(m_plan->sizeBytes(), QLocale())) +
           skippedText(*m_plan);
}

QString DRMGRestoreStepChoose::skippedText(const DRPhoneRestorePlan& plan) const
{
    QString lines;
    for (const DRDCPacketProblem& problem : plan.skipped) {
        lines += u'\n' + filled(u"wizard_restore_skipped"_s, kindNames({problem.packetID}),
                                withoutControlCharacters(problem.reason));
    }
    return lines;
}

QString DRMGRestoreStepChoose::statusText() const
{
    if (m_backups.empty()) {
        return text(u"wizard_restore_none"_s);
    }
    const DRPhoneBackup* const backup = selectedBackup();
    if (backup == nullptr) {
        const auto ofPhone = verdictOnPhone();
        return text(ofPhone ? QString::fromUtf16(textsOf(*ofPhone).reason) : u"wizard_restore_why_none_chosen"_s);
    }
    const Verdict verdict = m_verdicts[static_cast<std::size_t>(m_selectedRow)];
    if (canGoBack(verdict)) {
        return {};
    }
    const bool isDamage = verdict == Verdict::Damaged;
    return filled(QString::fromUtf16(textsOf(verdict).reason),
                  isDamage ? damageOf(*backup) : withoutControlCharacters(backup->phoneName));
}

QString DRMGRestoreStepChoose::damageOf(const DRPhoneBackup& backup) const
{
    QStringList damages;
    for (const DRPhoneBackup::App& app : backup.apps) {
        if (app.isThere && !app.problem.isNull()) {
            damages.append(kindNames({app.packetID}) + u": "_s + withoutControlCharacters(app.problem));
        }
    }
    damages.removeDuplicates();
    return damages.join(u"; "_s);
}

bool DRMGRestoreStepChoose::wantsPhone() const
{
    return !activeDevice() || (!m_rows.empty() && std::ranges::none_of(m_rows, &Row::canGoBack));
}

QString DRMGRestoreStepChoose::listName() const
{
    return text(u"wizard_name_phone_backups"_s);
}

QStringList DRMGRestoreStepChoose::columnTitles() const
{
    return {text(u"wizard_column_name"_s), text(u"wizard_column_date"_s), text(u"wizard_restore_column_phone"_s),
            text(u"wizard_restore_column_state"_s)};
}

std::optional<DRMGRestoreStepChoose::Verdict> DRMGRestoreStepChoose::verdictOnPhone() const
{
    const DRDCDevicePointer phone = activeDevice();
    if (!phone || !phone->isConnected()) {
        return Verdict::NoPhone;
    }
    if (!phone->hasStateFlag(DRDCDevice::kStateFlagReady)) {
        return Verdict::PhoneNotReady;
    }
    return phone->androidBaseVersion() < DRMGSequence::kOldestAndroidBaseVersion ? std::optional(Verdict::PhoneTooOld)
                                                                                 : std::nullopt;
}

DRMGRestoreStepChoose::Verdict DRMGRestoreStepChoose::verdictOn(const DRPhoneBackup& backup) const
{
    if (backup.state == State::Damaged) {
        return Verdict::Damaged;
    }
    if (!backup.isUsable()) {
        return Verdict::NoBackup;
    }
    if (const auto ofPhone = verdictOnPhone()) {
        return *ofPhone;
    }
    const auto plan = DRPhoneRestorePlan::make(backup, *activeDevice(), [](const QString&) { return true; });
    switch (plan.obstacle()) {
    case Obstacle::OtherPhone:
        return Verdict::OtherPhone;
    case Obstacle::NothingToPutBack:
        return Verdict::NoApps;
    case Obstacle::UnusableBackup:
        return Verdict::NoBackup;
    case Obstacle::DamagedPackets:
        return Verdict::Damaged;
    case Obstacle::None:
        break;
    }
    return plan.skipped.empty() ? Verdict::Wholly : Verdict::InPart;
}

const DRPhoneBackup* DRMGRestoreStepChoose::selectedBackup() const
{
    return m_selectedRow < 0 ? nullptr : &m_backups[static_cast<std::size_t>(m_selectedRow)];
}

/// The preferred one even when it cannot go back: the page says why.
int DRMGRestoreStepChoose::firstChoice() const
{
    const auto preferred = std::ranges::find_if(m_backups, [this](const DRPhoneBackup& backup) {
        return !m_preferred.isEmpty() && isSameFolder(backup.path, m_preferred);
    });
    if (preferred != m_backups.end()) {
        return static_cast<int>(preferred - m_backups.begin());
    }
    const auto newest = std::ranges::find(m_rows, true, &Row::canGoBack);
    return newest == m_rows.end() ? -1 : static_cast<int>(newest - m_rows.begin());
}

/// What matters of the phone here; changes whenever that does.
QString DRMGRestoreStepChoose::phoneState() const
{
    const auto verdict = verdictOnPhone();
    const DRDCDevicePointer phone = activeDevice();
    return u"%1 %2"_s.arg(verdict ? static_cast<int>(*verdict) : -1).arg(phone ? phone->identifier() : QString());
}

void DRMGRestoreStepChoose::lookAtPhone()
{
    if (phoneState() != m_phoneState) {
        makeRows();
    }
}

void DRMGRestoreStepChoose::makeRows()
{
    m_phoneState = phoneState();
    m_verdicts.clear();
    m_rows.clear();
    for (const DRPhoneBackup& backup : m_backups) {
        const Verdict verdict = verdictOn(backup);
        const bool isNamed = !backup.name.isEmpty();
        m_verdicts.push_back(verdict);
        m_rows.push_back({.name = withoutControlCharacters(isNamed ? backup.name : QFileInfo(backup.path).fileName()),
                          .date = dateText(backup.date),
                          .phone = withoutControlCharacters(backup.phoneName),
                          .state = text(QString::fromUtf16(textsOf(verdict).state)),
                          .canGoBack = canGoBack(verdict)});
    }
    select(m_isChosen ? m_selectedRow : firstChoice());
}

void DRMGRestoreStepChoose::select(int row)
{
    m_selectedRow = row >= 0 && std::cmp_less(row, m_rows.size()) ? row : -1;
    m_plan.reset();
    const DRPhoneBackup* const backup = selectedBackup();
    if (backup != nullptr && m_rows[static_cast<std::size_t>(row)].canGoBack) {
        m_plan = DRPhoneRestorePlan::make(*backup, *activeDevice(), [](const QString&) { return true; });
    }
    setStateMask(m_plan ? kStateAllEnabled : kStateNextDisabled);
    Q_EMIT contentChanged();
}
