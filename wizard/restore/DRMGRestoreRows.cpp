#include "wizard/restore/DRMGRestoreRows.h"

#include "platform/core/DRLocalizedStrings.h"
#include "platform/core/DRLog.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "wizard/DRMGKindTexts.h"
#include "wizard/steps/DRMGSelectionBox.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString kindOf(const QString& packetID)
{
    return DRBRBackupRestoreController::dataTypeOfPacket(packetID);
}

QStringList reasonsIn(const std::vector<DRDCPacketProblem>& problems, const QStringList& packetIDs)
{
    QStringList reasons;
    for (const DRDCPacketProblem& problem : problems) {
        if (packetIDs.contains(problem.packetID)) {
            reasons.append(withoutControlCharacters(problem.reason));
        }
    }
    return reasons;
}

QString outcomeOf(const QStringList& packetIDs, qsizetype backCount, bool isWrong)
{
    if (backCount == packetIDs.size()) {
        return u"wizard_restore_row_put_back"_s;
    }
    if (backCount > 0) {
        return u"wizard_restore_row_in_part"_s;
    }
    return isWrong ? u"wizard_restore_row_not_put_back"_s : u"wizard_restore_row_unchanged"_s;
}

} // namespace

QString DRMGRestoreRows::nameOf(const QString& packetID, const DRLocalizedStrings& strings)
{
    const QString kind = kindOf(packetID);
    return kind.isEmpty() ? withoutControlCharacters(packetID) : DRMGKindTexts::name(strings, kind);
}

std::vector<DRMGSummaryRow> DRMGRestoreRows::of(const DRPhoneRestorePlan& plan,
                                                const DRPhoneRestoreResult& result,
                                                const DRLocalizedStrings& strings)
{
    std::vector<std::pair<QString, QStringList>> kinds; // name and packets
    for (const DRPhoneBackup::App& app : plan.backup.apps) {
        const QString name = nameOf(app.packetID, strings);
        const auto known = std::ranges::find(kinds, name, &std::pair<QString, QStringList>::first);
        (known == kinds.end() ? kinds.emplace_back(name, QStringList()) : *known).second.append(app.packetID);
    }
    std::vector<DRMGSummaryRow> rows;
    for (const auto& [name, packetIDs] : kinds) {
        const auto backCount = std::ranges::count_if(
            packetIDs, [&result](const QString& packetID) { return result.putBack.contains(packetID); });
        QStringList details = reasonsIn(plan.damaged, packetIDs) + reasonsIn(result.failures, packetIDs);
        const bool isWrong = !details.isEmpty();
        details += reasonsIn(plan.skipped, packetIDs);
        details.removeDuplicates();
        const QString outcome = strings.text(outcomeOf(packetIDs, backCount, isWrong));
        rows.push_back({.imageName = DRMGSelection::imageName(kindOf(packetIDs.front())),
                        .name = name,
                        .outcome = details.isEmpty() ? outcome : outcome + u": "_s + details.join(u"; "_s),
                        .isLoss = isWrong});
    }
    return rows;
}
