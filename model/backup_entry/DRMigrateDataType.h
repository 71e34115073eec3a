#pragma once

#include <functional>
#include <memory>
#include <mutex>

#include <QString>
#include <QStringList>

#include "model/backup_entry/DREntryList.h"
#include "model/backup_entry/DRMigrateReport.h"

struct DRMigrateServices;

/// One kind of content of one backup, carried through three steps: load, merge, save. Converters subclass it: on the
/// iPhone side one that loads, on the phone side one that loads (expands its packet), merges the iPhone's records in,
/// and saves (packs).
///
/// The steps run on the background queue through the `...WithHandler` operations; everything else is called on the main
/// thread. `entries` and `report` may be read while a step runs: they answer the last value set as a whole.
class DRMigrateDataType : public std::enable_shared_from_this<DRMigrateDataType> {
public:
    /// Bits of `flags`.
    static constexpr qint64 kDRMigrateDataTypeFlagBackedUp = 0x1; ///< packet fetched from the phone
    static constexpr qint64 kDRMigrateDataTypeFlagLoaded = 0x2;
    static constexpr qint64 kDRMigrateDataTypeFlagMerged = 0x4;
    static constexpr qint64 kDRMigrateDataTypeFlagSaved = 0x8;
    static constexpr qint64 kDRMigrateDataTypeFlagRestored = 0x10; ///< packet or files delivered to the phone
    static constexpr qint64 kDRMigrateDataTypeFlagError = 0x8000;

    using Handler = std::function<void(const std::shared_ptr<DRMigrateDataType>&, bool success)>;

    explicit DRMigrateDataType(const DRMigrateServices& services);
    virtual ~DRMigrateDataType();
    DRMigrateDataType(const DRMigrateDataType&) = delete;
    DRMigrateDataType& operator=(const DRMigrateDataType&) = delete;

    /// Reads the content. Background queue; must not touch `flags`. The base answers false.
    [[nodiscard]] virtual bool load();

    /// Takes the source's records into this data type. Background queue; must not touch `flags`. The base appends the
    /// source's entries to its own and answers true.
    [[nodiscard]] virtual bool mergeDataFrom(const DRMigrateDataType& source);

    /// Writes the files back and packs them. Background queue; must not touch `flags`. The base answers false.
    [[nodiscard]] virtual bool save();

    /// Run the step on the background queue; then, on the main thread, record the outcome in `flags` (success sets the
    /// step's bit, failure replaces the whole value by 0x8000) and call the handler. The data type lives until then.
    void loadWithHandler(Handler handler);
    void mergeDataFromWithHandler(const std::shared_ptr<const DRMigrateDataType>& source, Handler handler);
    void saveWithHandler(Handler handler);

    /// Whether one of these steps is under way, in the background or with its handler still to come. Main thread.
    [[nodiscard]] bool isWorking() const { return m_stepsUnderWay > 0; }

    [[nodiscard]] bool isLoaded() const { return (m_flags & kDRMigrateDataTypeFlagLoaded) != 0; }
    [[nodiscard]] bool isMerged() const { return (m_flags & kDRMigrateDataTypeFlagMerged) != 0; }
    [[nodiscard]] bool isSaved() const { return (m_flags & kDRMigrateDataTypeFlagSaved) != 0; }
    [[nodiscard]] virtual bool hasError() const { return (m_flags & kDRMigrateDataTypeFlagError) != 0; }

    /// The bytes that this data type counts for in the progress. The base: 4 MiB, a fixed weight for a packet.
    [[nodiscard]] virtual quint64 bytesToTransfer() const;

    /// The part of them that is done. The base: one half once the packet is fetched, the other once it is restored.
    [[nodiscard]] virtual quint64 bytesTransferred() const;

    /// The regular files below `targetPath`/`packetID`/"apps", as paths relative to `targetPath`/`packetID` that begin
    /// with "apps/", in the order in which the file system lists them. Links are no regular files. None when they cannot
    /// be listed to the end.
    [[nodiscard]] std::optional<QStringList> filesInAppsFolder() const;

    /// Whether the expanded packet holds the app's "_manifest"; sets `manifestMissing` to the opposite.
    [[nodiscard]] bool checkForManifest();

    /// The directory of the backup that the data is read from.
    [[nodiscard]] const QString& sourcePath() const { return m_sourcePath; }
    void setSourcePath(const QString& path) { m_sourcePath = path; }

    /// The working directory in which packets are expanded, each below its packet ID.
    [[nodiscard]] const QString& targetPath() const { return m_targetPath; }
    void setTargetPath(const QString& path) { m_targetPath = path; }

    /// The key under which the entry holds this data type.
    [[nodiscard]] const QString& dataTypeKey() const { return m_dataTypeKey; }
    void setDataTypeKey(const QString& key) { m_dataTypeKey = key; }

    /// Phone side: the key of the iPhone data type whose content is merged into this one.
    [[nodiscard]] const QString& sourceKey() const { return m_sourceKey; }
    void setSourceKey(const QString& key) { m_sourceKey = key; }

    /// Phone side: the Android package name of the packet that this data type edits; empty for media and on the iPhone
    /// side.
    [[nodiscard]] const QString& packetID() const { return m_packetID; }
    void setPacketID(const QString& packetID) { m_packetID = packetID; }

    [[nodiscard]] DREntries entries() const;
    void setEntries(DREntries entries);
    void setEntries(DREntryList entries);

    [[nodiscard]] qint64 flags() const { return m_flags; }
    void setFlags(qint64 flags) { m_flags = flags; }

    /// Whether `checkForManifest` found no manifest.
    [[nodiscard]] bool manifestMissing() const { return m_manifestMissing; }

    /// Whether a converter decided to leave its packet out of the restore.
    [[nodiscard]] bool ignoreDataType() const { return m_ignoreDataType; }
    void setIgnoreDataType(bool ignore) { m_ignoreDataType = ignore; }

    /// What became of the records so far. Any thread.
    [[nodiscard]] DRMigrateReport report() const;

protected:
    void setReport(DRMigrateReport report);
    [[nodiscard]] const DRMigrateServices& services() const { return m_services; }

    /// Expands `sourcePath`/`packetID`/"fullbackupdata" into `targetPath`/`packetID`. False when one of them is empty
    /// or the packet cannot be expanded; the report says why. It also names what of an expanded packet was lost.
    [[nodiscard]] bool expandPacket();

    /// Reports that the packet of the app, as a person calls it, has no manifest, so that the phone would not take it back.
    void skipWithoutManifest(const QString& app);

    /// Packs `filesInAppsFolder` into `targetPath`/`packetID`/"fullbackupdata". False when `targetPath` or `packetID`
    /// is empty or packing fails. The report names the files that packets leave out (names that begin with a dot).
    [[nodiscard]] bool packPacket();

    /// The same with exactly these files, relative to `targetPath`/`packetID`, all of which must exist.
    [[nodiscard]] bool packFiles(const QStringList& files);

    /// `targetPath`/`packetID`/"apps"/`packetID`: the folder of the app in the expanded packet.
    [[nodiscard]] QString appFolder() const;

    /// A file of the app in the expanded packet, relative to `appFolder`.
    [[nodiscard]] QString pathInApp(const QString& relativePath) const;

private:
    void runStep(std::function<bool()> step, qint64 successFlag, Handler handler);

    const DRMigrateServices& m_services;
    QString m_sourcePath;
    QString m_targetPath;
    QString m_dataTypeKey;
    QString m_sourceKey;
    QString m_packetID;
    qint64 m_flags = 0;
    int m_stepsUnderWay = 0;
    bool m_manifestMissing = false;
    bool m_ignoreDataType = false;

    mutable std::mutex m_valuesMutex; ///< guards the two values below, which steps set in the background
    DREntries m_entries;
    DRMigrateReport m_report;
};

using DRMigrateDataTypePointer = std::shared_ptr<DRMigrateDataType>;
