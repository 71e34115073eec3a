#include "app/sample/DRSampleIPhoneBackup.h"

#include "app/sample/DRSampleDescriptions.h"
#include "platform/core/DRDigest.h"
#include "platform/core/DRLog.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kFirstInode = 20001;
constexpr quint8 kReadableAfterFirstUnlock = 3; // the class of nearly all files of a phone
constexpr qint64 kDaysInUse = 400;              // since the phone was set up

bool writeNewFile(const QString& path, const std::function<bool(QIODevice& device)>& write)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || !write(file) || !file.flush()) {
        qCWarning(lcMigrate) << "cannot write" << path << file.errorString();
        return false;
    }
    return true;
}

bool writeNewFile(const QString& path, const QByteArray& bytes)
{
    return writeNewFile(path, [&bytes](QIODevice& device) { return device.write(bytes) == bytes.size(); });
}

} // namespace

QString DRSampleIPhoneBackup::backupId()
{
    return sha1HexString(u"the sample iPhone"_s);
}

DRSampleIPhoneBackup::DRSampleIPhoneBackup(QString folder, DRSampleSettings settings)
    : m_folder(std::move(folder)), m_settings(std::move(settings))
{
}

bool DRSampleIPhoneBackup::addData(const DRSampleFile& file, const QByteArray& bytes)
{
    return writeNewFile(storedPath(file), bytes) && enterFile(file);
}

bool DRSampleIPhoneBackup::addStream(const DRSampleFile& file, const std::function<bool(QIODevice& device)>& write)
{
    return writeNewFile(storedPath(file), write) && enterFile(file);
}

bool DRSampleIPhoneBackup::addDatabase(const DRSampleFile& file, const QStringList& scripts, const DRSampleRows& rows)
{
    return writeSampleDatabase(storedPath(file), scripts, DRSampleJournal::WriteAhead, rows) && enterFile(file);
}

bool DRSampleIPhoneBackup::finish()
{
    return writeManifest() && writeNewFile(m_folder + u"/Manifest.plist"_s, sampleManifestPropertyList(m_settings)) &&
           writeNewFile(m_folder + u"/Status.plist"_s, sampleStatusPropertyList(m_settings)) &&
           writeNewFile(m_folder + u"/Info.plist"_s, sampleInfoPropertyList(m_settings, backupId()));
}

QString DRSampleIPhoneBackup::storedPath(const DRSampleFile& file) const
{
    return m_folder + u'/' + sha1HexString(file.domain + u'-' + file.path);
}

bool DRSampleIPhoneBackup::enterFile(const DRSampleFile& file)
{
    QFile stored(storedPath(file));
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!stored.open(QIODevice::ReadOnly) || !hash.addData(&stored)) {
        qCWarning(lcMigrate) << "cannot read back" << stored.fileName() << stored.errorString();
        return false;
    }
    for (qsizetype end = file.path.lastIndexOf(u'/'); end > 0; end = file.path.lastIndexOf(u'/', end - 1)) {
        enterFolder(file.domain, file.path.first(end));
    }
    enterFolder(file.domain, QString());

    auto record = newRecord(file.domain, file.path);
    record.dataHash = hash.result();
    record.mode = DRSampleManifestRecord::kFile | 0644;
    record.sizeBytes = static_cast<quint64>(stored.size());
    record.protectionClass = kReadableAfterFirstUnlock;
    record.properties = file.properties;
    m_records[{file.domain, file.path}] = record;
    return true;
}

void DRSampleIPhoneBackup::enterFolder(const QString& domain, const QString& path)
{
    if (m_records.contains({domain, path})) {
        return;
    }
    auto record = newRecord(domain, path);
    record.mode = DRSampleManifestRecord::kFolder | 0755;
    m_records[{domain, path}] = record;
}

DRSampleManifestRecord DRSampleIPhoneBackup::newRecord(const QString& domain, const QString& path) const
{
    DRSampleManifestRecord record;
    record.domain = domain;
    record.path = path;
    record.inode = kFirstInode + m_records.size();
    record.modified = m_settings.moment.addDays(-1);
    record.created = m_settings.moment.addDays(-kDaysInUse);
    return record;
}

bool DRSampleIPhoneBackup::writeManifest() const
{
    return writeNewFile(m_folder + u"/Manifest.mbdb"_s, [this](QIODevice& device) {
        const auto write = [&device](const QByteArray& bytes) { return device.write(bytes) == bytes.size(); };
        return write(sampleManifestHeader()) &&
               std::all_of(m_records.begin(), m_records.end(),
                           [&write](const auto& entry) { return write(encodeManifestRecord(entry.second)); });
    });
}
