#pragma once

#include <QByteArray>
#include <QDateTime>

/// The pieces that QuickTime and MP4 files are made of. See docs/formats/mp4.md.
namespace DRSampleBoxes {

inline constexpr qsizetype kHeaderSize = 8;

[[nodiscard]] QByteArray u16(int value);
[[nodiscard]] QByteArray u32(quint32 value);

/// A number with 16 bits behind the point.
[[nodiscard]] QByteArray fixed(int value);

[[nodiscard]] QByteArray zeros(qsizetype count);

/// A text with its length in front, filled up to `width` bytes.
[[nodiscard]] QByteArray pascalText(const QByteArray& text, qsizetype width);

/// A picture neither turned nor scaled.
[[nodiscard]] QByteArray identityMatrix();

/// When something was made and last changed, from 1904 to 2040.
[[nodiscard]] QByteArray dates(const QDateTime& created);

/// The language of what has or needs none.
[[nodiscard]] QByteArray english();

/// `type`: four characters.
[[nodiscard]] QByteArray box(const char* type, const QByteArray& content);

/// A box whose content begins with a version, here 0, and flags.
[[nodiscard]] QByteArray versionedBox(const char* type, const QByteArray& content, quint32 flags = 0);

/// "mvhd", for a film or sound of one track with the number 1.
[[nodiscard]] QByteArray movieHeader(const QDateTime& created, quint32 unitsPerSecond, quint32 duration);

/// "dinf": the data of a track are in this file.
[[nodiscard]] QByteArray dataInThisFile();

} // namespace DRSampleBoxes
