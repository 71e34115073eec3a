#pragma once

#include <optional>
#include <vector>

#include <QByteArray>
#include <QStringList>

/// The components of a relative path that leads nowhere but downwards; a leading "./" and a trailing "/" are dropped,
/// "./" itself has none. None for an absolute path and for one with an empty, "." or ".." component or a NUL.
[[nodiscard]] std::optional<std::vector<QByteArray>> safePathComponents(const QByteArray& path);

/// The files in the order in which a packet holds them, as bytes and without a leading "./": the apps' manifests first,
/// because the phone's restore drops what comes before an app's manifest, then ascending by bytes; each once, without
/// those that packets leave out. None when a path is empty or not safe.
[[nodiscard]] std::optional<std::vector<QByteArray>> inPacketOrder(const QStringList& relativePaths);
