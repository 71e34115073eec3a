#include "wizard/restore/DRMGRestoreStep.h"

#include "platform/core/DRLocalizedStrings.h"
#include "wizard/restore/DRMGRestoreRows.h"
#include "wizard/restore/DRMGRestoreSequence.h"

using namespace Qt::StringLiterals;

DRMGRestoreSequence& DRMGRestoreStep::restore() const
{
    auto* const restore = qobject_cast<DRMGRestoreSequence*>(sequence());
    Q_ASSERT(restore != nullptr);
    return *restore;
}

QString DRMGRestoreStep::filled(const QString& identifier, const QString& first, const QString& second) const
{
    const QString format = text(identifier);
    // In one go: what is filled in may hold a "%2" itself.
    return format.contains(u"%2"_s) ? format.arg(first, second) : QString(format).replace(u"%1"_s, first);
}

QString DRMGRestoreStep::kindNames(const QStringList& packetIDs) const
{
    QStringList names;
    for (const QString& packetID : packetIDs) {
        names.append(DRMGRestoreRows::nameOf(packetID, context().strings));
    }
    names.removeDuplicates();
    return names.join(u", "_s);
}
