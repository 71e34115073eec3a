#include "app/sample/DRSampleDescriptions.h"

#include "app/sample/DRSampleMusicTexts.h"
#include "platform/core/DRDigest.h"
#include "platform/core/DRPropertyList.h"

using namespace Qt::StringLiterals;

namespace {

// The made-up phone.
const QString kDeviceName = QStringLiteral("Robin\u2019s iPhone");
const QString kBuildVersion = QStringLiteral("11D257");
const QString kProductType = QStringLiteral("iPhone5,2");
const QString kProductVersion = QStringLiteral("7.1.2");
const QString kSerialNumber = QStringLiteral("C0FFEE1SAMPL");

/// 32 upper-case hexadecimal digits made from the text.
QString guidFrom(const QString& text)
{
    return sha1HexString(text).left(32).toUpper();
}

/// What the iPhone keeps for the music program: which playlists it took.
QByteArray musicPreferences()
{
    QVariantList ids;
    for (const DRSamplePlaylist& playlist : samplePlaylists()) {
        if (playlist.kind == DRSamplePlaylist::Kind::Taken) {
            ids += playlist.persistentId;
        }
    }
    return DRPropertyList::binaryFromDictionary({{u"MusicPlaylistIDs"_s, ids}});
}

} // namespace

QByteArray sampleInfoPropertyList(const DRSampleSettings& settings, const QString& targetIdentifier)
{
    return DRPropertyList::xmlFromDictionary({
        {u"Applications"_s, QVariantMap()},
        {u"Build Version"_s, kBuildVersion},
        {u"Device Name"_s, kDeviceName},
        {u"Display Name"_s, kDeviceName},
        {u"GUID"_s, guidFrom(u"the sample backup"_s)},
        {u"ICCID"_s, u"8900000000000000001"_s},
        {u"IMEI"_s, u"001013001234560"_s},
        {u"Installed Applications"_s, QVariantList()},
        {u"Last Backup Date"_s, settings.moment},
        {u"Phone Number"_s, u"+1 (555) 010-0142"_s},
        {u"Product Name"_s, u"iPhone 5"_s},
        {u"Product Type"_s, kProductType},
        {u"Product Version"_s, kProductVersion},
        {u"Serial Number"_s, kSerialNumber},
        {u"Target Identifier"_s, targetIdentifier},
        {u"Target Type"_s, u"Device"_s},
        {u"Unique Identifier"_s, targetIdentifier.toUpper()},
        {u"iTunes Files"_s, QVariantMap{{u"iTunesPrefs.plist"_s, musicPreferences()}}},
        {u"iTunes Settings"_s, QVariantMap()},
        {u"iTunes Version"_s, u"11.3.0.54"_s},
    });
}

QByteArray sampleManifestPropertyList(const DRSampleSettings& settings)
{
    const QVariantMap lockdown{
        {u"BuildVersion"_s, kBuildVersion}, {u"DeviceName"_s, kDeviceName},
        {u"ProductType"_s, kProductType},   {u"ProductVersion"_s, kProductVersion},
        {u"SerialNumber"_s, kSerialNumber}, {u"com.apple.Accessibility"_s, QVariantMap()},
    };
    return DRPropertyList::binaryFromDictionary({
        {u"Applications"_s, QVariantMap()},
        {u"Date"_s, settings.moment},
        {u"IsEncrypted"_s, false},
        {u"Lockdown"_s, lockdown},
        {u"SystemDomainsVersion"_s, u"18.0"_s},
        {u"Version"_s, u"9.1"_s},
        {u"WasPasscodeSet"_s, false},
    });
}

QByteArray sampleStatusPropertyList(const DRSampleSettings& settings)
{
    return DRPropertyList::binaryFromDictionary({
        {u"BackupState"_s, u"new"_s},
        {u"Date"_s, settings.moment},
        {u"IsFullBackup"_s, true},
        {u"SnapshotState"_s, u"finished"_s},
        {u"UUID"_s, guidFrom(u"the sample snapshot"_s)},
        {u"Version"_s, u"2.4"_s},
    });
}
