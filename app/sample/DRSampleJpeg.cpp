#include "app/sample/DRSampleJpeg.h"

#include "app/sample/DRSampleJpegTables.h"
#include "app/sample/DRSampleScene.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <span>
#include <vector>

using namespace DRSampleJpegTables;

namespace {

using Block = std::array<float, kBlockArea>;
using Coefficients = std::array<int, kBlockArea>; ///< in the order of the file

constexpr int kSide = 8; // of a block, in pixels
constexpr std::size_t kComponents = 3;
constexpr int kStepPercent = 40; // of the suggested steps between values: finer, for pictures without visible blocks

// Markers, after 0xFF.
constexpr char kStart = '\xD8';
constexpr char kApplication = '\xE0';
constexpr char kQuantisation = '\xDB';
constexpr char kFrame = '\xC0';
constexpr char kHuffman = '\xC4';
constexpr char kScan = '\xDA';
constexpr char kEnd = '\xD9';

std::size_t index(int number)
{
    return static_cast<std::size_t>(number);
}

/// The bits of the scan, the first in the highest place of a byte.
class BitWriter {
public:
    explicit BitWriter(QByteArray& bytes) : m_bytes(bytes) {}

    void write(quint32 bits, int count)
    {
        m_pending = (m_pending << static_cast<unsigned>(count)) | bits;
        m_count += count;
        while (m_count >= 8) {
            m_count -= 8;
            writeByte(static_cast<char>((m_pending >> static_cast<unsigned>(m_count)) & 0xFFU));
        }
    }

    /// Fills the last byte with ones.
    void finish() { write(0x7F, 7); }

private:
    void writeByte(char byte)
    {
        m_bytes += byte;
        if (byte == '\xFF') {
            m_bytes += '\0'; // else a reader would take it for a marker
        }
    }

    QByteArray& m_bytes;
    quint64 m_pending = 0;
    int m_count = 0; ///< bits of `m_pending` that are not written yet, below 8 between writes
};

struct Code {
    quint32 bits = 0;
    int length = 0;
};

/// The codes of a Huffman table by symbol: within each length they count on, and the next length begins twice as high.
using Codes = std::array<Code, 256>;

Codes codesOf(const HuffmanLengths& lengths, std::span<const quint8> symbols)
{
    Codes codes{};
    quint32 bits = 0;
    auto symbol = symbols.begin();
    for (std::size_t length = 1; length <= lengths.size(); ++length) {
        for (int count = 0; count < lengths[length - 1]; ++count) {
            codes[*symbol++] = {.bits = bits++, .length = static_cast<int>(length)};
        }
        bits <<= 1U;
    }
    return codes;
}

/// The discrete cosine transform of a line of eight values that stand `step` apart, in place. The first and the last, the
/// second and the last but one ... are taken together: even frequencies see their sum, odd ones their difference.
class CosineTransform {
public:
    CosineTransform()
    {
        for (int frequency = 0; frequency < kSide; ++frequency) {
            const double scale = frequency == 0 ? std::sqrt(1.0 / kSide) : std::sqrt(2.0 / kSide);
            for (int place = 0; place < kSide / 2; ++place) {
                const double angle = (2 * place + 1) * frequency * std::numbers::pi / (2 * kSide);
                m_weights[index(frequency)][index(place)] = static_cast<float>(scale * std::cos(angle));
            }
        }
    }

    void apply(Block& block) const
    {
        for (std::size_t line = 0; line < kSide; ++line) {
            applyLine(block, line * kSide, 1);
        }
        for (std::size_t column = 0; column < kSide; ++column) {
            applyLine(block, column, kSide);
        }
    }

private:
    void applyLine(Block& block, std::size_t start, std::size_t step) const
    {
        std::array<std::array<float, kSide / 2>, 2> halves{};
        for (std::size_t place = 0; place < kSide / 2; ++place) {
            const float front = block[start + place * step];
            const float back = block[start + (kSide - 1 - place) * step];
            halves[0][place] = front + back;
            halves[1][place] = front - back;
        }
        for (std::size_t frequency = 0; frequency < kSide; ++frequency) {
            const auto& half = halves[frequency % 2];
            const auto& weights = m_weights[frequency];
            block[start + frequency * step] =
                half[0] * weights[0] + half[1] * weights[1] + half[2] * weights[2] + half[3] * weights[3];
        }
    }

    std::array<std::array<float, kSide / 2>, kSide> m_weights{};
};

/// How far apart the values of each coefficient stand, by row and column of frequencies.
QuantisationTable finer(const QuantisationTable& table)
{
    QuantisationTable steps{};
    std::transform(table.begin(), table.end(), steps.begin(),
                   [](int step) { return static_cast<quint8>(std::max(step * kStepPercent / 100, 1)); });
    return steps;
}

Coefficients quantised(const Block& block, const QuantisationTable& steps)
{
    // Makes all values positive, so that cutting off rounds to the nearest.
    constexpr int kOffset = 1 << 14;
    constexpr float kOffsetAndHalf = kOffset + 0.5F;
    Coefficients coefficients{};
    for (std::size_t place = 0; place < coefficients.size(); ++place) {
        const std::size_t from = kZigzag[place];
        const float value = block[from] / static_cast<float>(steps[from]);
        coefficients[place] = static_cast<int>(value + kOffsetAndHalf) - kOffset;
    }
    return coefficients;
}

QByteArray bytesOf(std::span<const quint8> numbers)
{
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(numbers.size()));
    std::transform(numbers.begin(), numbers.end(), std::back_inserter(bytes),
                   [](quint8 number) { return static_cast<char>(number); });
    return bytes;
}

QByteArray inFileOrder(const QuantisationTable& table)
{
    QuantisationTable ordered{};
    std::transform(kZigzag.begin(), kZigzag.end(), ordered.begin(), [&table](quint8 place) { return table[place]; });
    return bytesOf(ordered);
}

QByteArray bigEndian(quint16 number)
{
    QByteArray bytes(sizeof number, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

class Encoder {
public:
    explicit Encoder(const DRSampleScene& scene) : m_scene(scene), m_rows(rowBytes() * kSide) {}

    [[nodiscard]] QByteArray encode();

private:
    [[nodiscard]] std::size_t rowBytes() const { return index(m_scene.width()) * DRSampleScene::kChannels; }

    void writeSegment(char marker, const QByteArray& content);
    void writeHeaders();
    void writeScan();
    void loadRows(int top);
    [[nodiscard]] std::array<Block, kComponents> blocksAt(int left) const;
    void writeBlock(const Coefficients& coefficients, int& lastMean);
    void writeNumber(const Codes& codes, unsigned zerosBefore, int number);
    void writeCode(const Code& code);

    const DRSampleScene& m_scene;
    QuantisationTable m_luminanceSteps = finer(kLuminanceSteps);
    QuantisationTable m_colourSteps = finer(kColourSteps);
    Codes m_meanCodes = codesOf(kMeanLengths, kMeanSymbols);
    Codes m_detailCodes = codesOf(kDetailLengths, kDetailSymbols);
    CosineTransform m_transform;
    QByteArray m_bytes;
    BitWriter m_bits{m_bytes};
    std::vector<quint8> m_rows; ///< eight rows of the scene
};

QByteArray Encoder::encode()
{
    writeHeaders();
    writeScan();
    m_bits.finish();
    m_bytes += '\xFF';
    m_bytes += kEnd;
    return m_bytes;
}

void Encoder::writeSegment(char marker, const QByteArray& content)
{
    const auto length = static_cast<quint16>(content.size() + 2); // counts itself
    m_bytes += '\xFF';
    m_bytes += marker;
    m_bytes += bigEndian(length);
    m_bytes += content;
}

void Encoder::writeHeaders()
{
    m_bytes += '\xFF';
    m_bytes += kStart;
    // Version 1.01, one pixel as wide as high, no thumbnail.
    writeSegment(kApplication, QByteArray("JFIF\0", 5) + QByteArray::fromHex("010100000100010000"));
    writeSegment(kQuantisation, '\0' + inFileOrder(m_luminanceSteps) + '\1' + inFileOrder(m_colourSteps));
    // Eight bits; three components, each with its number, its one sample a pixel, and its quantisation table.
    writeSegment(kFrame, '\x08' + bigEndian(static_cast<quint16>(m_scene.height())) +
                             bigEndian(static_cast<quint16>(m_scene.width())) +
                             QByteArray::fromHex("03 011100 021101 031101"));
    writeSegment(kHuffman, '\x00' + bytesOf(kMeanLengths) + bytesOf(kMeanSymbols));
    writeSegment(kHuffman, '\x10' + bytesOf(kDetailLengths) + bytesOf(kDetailSymbols));
    // All components with Huffman tables 0, all coefficients at once.
    writeSegment(kScan, QByteArray::fromHex("03 0100 0200 0300 003F00"));
}

void Encoder::writeScan()
{
    std::array<int, kComponents> lastMeans{};
    for (int top = 0; top < m_scene.height(); top += kSide) {
        loadRows(top);
        for (int left = 0; left < m_scene.width(); left += kSide) {
            auto blocks = blocksAt(left);
            for (std::size_t component = 0; component < blocks.size(); ++component) {
                m_transform.apply(blocks[component]);
                const auto& steps = component == 0 ? m_luminanceSteps : m_colourSteps;
                writeBlock(quantised(blocks[component], steps), lastMeans[component]);
            }
        }
    }
}

/// Below the last row it is repeated, so that the blocks there have no edge.
void Encoder::loadRows(int top)
{
    const std::size_t stride = rowBytes();
    for (int row = 0; row < kSide; ++row) {
        const std::span all(m_rows);
        m_scene.paintRow(std::min(top + row, m_scene.height() - 1), all.subspan(index(row) * stride, stride));
    }
}

/// The pixels of the loaded rows from `left` on as luminance and colour differences around 0. Right of the last column
/// it is repeated.
std::array<Block, kComponents> Encoder::blocksAt(int left) const
{
    std::array<Block, kComponents> blocks{};
    for (int place = 0; place < kSide * kSide; ++place) {
        const int x = std::min(left + place % kSide, m_scene.width() - 1);
        const quint8* pixel = &m_rows[index(place / kSide) * rowBytes() + index(x) * DRSampleScene::kChannels];
        const auto red = static_cast<float>(pixel[0]);
        const auto green = static_cast<float>(pixel[1]);
        const auto blue = static_cast<float>(pixel[2]);
        blocks[0][index(place)] = 0.299F * red + 0.587F * green + 0.114F * blue - 128;
        blocks[1][index(place)] = -0.168736F * red - 0.331264F * green + 0.5F * blue;
        blocks[2][index(place)] = 0.5F * red - 0.418688F * green - 0.081312F * blue;
    }
    return blocks;
}

void Encoder::writeBlock(const Coefficients& coefficients, int& lastMean)
{
    writeNumber(m_meanCodes, 0, coefficients[0] - lastMean);
    lastMean = coefficients[0];
    unsigned zeros = 0;
    for (std::size_t place = 1; place < coefficients.size(); ++place) {
        if (coefficients[place] == 0) {
            ++zeros;
            continue;
        }
        for (; zeros > 15; zeros -= 16) {
            writeCode(m_detailCodes[kSixteenZeros]);
        }
        writeNumber(m_detailCodes, zeros, coefficients[place]);
        zeros = 0;
    }
    if (zeros > 0) {
        writeCode(m_detailCodes[kEndOfBlock]);
    }
}

/// A number's symbol says how many bits follow: the number itself, or for a negative one the number less one.
void Encoder::writeNumber(const Codes& codes, unsigned zerosBefore, int number)
{
    const unsigned count = std::bit_width(static_cast<unsigned>(std::abs(number)));
    writeCode(codes[zerosBefore * 16 + count]);
    const auto bits = static_cast<unsigned>(number < 0 ? number - 1 : number);
    m_bits.write(bits & ((1U << count) - 1), static_cast<int>(count));
}

void Encoder::writeCode(const Code& code)
{
    m_bits.write(code.bits, code.length);
}

} // namespace

QByteArray encodeSampleJpeg(const DRSampleScene& scene)
{
    return Encoder(scene).encode();
}
