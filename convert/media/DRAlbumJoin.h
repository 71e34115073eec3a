#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

class DRDatabase;

/// Which assets belong to which album: the join table of a photo library. The database must outlive it.
class DRAlbumJoin {
public:
    /// Of the newer layout, whose join table and columns carry numbers that differ from system to system, such as
    /// `Z_11ASSETS` with `Z_11ALBUMS` and `Z_17ASSETS`; found by name.
    [[nodiscard]] static DRAlbumJoin ofNewerLayout(DRDatabase& database);

    /// Of the older layout: `PhotoAlbumToPhotoJoin`, where "left" is the album and "right" the asset.
    [[nodiscard]] static DRAlbumJoin ofOlderLayout(DRDatabase& database);

    /// The keys of the album's assets, in the order of the rows of "SELECT asset FROM join WHERE album=key". None without
    /// a usable join table. All albums together take a time that grows with the rows, whether or not there is an index.
    [[nodiscard]] QList<qint64> assetIdsOfAlbum(qint64 albumKey);

    /// Whether the library has such a table and can be asked.
    [[nodiscard]] bool exists() const { return !m_table.isNull(); }

    /// Whether every row could be read so far. A library without a join table is complete.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    using AssetIds = QHash<qint64, QList<qint64>>; ///< by the album's key

    DRAlbumJoin(DRDatabase& database, const QString& table, const QString& assetColumn, const QString& albumColumn);

    [[nodiscard]] bool isSearchedByIndex();
    [[nodiscard]] AssetIds readAll();
    [[nodiscard]] QList<qint64> readAlbum(qint64 albumKey);
    [[nodiscard]] QString statementForAlbum(qint64 albumKey) const;

    DRDatabase* m_database;
    QString m_table; ///< in double quotes; null when there is none or a name is not fit for a statement
    QString m_assetColumn;
    QString m_albumColumn;
    bool m_isComplete = true;
    std::optional<bool> m_isSearchedByIndex; ///< found out when the first album asks
    AssetIds m_assetIds;                     ///< of the albums that have been asked for, or of all
};
