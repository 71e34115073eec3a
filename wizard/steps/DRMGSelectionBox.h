#pragma once

#include "wizard/DRKindContent.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

class DRMigrateBackupEntry;

/// One tick box of a selection page, as plain data.
struct DRMGSelectionBox {
    QString key; ///< data-type key that it selects
    bool isTicked = false;
    qsizetype count = 0;              ///< items found
    std::optional<quint64> sizeBytes; ///< shown when set
    DRKindContent::State state = DRKindContent::State::Loaded;

    bool operator==(const DRMGSelectionBox&) const = default;
};

using DRMGSelectionBoxes = std::vector<DRMGSelectionBox>;

/// How a box looks.
struct DRMGSelectionCategory {
    enum class Column { Left, Right };

    QString key;
    QString labelIdentifier; ///< the text holds "%i" for the count
    QString iconName;
    Column column = Column::Left;
};

namespace DRMGSelection {

/// All categories, in display order.
[[nodiscard]] const std::vector<DRMGSelectionCategory>& categories();

/// The keys of the media among them, in display order.
[[nodiscard]] QStringList mediaKeys();

/// The box under the key; null when there is none.
[[nodiscard]] DRMGSelectionBox* boxForKey(DRMGSelectionBoxes& boxes, const QString& key);

/// The keys of the ticked boxes, in the order of the boxes; "music" brings "voicememos" with it, which has no box of
/// its own.
[[nodiscard]] QStringList selectedKeys(const DRMGSelectionBoxes& boxes);

/// `selection` with the keys of ticked boxes added at its end and those of clear boxes removed. "voicememos" is left as
/// it is: kept, clearing the music here leaves the memos selected.
[[nodiscard]] QStringList adjustedSelection(QStringList selection, const DRMGSelectionBoxes& boxes);

/// How many entries the data type under the key holds; 0 when there is none.
[[nodiscard]] qsizetype entryCount(const DRMigrateBackupEntry& entry, const QString& key);

/// The count that a box shows once its data type is loaded: photos and videos are parts of the "images" data type,
/// music and voice memos count together.
[[nodiscard]] qsizetype itemCount(const DRMigrateBackupEntry& entry, const QString& key);

/// What is known of a box's content. The one of music and memos is still loading while one of both is; else, what is
/// wrong with one must not hide behind the other.
[[nodiscard]] DRKindContent::State contentState(const DRMigrateBackupEntry& entry, const QString& key);

/// The text under the box's identifier, with "%i" for the count; empty for an unknown key.
[[nodiscard]] QString labelIdentifier(const QString& key);

/// The picture of a kind; empty for an unknown key.
[[nodiscard]] QString imageName(const QString& key);

/// The bytes of a media box; 0 for other keys.
[[nodiscard]] quint64 mediaBytes(const DRMigrateBackupEntry& entry, const QString& key);

} // namespace DRMGSelection
