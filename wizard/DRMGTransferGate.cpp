#include "wizard/DRMGTransferGate.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRClock.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/core/DRLog.h"
#include "wizard/DRMGKindTexts.h"
#include "wizard/DRTransferSummary.h"

#include <QDir>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Answer = DRMGRepeatQuestion::Answer;

QStringList without(QStringList keys, const QStringList& others)
{
    keys.removeIf([&others](const QString& key) { return others.contains(key); });
    return keys;
}

} // namespace

DRMGTransferGate::DRMGTransferGate(const DRMGContext& context) : m_context(context) {}

bool DRMGTransferGate::isOpenFor(const DRMigrateIPhoneBackupEntryPointer& backup,
                                 const DRDCDevicePointer& phone,
                                 const QStringList& keys)
{
    m_leftOut.clear();
    m_isRemembered = false;
    m_hasForgotten = false;
    if (m_context.ledgerPath.isEmpty() || !backup) {
        return true;
    }
    m_backup = backup;
    m_phone = phone;
    m_ledger = DRTransferLedger::ofFile(m_context.ledgerPath);
    makePlan(keys);
    m_refusal = makeRefusal(keys);
    if (m_refusal != Refusal::None) {
        m_question.reset();
        m_answer.reset();
        return false;
    }

    auto question = makeQuestion();
    const bool isAnswered = question == m_question && m_answer.has_value();
    const Answer answer = std::exchange(m_answer, std::nullopt).value_or(Answer::MoveAnyway);
    m_question = std::move(question);
    if (m_question && !isAnswered) {
        return false;
    }
    if (m_question && answer == Answer::LeaveOut) {
        m_leftOut = m_question->keys;
        makePlan(without(keys, m_leftOut));
    }
    m_question.reset();
    return true;
}

void DRMGTransferGate::answer(Answer answer)
{
    if (answer == Answer::Stop) {
        m_question.reset();
        return;
    }
    m_answer = answer;
}

void DRMGTransferGate::makePlan(const QStringList& keys)
{
    m_plan = DRTransferPlan::make({.keys = keys}, *m_backup, m_phone, m_context.services, *m_ledger);
}

bool DRMGTransferGate::hasNewerLayout(const DRMigrateIPhoneBackupEntry& backup)
{
    return !DRIPhoneBackupFiles::isReadable(DRIPhoneBackupFiles::layoutOfBackup(backup.backupPath()));
}

/// With nothing chosen there is nothing to refuse: the closing page says that.
DRMGTransferGate::Refusal DRMGTransferGate::makeRefusal(const QStringList& keys) const
{
    if (hasNewerLayout(*m_backup)) {
        return Refusal::NewerLayout;
    }
    return m_plan.kinds.empty() && !keys.isEmpty() ? Refusal::NothingMoves : Refusal::None;
}

std::optional<DRMGRepeatQuestion> DRMGTransferGate::makeQuestion() const
{
    const QStringList& inQuestion = m_plan.repeated.isEmpty() ? m_plan.otherBackups : m_plan.repeated;
    if (m_plan.kinds.empty() || (inQuestion.isEmpty() && m_plan.damagedLedger.isNull())) {
        return std::nullopt;
    }
    const auto text = [this](const QString& identifier) { return m_context.strings.text(identifier); };
    return DRMGRepeatQuestion{.keys = inQuestion,
                              .canLeaveOut = !inQuestion.isEmpty() && !without(m_plan.keys(), inQuestion).isEmpty(),
                              .title = text(u"wizard_repeat_title"_s),
                              .text = questionText(),
                              .moveAnywayButton = text(u"wizard_repeat_move_anyway"_s),
                              .leaveOutButton = text(u"wizard_repeat_leave_out"_s),
                              .stopButton = text(u"wizard_repeat_stop"_s)};
}

QString DRMGTransferGate::questionText() const
{
    const DRLocalizedStrings& strings = m_context.strings;
    if (!m_plan.damagedLedger.isNull()) {
        return strings.text(u"wizard_repeat_unknown"_s)
            .replace(u"%1"_s, QDir::toNativeSeparators(m_plan.damagedLedger));
    }
    return m_plan.repeated.isEmpty()
               ? strings.text(u"wizard_repeat_other_backup"_s)
                     .replace(u"%1"_s, DRMGKindTexts::names(strings, m_plan.otherBackups))
               : strings.text(u"wizard_repeat_text"_s).replace(u"%1"_s, DRMGKindTexts::names(strings, m_plan.repeated));
}

void DRMGTransferGate::remember()
{
    if (m_ledger && m_phone) {
        m_isRemembered = true;
        m_hasForgotten =
            !m_ledger->record(m_plan.appKeys(), *m_backup, m_phone->identifier(), m_context.services.clock.now());
    }
}

void DRMGTransferGate::settle(const DRTransferResult& result)
{
    if (!std::exchange(m_isRemembered, false)) {
        return;
    }
    const QStringList remembered = DRTransferSummary::keysToRemember(m_plan, result);
    const bool isSettled =
        m_ledger->settle(remembered, *m_backup, m_phone->identifier(), m_context.services.clock.now());
    m_hasForgotten = (m_hasForgotten || !isSettled) && !remembered.isEmpty();
    if (m_hasForgotten) {
        qCWarning(lcMigrate) << "the transfer could not be noted in" << m_context.ledgerPath;
    }
}
