#pragma once

#include "fuzz/DRFuzzBackup.h"
#include "fuzz/DRFuzzInput.h"
#include "fuzz/DRFuzzPhone.h"
#include "fuzz/FuzzTarget.h"
#include "platform/device/DRDCFile.h"
#include "tests/support/DRTestServices.h"

#include <memory>
#include <optional>

/// Reads content from a backup and writes it into packets, holding both sides to what is promised of every kind of
/// content.
class DRFuzzMove {
public:
    /// Reads the backup. Null when that fails, which is no fault.
    template <typename Source> [[nodiscard]] std::unique_ptr<Source> load(const DRFuzzBackup& backup)
    {
        auto source = std::make_unique<Source>(m_test.services);
        source->setSourcePath(backup.path());
        const bool isLoaded = source->load();
        backup.requireUnchanged();
        require(!source->report().isNotInBackup, "what is in the backup is found");
        require(isLoaded || source->entries()->empty(), "what cannot be read gives nothing");
        return isLoaded ? std::move(source) : nullptr;
    }

    /// Writes into the expanded packet below `targetPath`. Answers the report; none when writing failed.
    template <typename Target>
    std::optional<DRMigrateReport>
    merge(const DRMigrateDataType& source, const QString& targetPath, const QString& packetID)
    {
        Target target(m_test.services);
        target.setTargetPath(targetPath);
        target.setPacketID(packetID);
        const bool isMerged = target.mergeDataFrom(source);
        const DRMigrateReport report = target.report();
        // Either side may tell; what lies in two folders is written twice.
        require(report.written >= report.found || tells(report) || tells(source.report()),
                "what is not written is told");
        require(isMerged || !report.skipped.empty(), "a failure is told");
        return isMerged && !target.ignoreDataType() ? std::optional(report) : std::nullopt;
    }

    /// Moves what the input makes of a backup to what it makes of a phone. Every record that is reported as written, by
    /// `written`, must be one row more of the tables, and the phone's own must stay. Null when the backup cannot be read.
    template <typename Source, typename Target>
    std::unique_ptr<Source> moveRows(QByteArrayView bytes,
                                     DRFuzzBackup& backup,
                                     DRFuzzPhone& phone,
                                     const QStringList& tables,
                                     qint64 (*written)(const DRMigrateReport& report))
    {
        editOneOf(bytes, backup, phone);
        auto source = load<Source>(backup);
        if (!source) {
            return nullptr;
        }
        const auto before = phone.rowCount(tables);
        const auto report = merge<Target>(*source, phone.path(), phone.packetID());
        const auto after = phone.rowCount(tables);
        if (report && before && after) {
            require(*after == *before + written(*report), "each record is a row, and the phone's own stay");
        }
        return source;
    }

    /// Reads what the input makes of a backup: every entry is a file of it, under a name without folders.
    template <typename Source> void readFiles(QByteArrayView bytes, DRFuzzBackup& backup)
    {
        DRFuzzInput input(bytes);
        backup.edit(input);
        const auto source = load<Source>(backup);
        const DREntries entries = source ? source->entries() : std::make_shared<DREntryList>();
        for (const auto* file : recordsOf<DRDCFilePointer>(*entries)) {
            const QString name = (*file)->displayName();
            require((*file)->isValidFile() && (*file)->sourcePath().startsWith(backup.path() + QLatin1Char('/')),
                    "an entry is a file of the backup");
            require(!name.contains(QLatin1Char('/')) && !name.contains(QChar(0)), "a name leads to no other folder");
        }
    }

    [[nodiscard]] const DRMigrateServices& services() const { return m_test.services; }

private:
    /// Lets an input change the backup or the phone, never both: its first byte tells which.
    static void editOneOf(QByteArrayView bytes, DRFuzzBackup& backup, DRFuzzPhone& phone)
    {
        DRFuzzInput input(bytes);
        DRFuzzInput nothing({});
        const bool isPhone = input.takeByte() % 2 == 1;
        backup.edit(isPhone ? nothing : input);
        phone.edit(isPhone ? input : nothing);
    }

    [[nodiscard]] static bool tells(const DRMigrateReport& report)
    {
        return !report.skipped.empty() || !report.warnings.empty();
    }

    DRTestServices m_test;
};
