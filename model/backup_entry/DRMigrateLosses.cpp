#include "model/backup_entry/DRMigrateLosses.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMostNamed = 200;

} // namespace

DRMigrateLosses::DRMigrateLosses(QString nameOfMany, quint32 fileKind)
    : m_nameOfMany(std::move(nameOfMany)), m_fileKind(fileKind)
{
}

void DRMigrateLosses::add(DRMigrateSkippedItem item)
{
    item.fileKind = m_fileKind;
    if (m_named.size() < kMostNamed) {
        m_named.push_back(std::move(item));
        return;
    }
    ++m_furtherCount;
}

void DRMigrateLosses::addAll(const DRMigrateLosses& others)
{
    for (const DRMigrateSkippedItem& item : others.m_named) {
        add(item);
    }
    m_furtherCount += others.m_furtherCount;
}

void DRMigrateLosses::tell(DRMigrateReport& report) const
{
    report.skipped.insert(report.skipped.end(), m_named.begin(), m_named.end());
    if (m_furtherCount > 0) {
        report.skipped.push_back({.what = u"Further %1: %2"_s.arg(m_nameOfMany).arg(m_furtherCount),
                                  .why = u"for reasons like these"_s,
                                  .fileKind = m_fileKind});
    }
}
