#include "wizard/DRTransferLedger.h"

#include "platform/core/DRDates.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRPendingFile.h"
#include "platform/core/DRPrivateFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

QString iPhoneIdentity(const DRMigrateIPhoneBackupEntry& backup)
{
    if (!backup.guid().isEmpty()) {
        return u"guid:"_s + backup.guid();
    }
    if (!backup.serialNumber().isEmpty()) {
        return u"serial:"_s + backup.serialNumber() + u'/' + backup.deviceName();
    }
    return u"path:"_s + QFileInfo(backup.backupPath()).canonicalFilePath();
}

QString dateText(const DRMigrateIPhoneBackupEntry& backup)
{
    const QString date = DRDates::rfc3339(backup.lastBackupDate());
    return date.isNull() ? u""_s : date;
}

/// The times at which the kind came to the phone, went, came again and so on.
QStringList turnsOf(const QJsonValue& transfer)
{
    QStringList times{transfer[u"time"].toString()};
    const QJsonArray turns = transfer[u"turns"].toArray();
    for (const auto& turn : turns) {
        times << turn.toString();
    }
    return times;
}

/// Texts of times in UTC compare as the times do.
bool wasOnPhone(const QJsonValue& transfer, const QString& before)
{
    const QStringList turns = turnsOf(transfer);
    return std::ranges::count_if(turns, [&before](const QString& time) { return time < before; }) % 2 == 1;
}

bool isOnPhone(const QJsonValue& transfer)
{
    return turnsOf(transfer).size() % 2 == 1;
}

enum class Backups { This, Others };

QStringList kindsMoved(const QJsonArray& transfers,
                       const QStringList& keys,
                       const DRMigrateIPhoneBackupEntry& backup,
                       const QString& phone,
                       Backups backups)
{
    const QString iPhone = iPhoneIdentity(backup);
    const QString date = dateText(backup);
    QStringList kinds = keys;
    kinds.removeIf([&](const QString& key) {
        return std::ranges::none_of(transfers, [&](const QJsonValue& value) {
            const bool isThis = value[u"backupDate"].toString() == date;
            return value[u"phone"].toString() == phone && value[u"iphone"].toString() == iPhone &&
                   value[u"kind"].toString() == key && isThis == (backups == Backups::This) && isOnPhone(value);
        });
    });
    return kinds;
}

} // namespace

DRTransferLedger DRTransferLedger::ofFile(const QString& path)
{
    DRTransferLedger ledger(path);
    if (!statusWithoutFollowing(path) && errno == ENOENT) {
        return ledger; // any other answer may hide what was noted
    }
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        const QJsonValue transfers = QJsonDocument::fromJson(file.readAll()).object().value(u"transfers");
        ledger.m_transfers = transfers.toArray();
        ledger.m_countInFile = ledger.m_transfers.size();
        ledger.m_isDamaged = !transfers.isArray();
        return ledger;
    }
    ledger.m_isDamaged = true;
    return ledger;
}

QStringList DRTransferLedger::repeatedKinds(const QStringList& keys,
                                            const DRMigrateIPhoneBackupEntry& backup,
                                            const QString& phone) const
{
    return kindsMoved(m_transfers, keys, backup, phone, Backups::This);
}

QStringList DRTransferLedger::kindsOfOtherBackups(const QStringList& keys,
                                                  const DRMigrateIPhoneBackupEntry& backup,
                                                  const QString& phone) const
{
    return kindsMoved(m_transfers, keys, backup, phone, Backups::Others);
}

bool DRTransferLedger::record(const QStringList& keys,
                              const DRMigrateIPhoneBackupEntry& backup,
                              const QString& phone,
                              const QDateTime& now)
{
    const QStringList known = repeatedKinds(keys, backup, phone);
    for (const QString& key : keys) {
        if (!known.contains(key)) {
            m_transfers << QJsonObject{
                {u"phone"_s, phone}, {u"iphone"_s, iPhoneIdentity(backup)}, {u"backupDate"_s, dateText(backup)},
                {u"kind"_s, key},    {u"time"_s, DRDates::rfc3339(now)},
            };
        }
    }
    return write();
}

QDateTime DRTransferLedger::timeAfterLast(const QString& phone, const QDateTime& now) const
{
    QDateTime time = now;
    for (const auto& transfer : m_transfers) {
        const QDateTime last = QDateTime::fromString(turnsOf(transfer).constLast(), Qt::ISODate);
        if (transfer[u"phone"].toString() == phone && last.isValid() && last.addSecs(1) > time) {
            time = last.addSecs(1);
        }
    }
    return time;
}

bool DRTransferLedger::notePutBack(
    PutBack what, const QStringList& keys, const QString& phone, const QDateTime& backupDate, const QDateTime& time)
{
    if (m_isDamaged) {
        return false;
    }
    bool isChanged = false;
    for (qsizetype i = 0; i < m_transfers.size(); ++i) {
        QJsonObject transfer = m_transfers.at(i).toObject();
        const bool isMeant = transfer[u"phone"].toString() == phone && keys.contains(transfer[u"kind"].toString());
        const bool comes = wasOnPhone(transfer, DRDates::rfc3339(backupDate));
        if (isMeant && comes != isOnPhone(transfer) && comes == (what == PutBack::Begins)) {
            QJsonArray turns = transfer[u"turns"].toArray();
            turns << DRDates::rfc3339(time);
            transfer.insert(u"turns"_s, turns);
            m_transfers.replace(i, transfer);
            isChanged = true;
        }
    }
    return !isChanged || write();
}

bool DRTransferLedger::settle(const QStringList& keys,
                              const DRMigrateIPhoneBackupEntry& backup,
                              const QString& phone,
                              const QDateTime& now)
{
    QStringList missing = keys;
    bool isChanged = false;
    for (qsizetype i = m_transfers.size() - 1; i >= m_countInFile; --i) {
        const QString key = m_transfers.at(i)[u"kind"].toString();
        missing.removeAll(key);
        if (!keys.contains(key)) {
            m_transfers.removeAt(i);
            isChanged = true;
        }
    }
    return missing.isEmpty() ? !isChanged || write() : record(missing, backup, phone, now);
}

bool DRTransferLedger::write()
{
    if (m_isDamaged && !DRFiles::replace(m_path, m_path + u".damaged"_s)) {
        return false;
    }
    m_isDamaged = false;
    const QJsonObject document{{u"version"_s, 1}, {u"transfers"_s, m_transfers}};
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!DRPrivateFolder::make(folder)) {
        return false;
    }
    DRPendingFile::removeLeftovers(folder);
    return DRFiles::writeAtomically(m_path, QJsonDocument(document).toJson());
}
