#pragma once

#include "app/sample/DRSampleSettings.h"

#include <QByteArray>
#include <QString>

#include <functional>

/// An app of the made-up phone, whose data becomes a packet.
struct DRSampleApp {
    QString packetId; ///< its package name
    int versionCode = 1;
    QString installer = {}; ///< the package that installed it; empty for an app that came with the phone
};

/// Puts an app's data into its folder (db/, f/, r/ below `appFolder`, which exists). False when it cannot.
using DRSampleAppData = std::function<bool(const QString& appFolder)>;

/// A phone in a folder in the making: packets, its own files, its description. Every operation answers false when the
/// disk refuses, which is logged.
class DRSamplePhone {
public:
    /// Both folders must exist and be empty; packets are put together in `workFolder`.
    DRSamplePhone(QString folder, QString workFolder, DRSampleSettings settings);

    /// Adds the app's packet: its manifest and what `data` writes.
    [[nodiscard]] bool addPacket(const DRSampleApp& app, const DRSampleAppData& data);

    /// Adds a file to the phone's shared storage; `path` is relative to it.
    [[nodiscard]] bool addStorageFile(const QString& path, const QByteArray& bytes);

    /// Writes phone.json.
    [[nodiscard]] bool finish();

private:
    QString m_folder;
    QString m_workFolder;
    DRSampleSettings m_settings;
};

/// Writes a new file with the folders above it. False when that fails, which is logged.
[[nodiscard]] bool writeSampleFile(const QString& path, const QByteArray& bytes);
