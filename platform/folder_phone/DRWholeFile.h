#pragma once

#include "platform/core/DRFileDescriptor.h"

#include <optional>

#include <QByteArray>
#include <QString>

/// A file that is being written under a temporary name and gets its final name only when it is whole. Unless it was
/// placed, its end removes it. An interrupted program leaves at most a file whose name begins with ".phone-migrate-".
class DRWholeFile {
public:
    /// Removes what interrupted programs left in this folder. The files of programs that still run stay, where the file system knows
    /// locks; where it does not, everything stays.
    static void removeLeftovers(const DRFileDescriptor& folder);

    /// Begins an empty file of mode 0600 in this folder, which must stay open until the end; none on failure, with the
    /// cause in `errno`.
    [[nodiscard]] static std::optional<DRWholeFile> beginIn(const DRFileDescriptor& folder);

    DRWholeFile(DRWholeFile&& other) noexcept;
    DRWholeFile& operator=(DRWholeFile&&) = delete;
    DRWholeFile(const DRWholeFile&) = delete;
    DRWholeFile& operator=(const DRWholeFile&) = delete;
    ~DRWholeFile();

    /// What to write to.
    [[nodiscard]] const DRFileDescriptor& file() const { return m_file; }

    /// Flushes the bytes to disk. False on failure.
    [[nodiscard]] bool flush() const;

    /// Gives it the name; a file that had it is replaced, atomically. False on failure, with nothing changed.
    [[nodiscard]] bool placeOver(const QString& name);

    /// Gives it the name if nothing has it. False on failure, with EEXIST in `errno` when the name is taken.
    [[nodiscard]] bool placeAs(const QString& name);

private:
    DRWholeFile(const DRFileDescriptor& folder, QByteArray temporaryName, DRFileDescriptor file);

    const DRFileDescriptor* m_folder;
    QByteArray m_temporaryName; ///< empty once it has its final name
    DRFileDescriptor m_file;
};
