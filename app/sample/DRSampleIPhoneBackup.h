#pragma once

#include "app/sample/DRSampleDatabase.h"
#include "app/sample/DRSampleManifest.h"
#include "app/sample/DRSampleSettings.h"

#include <functional>
#include <map>
#include <utility>
#include <vector>

class QIODevice;

/// A file of the phone that goes into the backup.
struct DRSampleFile {
    QString domain; ///< such as "HomeDomain"
    QString path;   ///< relative to the domain
    /// What the manifest notes about it beside the rest: names and values.
    std::vector<std::pair<QByteArray, QByteArray>> properties = {};
};

/// An iPhone backup folder in the making. Add the phone's files, then `finish`, which writes the manifest and the
/// descriptions; until then the folder is no backup. Every operation answers false when the disk refuses, which is
/// logged.
class DRSampleIPhoneBackup {
public:
    /// The backup's folder name: the made-up phone's 40 hexadecimal digits.
    [[nodiscard]] static QString backupId();

    /// `folder` must exist and be empty.
    DRSampleIPhoneBackup(QString folder, DRSampleSettings settings);

    /// Adds a file with these bytes.
    [[nodiscard]] bool addData(const DRSampleFile& file, const QByteArray& bytes);

    /// Adds a file whose bytes `write` puts out piece by piece; it answers whether it could.
    [[nodiscard]] bool addStream(const DRSampleFile& file, const std::function<bool(QIODevice& device)>& write);

    /// Adds a database in write-ahead-log mode, as most of the iPhone's are: the built-in scripts of these names, then
    /// `rows`.
    [[nodiscard]] bool addDatabase(const DRSampleFile& file, const QStringList& scripts, const DRSampleRows& rows);

    /// Writes Manifest.mbdb, Manifest.plist, Status.plist and, last, Info.plist.
    [[nodiscard]] bool finish();

private:
    [[nodiscard]] QString storedPath(const DRSampleFile& file) const;
    [[nodiscard]] bool enterFile(const DRSampleFile& file);
    void enterFolder(const QString& domain, const QString& path);
    [[nodiscard]] DRSampleManifestRecord newRecord(const QString& domain, const QString& path) const;
    [[nodiscard]] bool writeManifest() const;

    QString m_folder;
    DRSampleSettings m_settings;
    // By domain and path: a folder comes before what is in it, as in real manifests.
    std::map<std::pair<QString, QString>, DRSampleManifestRecord> m_records;
};
