#pragma once

#include <QString>

#include <optional>
#include <vector>

/// The types of the boxes from the file down to some box.
using DRMP4Path = std::vector<quint32>;

/// Reads a path such as "moov/udta": four characters of Latin-1 for each box. None when a part is anything else.
[[nodiscard]] std::optional<DRMP4Path> mp4PathOf(const QString& path);
