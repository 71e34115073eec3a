#include "app/sample/DRSamplePhone.h"

#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRDigest.h"
#include "platform/core/DRLog.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPlatformSdk = 19;
constexpr int kCertificateDigests = 25; // 20 bytes each: about as long as a real certificate

// Restore wants a certificate to be there; a made-up one in lower-case hexadecimal does.
QString madeUpCertificate(const QString& packetId)
{
    QString certificate = u"308201f0"_s;
    for (int piece = 0; piece < kCertificateDigests; ++piece) {
        certificate += sha1HexString(packetId + QString::number(piece));
    }
    return certificate;
}

QByteArray packetManifest(const DRSampleApp& app)
{
    const QStringList lines{
        u"1"_s, // the manifest's version
        app.packetId,
        QString::number(app.versionCode),
        QString::number(kPlatformSdk),
        app.installer,
        u"0"_s, // without the app itself
        u"1"_s, // number of certificates
        madeUpCertificate(app.packetId),
    };
    return (lines.join(u'\n') + u'\n').toLatin1();
}

/// The regular files below `folder`/apps, relative to `folder`, all given the same time so that the packet is the same
/// in every run.
QStringList datedFiles(const QString& folder, const QDateTime& moment)
{
    QStringList files;
    QDirIterator walk(folder + u"/apps"_s, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QFile file(walk.next());
        if (file.open(QIODevice::ReadWrite)) {
            file.setFileTime(moment, QFileDevice::FileModificationTime);
        }
        files += QDir(folder).relativeFilePath(file.fileName());
    }
    files.sort();
    return files;
}

} // namespace

bool writeSampleFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly | QIODevice::NewOnly) ||
        file.write(bytes) != bytes.size() || !file.flush()) {
        qCWarning(lcMigrate) << "cannot write" << path << file.errorString();
        return false;
    }
    return true;
}

DRSamplePhone::DRSamplePhone(QString folder, QString workFolder, DRSampleSettings settings)
    : m_folder(std::move(folder)), m_workFolder(std::move(workFolder)), m_settings(std::move(settings))
{
}

bool DRSamplePhone::addPacket(const DRSampleApp& app, const DRSampleAppData& data)
{
    const QString expanded = m_workFolder + u'/' + app.packetId;
    const QString appFolder = expanded + u"/apps/"_s + app.packetId;
    const QString packet = m_folder + u"/packets/"_s + app.packetId + u"/fullbackupdata"_s;
    if (!writeSampleFile(appFolder + u"/_manifest"_s, packetManifest(app)) || !data(appFolder)) {
        return false;
    }
    if (!QDir().mkpath(QFileInfo(packet).path())) {
        qCWarning(lcMigrate) << "cannot make the folder of" << packet;
        return false;
    }
    return DRMigrateUtils::compressAndroidBackupPacket(expanded, datedFiles(expanded, m_settings.moment), packet);
}

bool DRSamplePhone::addStorageFile(const QString& path, const QByteArray& bytes)
{
    return writeSampleFile(m_folder + u"/storage/"_s + path, bytes);
}

bool DRSamplePhone::finish()
{
    constexpr qint64 kGibibyte = 1024LL * 1024 * 1024;
    const QJsonObject description{
        {u"marketingName"_s, u"Vorn Sample One"_s},
        {u"androidBaseVersion"_s, 4},
        {u"appProductRevision"_s, u"4.4.2"_s},
        {u"memoryUsableCapacity"_s, 12 * kGibibyte},
    };
    return writeSampleFile(m_folder + u"/phone.json"_s, QJsonDocument(description).toJson());
}
