#pragma once

#include <QByteArray>

class DRSampleScene;

/// The scene as baseline JPEG in a JFIF file: blocks of 8 by 8 pixels in luminance and two colour differences, one after
/// the other, all at full resolution, with the quantisation tables that the standard suggests (ITU-T T.81, annex K). Its
/// Huffman tables for luminance serve all three: a little larger, half the code.
[[nodiscard]] QByteArray encodeSampleJpeg(const DRSampleScene& scene);
