#include "model/packet/DRTarHeader.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace {

struct Field {
    qsizetype offset;
    qsizetype size;
};

constexpr Field kName{0, 100};
constexpr Field kMode{100, 8};
constexpr Field kUser{108, 8};
constexpr Field kGroup{116, 8};
constexpr Field kSize{124, 12};
constexpr Field kTime{136, 12};
constexpr Field kChecksum{148, 8};
constexpr qsizetype kType = 156;
constexpr Field kMagic{257, 8};
constexpr Field kPrefix{345, 155};

constexpr char kRegularFile = '0';
constexpr char kExtendedHeader = 'x';

constexpr quint64 kLargestOctal = 077777777777; ///< the eleven digits of size and time

/// A path as ustar stores it: prefix, "/", name.
struct SplitPath {
    QByteArray prefix;
    QByteArray name;
};

std::optional<SplitPath> splitPath(const QByteArray& path)
{
    if (path.size() <= kName.size) {
        return SplitPath{{}, path};
    }
    const qsizetype slash = path.indexOf('/', path.size() - kName.size - 1);
    if (slash <= 0 || slash > kPrefix.size || slash + 1 == path.size()) {
        return std::nullopt;
    }
    return SplitPath{path.left(slash), path.mid(slash + 1)};
}

bool isAscii(const QByteArray& text)
{
    return std::ranges::all_of(text, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

void put(QByteArray& block, Field field, const QByteArray& text)
{
    block.replace(field.offset, text.size(), text);
}

/// Octal with leading zeros, ended by a NUL.
void putNumber(QByteArray& block, Field field, quint64 number)
{
    put(block, field, QByteArray::number(number, 8).rightJustified(field.size - 1, '0'));
}

/// The sum of all bytes, with blanks where it will stand; six digits, NUL, blank.
void putChecksum(QByteArray& block)
{
    put(block, kChecksum, QByteArray(kChecksum.size, ' '));
    const quint64 sum = std::accumulate(block.cbegin(), block.cend(), quint64{0}, [](quint64 total, char byte) {
        return total + static_cast<unsigned char>(byte);
    });
    put(block, kChecksum, QByteArray::number(sum, 8).rightJustified(6, '0') + QByteArray("\0 ", 2));
}

QByteArray ustarBlock(const SplitPath& path, char type, quint64 sizeBytes, qint64 modificationSeconds)
{
    QByteArray block(kTarBlockBytes, '\0');
    put(block, kName, path.name);
    putNumber(block, kMode, 0600);
    putNumber(block, kUser, 0);
    putNumber(block, kGroup, 0);
    putNumber(block, kSize, sizeBytes);
    putNumber(block, kTime, std::min(static_cast<quint64>(std::max<qint64>(modificationSeconds, 0)), kLargestOctal));
    block[kType] = type;
    put(block, kMagic, QByteArray("ustar\00000", kMagic.size));
    put(block, kPrefix, path.prefix);
    putChecksum(block);
    return block;
}

/// One record of an extended header: its own length in decimal, a blank, key=value, a line feed.
QByteArray extendedRecord(const QByteArray& key, const QByteArray& value)
{
    const QByteArray rest = ' ' + key + '=' + value + '\n';
    qsizetype length = rest.size();
    while (QByteArray::number(length).size() + rest.size() != length) {
        length = QByteArray::number(length).size() + rest.size();
    }
    return QByteArray::number(length) + rest;
}

/// Of the header that follows an extended one the phone's restore reads the type alone, so path and size stand here,
/// both.
QByteArray extendedHeader(const QByteArray& path, quint64 sizeBytes, qint64 modificationSeconds)
{
    QByteArray records = extendedRecord("size", QByteArray::number(sizeBytes)) + extendedRecord("path", path);
    const auto size = static_cast<quint64>(records.size());
    records.append(static_cast<qsizetype>(tarPadding(size)), '\0');
    return ustarBlock({{}, "PaxHeader"}, kExtendedHeader, size, modificationSeconds) + records;
}

} // namespace

QByteArray tarHeader(const QByteArray& path, quint64 sizeBytes, qint64 modificationSeconds)
{
    const std::optional<SplitPath> split = splitPath(path);
    if (split && isAscii(path) && sizeBytes <= kLargestOctal) {
        return ustarBlock(*split, kRegularFile, sizeBytes, modificationSeconds);
    }
    const SplitPath shown = split.value_or(SplitPath{{}, path.right(kName.size)});
    const quint64 shownSize = sizeBytes <= kLargestOctal ? sizeBytes : 0;
    return extendedHeader(path, sizeBytes, modificationSeconds) +
           ustarBlock(shown, kRegularFile, shownSize, modificationSeconds);
}
