#pragma once

#include <optional>
#include <span>

#include <QString>
#include <QStringList>

/// One kind of content as the command line names it.
struct DRKind {
    QString key;   ///< the data-type key, or the selection key "videos"
    QString name;  ///< what is typed and shown, such as "photos"
    QString title; ///< for sentences, such as "Photos"
};

namespace DRKinds {

/// All kinds, in the order in which they are shown.
[[nodiscard]] std::span<const DRKind> all();

[[nodiscard]] QStringList allKeys();

/// The name under which the key is shown; the key itself when it is none of ours.
[[nodiscard]] QString nameOfKey(const QString& key);

/// "notes (com.vornmobile.notes)" for a packet ID, "photos" for a kind that goes into no packet.
[[nodiscard]] QString titleOfPacketOrKey(const QString& packetOrKey);

/// The key that the typed name means: a name or a key of the table. None when it is neither.
[[nodiscard]] std::optional<QString> keyOfName(const QString& name);

/// The keys of a comma-separated list, in the table's order and without doubles. `unknown` is the first entry that
/// names no kind; null when all do.
struct List {
    QStringList keys;
    QString unknown;
};
[[nodiscard]] List fromText(const QString& commaSeparated);

/// The names of the keys, joined by ", ".
[[nodiscard]] QString namesOf(const QStringList& keys);

} // namespace DRKinds
