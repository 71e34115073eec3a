#pragma once

#include "model/packet/DRMigratePacketCodec.h"
#include "tests/model/packet/DRTestArchive.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <map>
#include <memory>

using Tree = std::map<QString, QByteArray>;

/// All that lies below the folder: files with their content, folders and others with their kind. Without the archive.
[[nodiscard]] inline Tree treeOf(const QString& folder)
{
    Tree tree;
    QDirIterator found(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (found.hasNext()) {
        const QFileInfo info(found.next());
        const QString path = QDir(folder).relativeFilePath(info.filePath());
        const bool isFile = info.isFile() && !info.isSymLink();
        tree[path] = isFile ? readFile(info.filePath()) : QByteArray(info.isDir() ? "<folder>" : "<other>");
    }
    tree.erase(QStringLiteral("expandBackup.tar"));
    return tree;
}

[[nodiscard]] inline bool makeFiles(const QString& folder, const Tree& files)
{
    return std::ranges::all_of(
        files, [&folder](const auto& item) { return writeFile(folder + QLatin1Char('/') + item.first, item.second); });
}

[[nodiscard]] inline QStringList namesOf(const Tree& files)
{
    QStringList names;
    std::ranges::transform(files, std::back_inserter(names), [](const auto& item) { return item.first; });
    return names;
}

/// A test in a new folder for each case.
class DRPacketTest : public QObject {
protected:
    [[nodiscard]] bool makeFolder()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        return m_folder->isValid();
    }
    [[nodiscard]] QString path(const QString& name = {}) const { return m_folder->filePath(name); }

    /// Writes the bytes to "packet" and expands that into "out/in".
    [[nodiscard]] bool expand(const QByteArray& bytes) const
    {
        const QString packet = path(QStringLiteral("packet"));
        return writeFile(packet, bytes) &&
               DRMigrateUtils::expandAndroidBackupPacket(packet, path(QStringLiteral("out/in")));
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};
