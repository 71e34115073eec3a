#include "wizard/DRMGSequence.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRMigrateBackupDiscovery.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/device/DRBRBackupInfo.h"
#include "platform/device/DRDCDeviceController.h"
#include "platform/device/DRDCFilesystem.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepComplete.h"
#include "wizard/steps/DRMGSequenceStepConnectPhone.h"
#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"
#include "wizard/steps/DRMGSequenceStepPhoneIncompatible.h"
#include "wizard/steps/DRMGSequenceStepSelectBackup.h"
#include "wizard/steps/DRMGSequenceStepSelectData.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"
#include "wizard/steps/DRMGSequenceStepWelcome.h"

#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;

const QString DRMGSequence::kIPhoneBackupEntry = u"kDRMigrateSequenceIPhoneBackupEntry"_s;
const QString DRMGSequence::kSelectedTypes = u"kDRMigrateSequenceSelectedTypes"_s;
const QString DRMGSequence::kAndroidBackupEntry = u"kDRMigrateSequenceAndroidBackupEntry"_s;
const QString DRMGSequence::kAndroidBackupPackets = u"kDRMigrateSequenceAndroidBackupPackets"_s;
const QString DRMGSequence::kBackupName = u"kDRMigrateSequenceBackupName"_s;
const QString DRMGSequence::kBackupInfo = u"kDRMigrateSequenceBackupInfo"_s;

namespace {

using Reason = DRMGSequenceStepNewBackupNeeded::Reason;

template <typename Step> std::unique_ptr<DRSequenceStep> make(const DRMGContext& context)
{
    return std::make_unique<Step>(context);
}

struct StepEntry {
    std::unique_ptr<DRSequenceStep> (*make)(const DRMGContext&);
    int group;
};

/// The steps in their order within the groups, which decides what the sequence's own Next shows.
constexpr std::array kSteps{
    StepEntry{&make<DRMGSequenceStepWelcome>, DRMGStepGroups::kWelcome},
    StepEntry{&make<DRMGSequenceStepSelectBackup>, DRMGStepGroups::kSelectData},
    StepEntry{&make<DRMGSequenceStepSelectData>, DRMGStepGroups::kSelectData},
    StepEntry{&make<DRMGSequenceStepTransfer>, DRMGStepGroups::kTransfer},
    StepEntry{&make<DRMGSequenceStepComplete>, DRMGStepGroups::kFinish},
    StepEntry{&make<DRMGSequenceStepNewBackupNeeded>, DRMGStepGroups::kSelectData},
    StepEntry{&make<DRMGSequenceStepConnectPhone>, DRMGStepGroups::kSelectData},
    StepEntry{&make<DRMGSequenceStepMemoryWarning>, DRMGStepGroups::kSelectData},
    StepEntry{&make<DRMGSequenceStepPhoneIncompatible>, DRMGStepGroups::kSelectData},
};

constexpr std::array kGroupTitles{u"IDS_STEPWIZ_WELCOME", u"IDS_STEPWIZ_SELECTDATA", u"IDS_STEPWIZ_TRANSFER",
                                  u"IDS_STEPWIZ_FINISH"};

bool isReady(const DRDCDevicePointer& device)
{
    return device && device->hasStateFlag(DRDCDevice::kStateFlagReady);
}

/// Known only of a phone that is ready.
bool isIncompatible(const DRDCDevicePointer& device)
{
    return isReady(device) && device->androidBaseVersion() < DRMGSequence::kOldestAndroidBaseVersion;
}

} // namespace

std::unique_ptr<DRMGSequence> DRMGSequence::sequence(const DRMGContext& context)
{
    return std::unique_ptr<DRMGSequence>(new DRMGSequence(context)); // the constructor is private
}

DRMGSequence::DRMGSequence(const DRMGContext& context) : DRSequence(context.analytics), m_context(context)
{
    m_context.resources.registerBundle(u":/migrate/images"_s); // of programs that show the pages
    for (int group = DRMGStepGroups::kWelcome; group <= DRMGStepGroups::kFinish; ++group) {
        addStepGroupWithIdentifier(group, localizedStringForSequenceStepType(group));
    }
    for (const StepEntry& entry : kSteps) {
        auto step = entry.make(m_context);
        m_stepLookup.insert(step->key(), {step.get(), entry.group});
        pushStep(std::move(step), entry.group);
    }
    m_gate = std::make_unique<DRMGTransferGate>(m_context);
    connect(transferStep(), &DRMGSequenceStepTransfer::restoreWillBegin, m_gate.get(), &DRMGTransferGate::remember);
    connect(transferStep(), &DRMGSequenceStepTransfer::willEnd, this, [this] { m_gate->settle(transferResult()); });
}

DRSequenceStep* DRMGSequence::stepForKey(const QString& key) const
{
    return m_stepLookup.value(key).step;
}

bool DRMGSequence::gotoStepForKey(const QString& key)
{
    const RegisteredStep found = m_stepLookup.value(key);
    return gotoStep(found.step, found.group);
}

QString DRMGSequence::localizedStringForSequenceStepType(qint32 identifier) const
{
    if (identifier < DRMGStepGroups::kWelcome || identifier > DRMGStepGroups::kFinish) {
        return {};
    }
    return m_context.strings.text(QString::fromUtf16(kGroupTitles.at(static_cast<std::size_t>(identifier))));
}

bool DRMGSequence::hasStepGroupFailed(int identifier) const
{
    return identifier == DRMGStepGroups::kTransfer && transferResult().errorState != 0;
}

std::vector<DRMigrateIPhoneBackupEntryPointer> DRMGSequence::latestBackupList() const
{
    return DRMigrateUtils::latestBackupEntriesFromList(
        DRMigrateUtils::iPhoneBackupEntriesAtPath(m_context.backupsFolder, m_context.services));
}

bool DRMGSequence::gotoNextIPhoneStepWithDevice(const DRDCDevicePointer& device,
                                                const std::vector<DRMigrateIPhoneBackupEntryPointer>& backupList)
{
    if (isIncompatible(device)) {
        return gotoStepForKey(DRMGStepKeys::kPhoneIncompatible);
    }
    if (backupList.empty()) {
        return gotoNewBackupNeeded(Reason::NoBackup);
    }
    if (backupList.size() > 1) {
        return gotoStepForKey(DRMGStepKeys::kSelectBackup);
    }
    const DRMigrateIPhoneBackupEntryPointer& entry = backupList.front();
    if (!entry->isUsable()) {
        return gotoNewBackupNeeded(entry->isEncrypted() ? Reason::Encrypted : Reason::SystemTooOld);
    }
    parameters().setValue(kIPhoneBackupEntry, entry);
    return gotoStepForKey(DRMGStepKeys::kSelectData);
}

bool DRMGSequence::gotoPreviousIPhoneStep()
{
    gotoStepForKey(latestBackupList().size() < 2 ? DRMGStepKeys::kWelcome : DRMGStepKeys::kSelectBackup);
    return true;
}

bool DRMGSequence::gotoTransferWithDevice(const DRDCDevicePointer& device, quint64 bytesNeeded)
{
    if (!isReady(device)) {
        gotoStepForKey(DRMGStepKeys::kConnectPhone);
    } else if (isIncompatible(device)) {
        gotoStepForKey(DRMGStepKeys::kPhoneIncompatible);
    } else if (device->preferredFilesystem().memoryFreeBytes() >= bytesNeeded) {
        gotoTransferThroughGate(device);
    } else {
        gotoStepForKey(DRMGStepKeys::kMemoryWarning);
    }
    return true;
}

void DRMGSequence::gotoTransferThroughGate(const DRDCDevicePointer& device)
{
    const auto backup = parameters().value<DRMigrateIPhoneBackupEntryPointer>(kIPhoneBackupEntry);
    if (m_gate->isOpenFor(backup, device, parameters().value<QStringList>(kSelectedTypes))) {
        gotoStepForKey(DRMGStepKeys::kTransfer);
        return;
    }
    Q_EMIT repeatQuestionAsked(); // also when there is none any more
    if (m_gate->refusal() != DRMGTransferGate::Refusal::None) {
        refuseTransfer();
    }
}

void DRMGSequence::refuseTransfer()
{
    auto* const step = qobject_cast<DRMGSequenceStepSelectData*>(stepForKey(DRMGStepKeys::kSelectData));
    if (currentStep() != step) {
        gotoStepForKey(DRMGStepKeys::kSelectData);
    }
    step->refuse(m_gate->refusal());
}

void DRMGSequence::answerRepeatQuestion(DRMGRepeatQuestion::Answer answer)
{
    if (!m_gate->question()) {
        return;
    }
    m_gate->answer(answer);
    if (answer != DRMGRepeatQuestion::Answer::Stop) {
        const auto backup = parameters().value<DRMigrateIPhoneBackupEntryPointer>(kIPhoneBackupEntry);
        const auto keys = parameters().value<QStringList>(kSelectedTypes);
        gotoTransferWithDevice(m_context.services.deviceController.activeDevice(),
                               backup ? backup->bytesNeededForSelectedTypes(keys) : 0);
        return;
    }
    if (currentStep() != stepForKey(DRMGStepKeys::kSelectData)) {
        gotoStepForKey(DRMGStepKeys::kSelectData);
    }
}

DRTransferResult DRMGSequence::transferResult() const
{
    const DRMGSequenceStepTransfer& step = *transferStep();
    const auto* const complete = qobject_cast<DRMGSequenceStepComplete*>(stepForKey(DRMGStepKeys::kComplete));
    return {.errorState = static_cast<int>(complete->errorState()),
            .errorCode = step.errorCode(),
            .errorDetails = step.errorDetails(),
            .skippedPackets = step.skippedPackets(),
            .phoneEntry = step.phoneEntry(),
            .phoneBackupName = parameters().value<QString>(kBackupName),
            .phoneBackupPath = phoneBackupPath()};
}

QString DRMGSequence::phoneBackupPath() const
{
    QString folder = transferStep()->phoneBackupFolder();
    if (!folder.isEmpty()) {
        return folder;
    }
    const auto info = parameters().value<std::shared_ptr<DRBRBackupInfo>>(kBackupInfo);
    const QString path = info ? info->targetPath() : QString();
    return QFileInfo(path).isDir() ? path : QString();
}

DRTransferSummary DRMGSequence::transferSummary() const
{
    const auto backup = parameters().value<DRMigrateIPhoneBackupEntryPointer>(kIPhoneBackupEntry);
    return backup ? DRTransferSummary::make(m_gate->plan(), *backup, transferResult()) : DRTransferSummary();
}

DRMGSequenceStepTransfer* DRMGSequence::transferStep() const
{
    return qobject_cast<DRMGSequenceStepTransfer*>(stepForKey(DRMGStepKeys::kTransfer));
}

void DRMGSequence::updateUI()
{
    DRSequence::updateUI();
    const int stateMask = currentStep() == nullptr ? 0 : currentStep()->stateMask();
    const bool isClosingPage = (stateMask & DRSequenceStep::kStateClosing) != 0;
    localizations().setAliasString(isClosingPage ? u"dr_sequence_button_done"_s : u"IDD_STEPWIZ_SHEET_IDC_NEXT"_s,
                                   u"dr_sequence_button_next"_s);
    setNextKeyEquivalent(isClosingPage ? u"\r"_s : QString());
}

void DRMGSequence::cancelToAnalytics()
{
    DRSequence::cancelToAnalytics();
    DRMGAnalyticsSendSequenceCancelledEvent(analytics());
}

void DRMGSequence::completeToAnalytics()
{
    DRSequence::completeToAnalytics();
    DRMGAnalyticsSendSequenceCompletedEvent(analytics());
}

QStringList DRMGSequence::analyticsPageViewComponentsForComponents(const QStringList& components) const
{
    return QStringList{u"migrate"_s} + components;
}

bool DRMGSequence::gotoNewBackupNeeded(Reason reason)
{
    auto* const step = qobject_cast<DRMGSequenceStepNewBackupNeeded*>(stepForKey(DRMGStepKeys::kNewBackupNeeded));
    if (step == nullptr) {
        return false;
    }
    step->setBackupNeededReason(reason);
    return gotoStepForKey(DRMGStepKeys::kNewBackupNeeded);
}
