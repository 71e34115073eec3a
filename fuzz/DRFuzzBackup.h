#pragma once

#include "app/sample/DRSampleSettings.h"
#include "fuzz/DRFuzzDatabase.h"
#include "fuzz/DRFuzzFolder.h"

#include <QString>
#include <QStringList>

#include <vector>

class DRFuzzInput;
class DRSampleIPhoneBackup;

/// When everything in the seed databases was made.
[[nodiscard]] const DRSampleSettings& fuzzSettings();

/// An iPhone backup of one part of the sample, whose databases inputs change. Made once: that takes a second.
class DRFuzzBackup {
public:
    /// Adds the part to a backup. See "app/sample".
    using Part = bool (*)(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings);

    /// `databases`: domain and path of each, such as "HomeDomain-Library/Notes/notes.sqlite".
    DRFuzzBackup(Part part, const QStringList& databases);

    /// Changes one of the databases as the rest of the input says; the others are what they were at first.
    void edit(DRFuzzInput& input);

    /// The backup's folder, to be read.
    [[nodiscard]] QString path() const { return m_folder.path(QStringLiteral("backup")); }

    /// Ends the process when reading has changed the database or left something beside it.
    void requireUnchanged() const;

private:
    struct Database {
        QString path;
        DRFuzzDatabase seed;
    };

    DRFuzzFolder m_folder;
    std::vector<Database> m_databases;
    std::size_t m_edited = 0; ///< position of the one that is not what it was at first
    QByteArray m_editedBytes;
    QStringList m_files;
};
