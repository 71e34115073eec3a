#pragma once

#include <QtGlobal>

/// The phone's storage as the storage bar shows it, in bytes.
struct DRMGStorageFigures {
    quint64 music = 0; ///< of the ticked media
    quint64 images = 0;
    quint64 videos = 0;
    quint64 other = 0; ///< in use on the phone already
    quint64 free = 0;  ///< left when the ticked media are on the phone; 0 when they do not fit
    quint64 total = 0; ///< usable capacity

    bool operator==(const DRMGStorageFigures&) const = default;

    [[nodiscard]] quint64 selected() const { return music + images + videos; }

    /// What the ticked media take beyond the capacity; 0 when they fit.
    [[nodiscard]] quint64 missing() const { return free == 0 ? other + selected() - total : 0; }

    /// Whether nothing is left for the ticked media. Without any ticked media a full phone is no obstacle.
    [[nodiscard]] bool isOverfull() const { return free == 0 && selected() != 0; }
};

/// The bytes of the media on a page: of each kind 0 when its box is clear.
struct DRMGTickedMediaBytes {
    quint64 music = 0;
    quint64 images = 0;
    quint64 videos = 0;
};

/// Computed in unsigned 64-bit arithmetic: a phone that reports more free bytes than its capacity makes `other` wrap
/// around, and `free` comes out right all the same.
[[nodiscard]] DRMGStorageFigures
storageFigures(quint64 usableCapacity, quint64 usableFreeBytes, const DRMGTickedMediaBytes& ticked);
