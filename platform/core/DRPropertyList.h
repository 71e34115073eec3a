#pragma once

#include <optional>

#include <QByteArray>
#include <QString>
#include <QVariantMap>

/// Property lists in XML or binary form, read and written as dictionaries.
///
/// Values become: string QString, boolean bool, integer qint64 or quint64, real double, data QByteArray, date QDateTime
/// (UTC), array QVariantList, dictionary QVariantMap. Anything else (UIDs) is left out.
namespace DRPropertyList {

/// The dictionary that the file holds; none when it cannot be read, is no property list, is no dictionary, is larger
/// than 64 MiB, or is nested or shared so deeply that it can only be hostile.
[[nodiscard]] std::optional<QVariantMap> readDictionary(const QString& path);

/// The same for bytes in memory.
[[nodiscard]] std::optional<QVariantMap> dictionaryFromData(const QByteArray& bytes);

/// The dictionary as an XML property list, keys in ascending order. Values of types not listed above are left out.
[[nodiscard]] QByteArray xmlFromDictionary(const QVariantMap& dictionary);

/// The dictionary as a binary property list.
[[nodiscard]] QByteArray binaryFromDictionary(const QVariantMap& dictionary);

} // namespace DRPropertyList
