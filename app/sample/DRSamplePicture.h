#pragma once

#include <QByteArray>

/// Pictures for samples: landscapes of soft colours, each another by its seed. Width and height are in pixels, from 1 to
/// 65535.

/// The landscape as PNG with eight bits for each of red, green and blue.
[[nodiscard]] QByteArray samplePng(quint64 seed, int width, int height);

/// The landscape as baseline JPEG (JFIF 1.01, colours at full resolution). 3000 by 2000 pixels take a fraction of a
/// second and about 200 kilobytes.
[[nodiscard]] QByteArray sampleJpeg(quint64 seed, int width, int height);
