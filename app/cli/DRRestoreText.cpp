#include "app/cli/DRRestoreText.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRTextTable.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"

using namespace Qt::StringLiterals;

namespace {

using Ending = DRPhoneRestoreResult::Ending;
using Obstacle = DRPhoneRestorePlan::Obstacle;

const QString kMediaStay =
    u"Photos, videos, music and voice memos that were copied to the phone stay on it; delete them on the phone."_s;

QString shownPath(const QString& path)
{
    return withoutControlCharacters(path);
}

/// "notes (com.vornmobile.notes): why; ..."
QString joined(const std::vector<DRDCPacketProblem>& problems)
{
    QStringList texts;
    for (const DRDCPacketProblem& problem : problems) {
        texts << DRKinds::titleOfPacketOrKey(problem.packetID) + u": "_s + problem.reason;
    }
    return withoutControlCharacters(texts.join(u"; "_s));
}

QString lines(const QString& heading, const std::vector<DRDCPacketProblem>& problems)
{
    QString text;
    for (const DRDCPacketProblem& problem : problems) {
        text += u"%1 (%2): %3\n"_s.arg(heading, DRKinds::titleOfPacketOrKey(problem.packetID),
                                       withoutControlCharacters(problem.reason));
    }
    return text;
}

QString titles(const QStringList& packetIDs)
{
    QStringList texts;
    for (const QString& packetID : packetIDs) {
        texts << DRKinds::titleOfPacketOrKey(packetID);
    }
    return texts.join(u", "_s);
}

DRCommandOutcome unusable(const DRPhoneBackup& backup)
{
    const bool isNone = backup.state == DRPhoneBackup::State::NoDescription;
    return {isNone ? DRExitCode::NoBackup : DRExitCode::FailedPhoneUnchanged,
            u"%1 cannot be put back: %2."_s.arg(shownPath(backup.path), backup.problem()),
            u"choose another phone backup: phone-migrate phone-backups"_s};
}

DRCommandOutcome failure(const DRPhoneRestoreResult& result)
{
    const QString back = result.putBack.isEmpty() ? u"none"_s : titles(result.putBack);
    return {DRExitCode::FailedPhoneChanged,
            u"Not all apps could be put back. Not put back: %1. Put back: %2."_s.arg(joined(result.failures), back),
            u"if a disk is full or went away, mend that and type the same again; or, for the apps as they were before "
            "this: "
            "phone-migrate restore '%1'"_s.arg(shownPath(result.keptPath))};
}

/// What became of each app, by packet ID. Nothing was tried yet when `result` is null.
QJsonObject packetsOf(const DRPhoneRestorePlan& plan, const DRPhoneRestoreResult* result)
{
    QJsonObject packets;
    const auto enter = [&packets](const QString& packetID, const QString& state, const QString& why) {
        packets.insert(packetID, QJsonObject{{u"state"_s, state}, {u"why"_s, DRJsonOutput::text(why)}});
    };
    for (const QString& packetID : plan.packetIDs()) {
        enter(packetID, result == nullptr ? u"planned"_s : u"unchanged"_s, {});
    }
    for (const DRDCPacketProblem& problem : plan.skipped) {
        enter(problem.packetID, u"skipped"_s, problem.reason);
    }
    for (const DRDCPacketProblem& problem : result == nullptr ? plan.damaged : result->failures) {
        enter(problem.packetID, u"failed"_s, problem.reason);
    }
    for (const QString& packetID : result == nullptr ? QStringList() : result->putBack) {
        enter(packetID, u"putBack"_s, {});
    }
    return packets;
}

} // namespace

DRCommandOutcome DRRestoreText::refusal(const DRPhoneRestorePlan& plan)
{
    switch (plan.obstacle()) {
    case Obstacle::None:
        return {};
    case Obstacle::UnusableBackup:
        return unusable(plan.backup);
    case Obstacle::OtherPhone:
        return {DRExitCode::FailedPhoneUnchanged,
                u"This phone backup is of another phone (%1); nothing was written to this one."_s.arg(
                    withoutControlCharacters(plan.backup.phoneName)),
                u"name that phone: --phone DIR, or choose a backup of this one: phone-migrate phone-backups"_s};
    case Obstacle::NothingToPutBack:
        return {DRExitCode::FailedPhoneUnchanged,
                u"Nothing of what was chosen can be put back%1."_s.arg(
                    plan.skipped.empty() ? QString() : u": "_s + joined(plan.skipped)),
                u"see what the phone backups hold: phone-migrate phone-backups"_s};
    case Obstacle::DamagedPackets:
        return {DRExitCode::FailedPhoneUnchanged,
                u"The phone backup is damaged, so nothing was written to the phone: %1."_s.arg(joined(plan.damaged)),
                u"choose another phone backup: phone-migrate phone-backups, or leave these apps out with --except"_s};
    }
    return {};
}

QString DRRestoreText::text(const DRPhoneRestorePlan& plan)
{
    DRTextTable table({u"App"_s, u"Size"_s});
    for (const DRPhoneBackup::App& app : plan.apps) {
        table.add({DRKinds::titleOfPacketOrKey(app.packetID), sizeText(app.sizeBytes)});
    }
    return u"%1%2The phone's apps above become what they were on %3. Whatever they got since leaves the phone; a new "
           "phone backup keeps it.\n%4\n"_s.arg(table.text(), lines(u"Skipped"_s, plan.skipped),
                                                plan.backup.date.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"),
                                                kMediaStay);
}

QJsonObject DRRestoreText::json(const DRPhoneRestorePlan& plan)
{
    return {{u"packets"_s, packetsOf(plan, nullptr)},
            {u"bytes"_s, DRJsonOutput::bytes(plan.sizeBytes())},
            {u"restoredFrom"_s, plan.backup.path}};
}

DRCommandOutcome DRRestoreText::outcome(const DRPhoneRestorePlan& plan, const DRPhoneRestoreResult& result)
{
    switch (result.ending) {
    case Ending::PutBack:
        return {
            .code = plan.skipped.empty() ? DRExitCode::Done : DRExitCode::DoneWithSkips, .message = {}, .nextStep = {}};
    case Ending::NotKept:
        return {
            DRExitCode::FailedPhoneUnchanged,
            u"The phone's apps as they are now could not be kept, so nothing was written to the phone: %1."_s.arg(
                joined(result.failures)),
            u"if a disk is full or went away, mend that and type the same again; else leave these apps out with --except"_s};
    case Ending::NotEnoughSpace:
        return {DRExitCode::NotEnoughSpace,
                u"There is not enough space on the phone: %1 more are needed. Nothing was written to it."_s.arg(
                    sizeText(result.missingBytes)),
                u"delete files on the phone, then type the same again"_s};
    case Ending::PhoneGone:
        return {DRExitCode::NoPhone, u"The phone is no longer connected; nothing was written to it."_s,
                u"connect it, then type the same again"_s};
    case Ending::Failed:
        break;
    }
    return failure(result);
}

QString DRRestoreText::text(const DRPhoneRestorePlan& plan, const DRPhoneRestoreResult& result, const QString& keptName)
{
    DRTextTable table({u"App"_s, u"Outcome"_s});
    for (const QString& packetID : plan.packetIDs()) {
        const bool isBack = result.putBack.contains(packetID);
        table.add({DRKinds::titleOfPacketOrKey(packetID), isBack ? u"put back"_s : u"not put back"_s});
    }
    return table.text() + lines(u"Not put back"_s, result.failures) + lines(u"Skipped"_s, plan.skipped) + kMediaStay +
           u"\nThe phone's apps as they were before this: \"%1\"\n  in %2\n"_s.arg(withoutControlCharacters(keptName),
                                                                                   shownPath(result.keptPath));
}

QJsonObject DRRestoreText::json(const DRPhoneRestorePlan& plan,
                                const DRPhoneRestoreResult& result,
                                const QString& keptName,
                                const DRCommandOutcome& outcome)
{
    QJsonObject object = jsonOfRefusal(outcome);
    object.insert(u"packets"_s, packetsOf(plan, &result));
    object.insert(u"restoredFrom"_s, plan.backup.path);
    if (!result.keptPath.isEmpty()) {
        object.insert(u"phoneBackup"_s, QJsonObject{{u"name"_s, keptName}, {u"path"_s, result.keptPath}});
    }
    if (result.ending == Ending::PutBack || result.ending == Ending::Failed) {
        object.insert(u"note"_s, kMediaStay);
    }
    return object;
}

QJsonObject DRRestoreText::jsonOfRefusal(const DRCommandOutcome& outcome)
{
    const bool isDone = outcome.code == DRExitCode::Done || outcome.code == DRExitCode::DoneWithSkips;
    return {
        {u"type"_s, isDone ? u"summary"_s : u"error"_s},
        {u"code"_s, static_cast<int>(outcome.code)},
        {u"packets"_s, QJsonObject()},
        {u"restoredFrom"_s, QJsonValue(QJsonValue::Null)},
        {u"phoneBackup"_s, QJsonValue(QJsonValue::Null)},
        {u"message"_s, DRJsonOutput::text(outcome.message)},
        {u"nextStep"_s, DRJsonOutput::text(outcome.nextStep)},
    };
}
