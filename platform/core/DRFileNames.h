#pragma once

#include <QByteArray>
#include <QString>

/// File names between bytes and text without loss. Linux takes any bytes for a name, and apps of a phone make use of that: bytes that
/// are no UTF-8 become the lone surrogates U+DC80 to U+DCFF, one per byte, which no decoded text holds, and go back from them.
namespace DRFileNames {

[[nodiscard]] QString fromBytes(const QByteArray& name);
[[nodiscard]] QByteArray toBytes(const QString& name);

} // namespace DRFileNames
