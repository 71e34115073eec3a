#include "wizard/steps/DRMGSummaryRow.h"

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/core/DRLog.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "wizard/DRMGKindTexts.h"
#include "wizard/steps/DRMGSelectionBox.h"

#include <QHash>
#include <QLocale>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Count = DRTransferSummary::Count;
using Kind = DRTransferSummary::Kind;

using KindsOfRow = std::vector<const Kind*>;

constexpr qsizetype kMostNames = 3; ///< in the line of one reason

QStringList rowKeys()
{
    using namespace DRMigrateKeys;
    return {kContacts, kTextMessages, kBookmarks, kCalendar, kNotes, kImages, kVideos, kMusic, kVoiceMemos};
}

/// The row's key for an entry of the summary: that of its kind, also when only the packet is known.
QString rowKeyOf(const QString& key, const Kind& kind)
{
    if (!kind.sourceKey.isEmpty()) {
        return kind.sourceKey;
    }
    const QString ofPacket = DRBRBackupRestoreController::dataTypeOfPacket(key);
    return ofPacket.isEmpty() ? key : ofPacket;
}

QString withFigures(QString text, const Count& count)
{
    const QLocale locale;
    return text.replace(u"%1"_s, locale.toString(count.written)).replace(u"%2"_s, locale.toString(count.found));
}

/// The text of a further count; its bare name when there is none for it.
QString countText(const DRLocalizedStrings& strings, const QString& name, const Count& count)
{
    const QString text = strings.text(u"wizard_count_"_s + name);
    return withFigures(text.isEmpty() ? name + u": %1 / %2"_s : text, count);
}

QString outcomeText(const DRLocalizedStrings& strings, const Kind& kind)
{
    return kind.unmoved ? DRMGKindTexts::unmoved(strings, *kind.unmoved)
                        : withFigures(strings.text(u"wizard_summary_moved"_s), kind.records);
}

/// What was lost for one reason.
struct LossGroup {
    QString why;
    QStringList names;

    [[nodiscard]] bool isShortened() const { return names.size() > kMostNames; }
};

/// Grouped in the order in which they come, each loss once. Kinds in two of the phone's apps lose the same in both.
std::vector<LossGroup> lossGroupsOf(const KindsOfRow& kinds)
{
    std::vector<LossGroup> groups;
    QHash<QString, std::size_t> groupOfReason;
    QSet<std::pair<QString, QString>> seen;
    for (const Kind* kind : kinds) {
        for (const DRMigrateSkippedItem& item : kind->skipped) {
            const QString why = withoutControlCharacters(item.why);
            const QString what = withoutControlCharacters(item.what);
            if (seen.contains({what, why})) {
                continue;
            }
            seen.insert({what, why});
            const auto group = groupOfReason.constFind(why);
            if (group == groupOfReason.cend()) {
                groupOfReason.insert(why, groups.size());
                groups.push_back({.why = why, .names = {what}});
            } else {
                groups[*group].names.append(what);
            }
        }
    }
    return groups;
}

QString shortened(const DRLocalizedStrings& strings, const LossGroup& group)
{
    // All at once: a name may hold a placeholder.
    return strings.text(u"wizard_summary_and_more"_s)
        .arg(group.names.first(kMostNames).join(u", "_s), QLocale().toString(group.names.size() - kMostNames),
             group.why);
}

void addLosses(DRMGSummaryRow& row, const std::vector<LossGroup>& groups, const DRLocalizedStrings& strings)
{
    QStringList all;
    for (const LossGroup& group : groups) {
        const qsizetype before = all.size();
        for (const QString& name : group.names) {
            all.append(name + u": "_s + group.why);
        }
        row.losses += group.isShortened() ? QStringList{shortened(strings, group)} : all.mid(before);
    }
    if (std::ranges::any_of(groups, &LossGroup::isShortened)) {
        row.allLosses = all;
    }
}

/// Photos and videos come as one; which of both were to be moved, the plan knows.
QString nameOf(const DRLocalizedStrings& strings, const QString& rowKey, const DRTransferPlan& plan)
{
    QStringList keys = plan.keys();
    keys.removeIf([&rowKey](const QString& key) { return DRKindContent::dataTypeKeyOf(key) != rowKey; });
    return DRMGKindTexts::names(strings, keys.isEmpty() ? QStringList{rowKey} : keys);
}

DRMGSummaryRow rowOf(const DRLocalizedStrings& strings, const KindsOfRow& kinds)
{
    const Kind& best = **std::ranges::max_element(kinds, {}, [](const Kind* kind) { return kind->records.written; });
    DRMGSummaryRow row{.imageName = {}, .name = {}, .outcome = outcomeText(strings, best)};
    for (const auto& [name, count] : best.furtherCounts) {
        row.counts.append(countText(strings, name, count));
    }
    addLosses(row, lossGroupsOf(kinds), strings);
    for (const Kind* kind : kinds) {
        for (const QString& warning : kind->warnings) {
            row.notes.append(withoutControlCharacters(warning));
        }
        row.isLoss = row.isLoss || kind->lossCount() != 0;
    }
    if (row.losses.isEmpty() && std::ranges::any_of(kinds, &Kind::isUnwritten)) {
        row.losses.append(strings.text(u"wizard_summary_unwritten"_s));
    }
    row.notes.removeDuplicates();
    return row;
}

} // namespace

std::vector<DRMGSummaryRow>
DRMGSummaryRow::rowsOf(const DRTransferSummary& summary, const DRTransferPlan& plan, const DRLocalizedStrings& strings)
{
    std::map<QString, KindsOfRow> kindsByRow;
    for (const auto& [key, kind] : summary.kinds) {
        kindsByRow[rowKeyOf(key, kind)].push_back(&kind);
    }
    QStringList keys = rowKeys();
    for (const auto& [key, kinds] : kindsByRow) {
        if (!keys.contains(key)) {
            keys.append(key);
        }
    }
    std::vector<DRMGSummaryRow> rows;
    for (const QString& key : keys) {
        if (const auto found = kindsByRow.find(key); found != kindsByRow.end()) {
            rows.push_back(rowOf(strings, found->second));
            rows.back().imageName = DRMGSelection::imageName(key);
            rows.back().name = nameOf(strings, key, plan);
        }
    }
    return rows;
}
