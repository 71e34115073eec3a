#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "platform/core/DRDates.h"
#include "platform/core/DRLog.h"
#include "platform/device/DRDCNotifications.h"
#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

#include <algorithm>
#include <array>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kClosingDelay = 1000ms;
constexpr qint64 kSecondsPerHour = 3600;

QString twoNumbers(qint64 first, qint64 second)
{
    return u"%1:%2"_s.arg(first, 2, 10, QChar(u'0')).arg(second, 2, 10, QChar(u'0'));
}

} // namespace

DRMGSequenceStepTransfer::DRMGSequenceStepTransfer(const DRMGContext& context)
    : DRMGSequenceStep(context,
                       {.key = DRMGStepKeys::kTransfer,
                        .heading = u"IDD_STEPWIZ_TRANSFER_IDC_HEADER"_s,
                        .pageViewComponents = {u"transfer"_s}})
{
}

DRMGSequenceStepTransfer::~DRMGSequenceStepTransfer() = default;

void DRMGSequenceStepTransfer::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepWillAppearInDirection(direction);
    resetRun();
    m_noteHtml = text(u"IDD_STEPWIZ_TRANSFER_IDC_NOTE"_s);
    setStateMask(kStateNextDisabled);
    observeDeviceEvents();

    const auto entry = iPhoneBackupEntry();
    DRMGAnalyticsSendIPhoneHardwareVersionEvent(context().analytics, entry ? entry->productType() : QString());
    DRMGAnalyticsSendIOSVersionEvent(context().analytics, entry ? entry->productVersion() : QString());

    m_isAnimating = true;
    m_isCancelled = false;
    Q_EMIT contentChanged();
    begin();
}

void DRMGSequenceStepTransfer::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepDidAppearInDirection(direction);
    relabelCancel(u"IDD_STEPWIZ_SHEET_IDCANCEL"_s);
}

void DRMGSequenceStepTransfer::stepWillDisappear()
{
    m_startTimer.reset();
    m_progressTimer.reset();
    m_closingTimer.reset();
    m_registrations.clear();
    m_observation.stop();
    if (m_progressPhase != Phase::Done) {
        m_isCancelled = true;
    }
    m_isAnimating = false;
    Q_EMIT contentChanged();
    DRMGSequenceStep::stepWillDisappear();
}

QString DRMGSequenceStepTransfer::phoneBackupFolder() const
{
    const auto entry = phoneEntry();
    return entry ? entry->backupPath() : QString();
}

QString DRMGSequenceStepTransfer::phaseText() const
{
    static constexpr std::array<std::pair<Phase, const char16_t*>, 7> kPhaseTexts{{
        {Phase::BackUp, u"wizard_phase_back_up"},
        {Phase::Load, u"wizard_phase_load"},
        {Phase::Merge, u"wizard_phase_merge"},
        {Phase::Save, u"wizard_phase_save"},
        {Phase::Restore, u"wizard_phase_restore"},
        {Phase::TransferMedia, u"wizard_phase_transfer_media"},
        {Phase::Done, u"wizard_phase_done"},
    }};
    if (isWaitingForPhone()) {
        return text(u"wizard_phase_waiting"_s);
    }
    if (m_progressPhase == Phase::NotStarted && isEarlierRunWorking()) {
        return text(u"wizard_phase_earlier_run"_s);
    }
    const auto* const found =
        std::ranges::find(kPhaseTexts, m_progressPhase, &std::pair<Phase, const char16_t*>::first);
    return found == kPhaseTexts.end() ? QString() : text(QString::fromUtf16(found->second));
}

bool DRMGSequenceStepTransfer::isWaitingForPhone() const
{
    return m_isAnimating && m_progressPhase != Phase::Done && !activeDevice();
}

QString DRMGSequenceStepTransfer::progressName() const
{
    return text(u"wizard_name_progress"_s);
}

QString DRMGSequenceStepTransfer::animationName() const
{
    return text(u"wizard_name_animation"_s);
}

QStringList DRMGSequenceStepTransfer::typesToMove() const
{
    QStringList keys = selectedTypes();
    keys.removeIf([&leftOut = migration().gate().leftOut()](const QString& key) { return leftOut.contains(key); });
    return keys;
}

QString DRMGSequenceStepTransfer::timeText(double secondsRemaining)
{
    const qint64 seconds = std::max<qint64>(DRDates::saturatingInteger(secondsRemaining), 0);
    const qint64 minutes = seconds % kSecondsPerHour / 60;
    return seconds >= kSecondsPerHour ? twoNumbers(seconds / kSecondsPerHour, minutes)
                                      : twoNumbers(minutes, seconds % 60);
}

void DRMGSequenceStepTransfer::allDone()
{
    if (m_isCancelled) {
        return;
    }
    setProgressPhase(Phase::Done);
    m_closingTimer = context().timers.runAfter(kClosingDelay, [this] { gotoNext(); });
}

void DRMGSequenceStepTransfer::gotoNext()
{
    finish(ErrorState::Success);
}

void DRMGSequenceStepTransfer::gotoBackupErrorWithErrorCode(int code)
{
    m_errorCode = code;
    finish(ErrorState::BackupFailed);
}

void DRMGSequenceStepTransfer::gotoRestoreErrorWithErrorCode(int code)
{
    m_errorCode = code;
    finish(ErrorState::RestoreFailed);
}

void DRMGSequenceStepTransfer::finish(ErrorState errorState)
{
    setStateMask(kStateAllEnabled);
    auto* const complete = qobject_cast<DRMGSequenceStepComplete*>(migration().stepForKey(DRMGStepKeys::kComplete));
    Q_ASSERT(complete != nullptr);
    complete->setErrorState(errorState);
    Q_EMIT willEnd();
    sequence()->next();
}

void DRMGSequenceStepTransfer::resetRun()
{
    ++m_runNumber;
    if (const auto entry = phoneEntry()) {
        m_formerEntry = entry;
    }
    m_progressFraction = 0.0;
    m_secondsRemaining = 0.0;
    m_progressHtml.clear();
    m_errorCode = 0;
    m_errorDetails.clear();
    m_skippedPackets.clear();
    for (const QString& key : {DRMGSequence::kAndroidBackupEntry, DRMGSequence::kAndroidBackupPackets,
                               DRMGSequence::kBackupName, DRMGSequence::kBackupInfo}) {
        sequence()->parameters().remove(
            key); // a run that makes no phone backup must not point to that of an earlier one
    }
    setProgressPhase(Phase::NotStarted);
}

void DRMGSequenceStepTransfer::setProgressPhase(Phase phase)
{
    if (m_progressPhase == phase) {
        return;
    }
    m_progressPhase = phase;
    Q_EMIT progressPhaseChanged();
}

void DRMGSequenceStepTransfer::updateProgress(double deltaSeconds)
{
    const auto entry = phoneEntry();
    const auto progress = entry ? entry->progressWithDelta(deltaSeconds) : DRMigrateBackupEntry::Progress();
    m_progressFraction = progress.fraction;
    m_secondsRemaining = progress.secondsRemaining;
    m_progressHtml = text(u"IDD_STEPWIZ_TRANSFER_IDC_TIME_REMAINING"_s).replace(u"%s"_s, timeText(m_secondsRemaining));
    Q_EMIT progressChanged();
}

void DRMGSequenceStepTransfer::observeDeviceEvents()
{
    using Self = DRMGSequenceStepTransfer;
    struct ObservedEvent {
        const QString& name;
        void (Self::*handler)(const DRNotification&);
    };
    const std::array<ObservedEvent, 15> events{{
        {DRDCNotifications::kActiveDeviceWillChange, &Self::noteDeviceEvent},
        {DRDCNotifications::kActiveDeviceDidFinishEnumeration, &Self::activeDeviceDidFinishEnumeration},
        {DRDCNotifications::kTaskDidUpdate, &Self::deviceTaskDidUpdateTask},
        {DRDCNotifications::kWillBeginBackup, &Self::noteDeviceEvent},
        {DRDCNotifications::kDidFinishBackup, &Self::noteDeviceEvent},
        {DRDCNotifications::kWillBeginBackupDataType, &Self::noteDeviceEvent},
        {DRDCNotifications::kDidFinishBackupDataType, &Self::noteDeviceEvent},
        {DRDCNotifications::kWillBeginBackupPacket, &Self::noteDeviceEvent},
        {DRDCNotifications::kDidFinishBackupPacket, &Self::deviceTaskDidFinishBackupPacket},
        {DRDCNotifications::kWillBeginRestore, &Self::noteDeviceEvent},
        {DRDCNotifications::kDidFinishRestore, &Self::noteDeviceEvent},
        {DRDCNotifications::kWillBeginRestoreDataType, &Self::noteDeviceEvent},
        {DRDCNotifications::kDidFinishRestoreDataType, &Self::noteDeviceEvent},
        {DRDCNotifications::kWillBeginRestorePacket, &Self::noteDeviceEvent},
        {DRDCNotifications::kDidFinishRestorePacket, &Self::deviceTaskDidFinishRestorePacket},
    }};
    m_registrations.clear();
    for (const ObservedEvent& event : events) {
        m_registrations.push_back(context().services.notificationCenter.observe(
            event.name,
            [this, handler = event.handler](const DRNotification& notification) { (this->*handler)(notification); }));
    }
}

/// The run did not begin for want of a phone. This may be another one, so it takes the same road again.
void DRMGSequenceStepTransfer::activeDeviceDidFinishEnumeration(const DRNotification& notification)
{
    noteDeviceEvent(notification);
    if (m_progressPhase == Phase::NotStarted) {
        routeTowardsTransfer();
    }
}

void DRMGSequenceStepTransfer::noteDeviceEvent(const DRNotification& notification)
{
    qCDebug(lcMigrate, "%ls", qUtf16Printable(notification.name));
}

void DRMGSequenceStepTransfer::deviceTaskDidUpdateTask(const DRNotification&)
{
    // Comes too often for the log, and the timer asks for the progress itself.
}

void DRMGSequenceStepTransfer::deviceTaskDidFinishBackupPacket(const DRNotification& notification)
{
    markPacket(notification, DRMigrateDataType::kDRMigrateDataTypeFlagBackedUp);
}

void DRMGSequenceStepTransfer::deviceTaskDidFinishRestorePacket(const DRNotification& notification)
{
    markPacket(notification, DRMigrateDataType::kDRMigrateDataTypeFlagRestored);
}

void DRMGSequenceStepTransfer::markPacket(const DRNotification& notification, qint64 flag)
{
    const QString packetID = notification.userInfo.value(DRDCNotifications::kBackupPacketKey).toString();
    const auto entry = phoneEntry();
    const auto dataType = entry ? entry->dataTypeForKey(packetID) : nullptr;
    if (dataType) {
        dataType->setFlags(dataType->flags() | flag);
    }
}

/// Of several problems of one packet the first is the cause of the others.
void DRMGSequenceStepTransfer::addSkipped(const std::vector<DRDCPacketProblem>& problems)
{
    for (const DRDCPacketProblem& problem : problems) {
        if (std::ranges::find(m_skippedPackets, problem.packetID, &DRDCPacketProblem::packetID) ==
            m_skippedPackets.end()) {
            m_skippedPackets.push_back(problem);
        }
    }
}

void DRMGSequenceStepTransfer::addErrorDetails(const std::vector<DRDCPacketProblem>& problems)
{
    QStringList reasons; // in the order in which they came
    QHash<QString, QStringList> packetsByReason;
    for (const DRDCPacketProblem& problem : problems) {
        reasons.append(problem.reason);
        packetsByReason[problem.reason].append(problem.packetID);
    }
    reasons.removeDuplicates();
    for (const QString& reason : reasons) {
        m_errorDetails.append(packetsByReason.value(reason).join(u", "_s) + u": "_s + reason);
    }
}

std::shared_ptr<DRMigrateAndroidBackupEntry> DRMGSequenceStepTransfer::phoneEntry() const
{
    return sequence()->parameters().value<std::shared_ptr<DRMigrateAndroidBackupEntry>>(
        DRMGSequence::kAndroidBackupEntry);
}
