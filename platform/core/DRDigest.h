#pragma once

#include <QString>

/// The SHA-1 digest of the text's UTF-8 bytes as 40 lower-case hexadecimal digits. An iPhone backup names its files so.
[[nodiscard]] QString sha1HexString(const QString& text);
