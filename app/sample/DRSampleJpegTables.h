#pragma once

#include <QtGlobal>

#include <array>
#include <cstddef>

/// The tables of a baseline JPEG, as ITU-T T.81 suggests them in its annex K, and the order of a block's coefficients.
namespace DRSampleJpegTables {

inline constexpr std::size_t kBlockArea = 64;

/// Step widths by row and column of frequencies.
using QuantisationTable = std::array<quint8, kBlockArea>;

/// How many codes have 1, 2 ... 16 bits.
using HuffmanLengths = std::array<quint8, 16>;

// clang-format off
inline constexpr QuantisationTable kLuminanceSteps{
    16, 11, 10, 16, 24, 40, 51, 61,
    12, 12, 14, 19, 26, 58, 60, 55,
    14, 13, 16, 24, 40, 57, 69, 56,
    14, 17, 22, 29, 51, 87, 80, 62,
    18, 22, 37, 56, 68, 109, 103, 77,
    24, 35, 55, 64, 81, 104, 113, 92,
    49, 64, 78, 87, 103, 121, 120, 101,
    72, 92, 95, 98, 112, 100, 103, 99,
};
inline constexpr QuantisationTable kColourSteps{
    17, 18, 24, 47, 99, 99, 99, 99,
    18, 21, 26, 66, 99, 99, 99, 99,
    24, 26, 56, 99, 99, 99, 99, 99,
    47, 66, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99,
};

/// Where each coefficient of the file stands in the block: diagonals, up and down by turns.
inline constexpr std::array<quint8, kBlockArea> kZigzag{
    0,  1,  8,  16, 9,  2,  3,  10, 17, 24, 32, 25, 18, 11, 4,  5,
    12, 19, 26, 33, 40, 48, 41, 34, 27, 20, 13, 6,  7,  14, 21, 28,
    35, 42, 49, 56, 57, 50, 43, 36, 29, 22, 15, 23, 30, 37, 44, 51,
    58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62, 63,
};

/// Of a block's mean value: symbols are counts of bits.
inline constexpr HuffmanLengths kMeanLengths{0, 1, 5, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0};
inline constexpr std::array<quint8, 12> kMeanSymbols{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};

/// Of the other coefficients: the high half of a symbol counts zeros, the low half bits.
inline constexpr HuffmanLengths kDetailLengths{0, 2, 1, 3, 3, 2, 4, 3, 5, 5, 4, 4, 0, 0, 1, 125};
inline constexpr std::array<quint8, 37> kFrequentDetailSymbols{
    0x01, 0x02, 0x03, 0x00, 0x04, 0x11, 0x05, 0x12, 0x21, 0x31, 0x41, 0x06, 0x13, 0x51, 0x61, 0x07, 0x22, 0x71, 0x14,
    0x32, 0x81, 0x91, 0xA1, 0x08, 0x23, 0x42, 0xB1, 0xC1, 0x15, 0x52, 0xD1, 0xF0, 0x24, 0x33, 0x62, 0x72, 0x82,
};
// clang-format on

inline constexpr quint8 kEndOfBlock = 0x00;
inline constexpr quint8 kSixteenZeros = 0xF0;
inline constexpr unsigned kMostDetailBits = 10;

/// The frequent symbols, then all others in ascending order.
constexpr std::array<quint8, 162> allDetailSymbols()
{
    std::array<quint8, 162> symbols{};
    std::array<bool, 256> isListed{};
    std::size_t count = 0;
    for (const quint8 symbol : kFrequentDetailSymbols) {
        symbols[count++] = symbol;
        isListed[symbol] = true;
    }
    for (unsigned symbol = 0; symbol < isListed.size(); ++symbol) {
        const unsigned bits = symbol % 16;
        if (!isListed[symbol] && bits >= 1 && bits <= kMostDetailBits) {
            symbols[count++] = static_cast<quint8>(symbol);
        }
    }
    return symbols;
}
inline constexpr auto kDetailSymbols = allDetailSymbols();

} // namespace DRSampleJpegTables
