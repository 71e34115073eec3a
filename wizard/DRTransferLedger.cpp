#include "wizard/DRTransferLedger.h"

#include "platform/core/DRDates.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRPrivateFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

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
                   value[u"kind"].toString() == key && isThis == (backups == Backups::This);
        });
    });
    return kinds;
}

} // namespace

DRTransferLedger DRTransferLedger::ofFile(const QString& path)
{
    DRTransferLedger ledger(path);
    QFile file(path);
    if (!file.exists()) {
        return ledger;
    }
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
    return DRPrivateFolder::make(QFileInfo(m_path).absolutePath()) &&
           DRFiles::writeAtomically(m_path, QJsonDocument(document).toJson());
}
