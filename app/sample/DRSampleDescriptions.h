#pragma once

#include "app/sample/DRSampleSettings.h"

#include <QByteArray>

/// The property lists that describe an iPhone backup. See docs/formats/backup-folder.md.

/// Info.plist, in XML: the phone and when it was backed up. `targetIdentifier` is the backup's folder name.
[[nodiscard]] QByteArray sampleInfoPropertyList(const DRSampleSettings& settings, const QString& targetIdentifier);

/// Manifest.plist, binary: not encrypted.
[[nodiscard]] QByteArray sampleManifestPropertyList(const DRSampleSettings& settings);

/// Status.plist, binary: the backup is complete.
[[nodiscard]] QByteArray sampleStatusPropertyList(const DRSampleSettings& settings);
