#include "app/sample/DRSampleScene.h"

#include "app/sample/DRSampleRandom.h"

#include <algorithm>

namespace {

constexpr int kRanges = 4;
constexpr float kHorizonHeight = 0.42F; // of the farthest range, as a share of the picture from the top
constexpr float kGlowReach = 5.0F;      // in radii of the sun

/// The colours of a time of day.
struct Palette {
    std::array<float, 3> zenith;
    std::array<float, 3> horizon;
    std::array<float, 3> sun;
    std::array<float, 3> farHills;
    std::array<float, 3> nearHills;
};
constexpr std::array kPalettes{
    // morning, noon, evening, dusk, winter
    Palette{{112, 164, 214}, {252, 226, 200}, {255, 246, 220}, {176, 186, 200}, {52, 96, 78}},
    Palette{{38, 120, 205}, {190, 226, 246}, {255, 253, 236}, {136, 176, 190}, {40, 118, 52}},
    Palette{{70, 78, 150}, {252, 162, 96}, {255, 226, 150}, {190, 118, 120}, {62, 38, 70}},
    Palette{{18, 22, 62}, {126, 92, 148}, {250, 240, 226}, {84, 72, 124}, {14, 18, 40}},
    Palette{{134, 170, 198}, {236, 238, 242}, {255, 255, 250}, {200, 212, 224}, {84, 104, 128}},
};

float share(DRSampleRandom& random)
{
    constexpr int kSteps = 10'000;
    return static_cast<float>(random.below(kSteps)) / kSteps;
}

/// A smooth line through random heights from 0 to 1, which stand at equal distances.
class Wave {
public:
    Wave(DRSampleRandom& random, int bends) : m_heights(static_cast<std::size_t>(bends) + 2)
    {
        std::generate(m_heights.begin(), m_heights.end(), [&random] { return share(random); });
    }

    /// `position` is from 0 up to, without, 1.
    [[nodiscard]] float at(float position) const
    {
        const float scaled = position * static_cast<float>(m_heights.size() - 1);
        const auto left = std::min(static_cast<std::size_t>(scaled), m_heights.size() - 2);
        const float within = scaled - static_cast<float>(left);
        const float eased = within * within * (3 - 2 * within);
        return m_heights[left] + (m_heights[left + 1] - m_heights[left]) * eased;
    }

private:
    std::vector<float> m_heights;
};

std::vector<float> hillTops(DRSampleRandom& random, int width, int height, float nearness)
{
    const Wave large(random, 3);
    const Wave small(random, 14);
    const float base = kHorizonHeight + (1 - kHorizonHeight) * 0.85F * nearness;
    std::vector<float> tops(static_cast<std::size_t>(width));
    for (std::size_t x = 0; x < tops.size(); ++x) {
        const float position = static_cast<float>(x) / static_cast<float>(width);
        const float bump = 0.20F * large.at(position) + 0.03F * small.at(position);
        tops[x] = (base + 0.08F - bump) * static_cast<float>(height);
    }
    return tops;
}

} // namespace

DRSampleScene::DRSampleScene(quint64 seed, int width, int height) : m_width(width), m_height(height)
{
    DRSampleRandom random(seed);
    const Palette& palette = random.pick(kPalettes);
    m_zenith = palette.zenith;
    m_horizon = palette.horizon;
    m_sun = palette.sun;
    m_sunX = (0.15F + 0.7F * share(random)) * static_cast<float>(width);
    m_sunY = (0.12F + 0.25F * share(random)) * static_cast<float>(height);
    m_sunRadius = (0.04F + 0.04F * share(random)) * static_cast<float>(std::min(width, height));
    m_hills.reserve(kRanges);
    for (int range = 0; range < kRanges; ++range) {
        const float nearness = static_cast<float>(range) / (kRanges - 1);
        m_hills.push_back({.colour = mixed(palette.farHills, palette.nearHills, nearness),
                           .tops = hillTops(random, width, height, nearness)});
    }
}

void DRSampleScene::paintRow(int y, std::span<quint8> pixels) const
{
    const float depth = static_cast<float>(y) / static_cast<float>(m_height) / (kHorizonHeight + 0.1F);
    const Colour sky = mixed(m_zenith, m_horizon, std::min(depth, 1.0F));
    auto out = pixels.begin();
    for (int x = 0; x < m_width; ++x) {
        const Colour colour = pixel(x, y, sky);
        out = std::transform(colour.begin(), colour.end(), out, [](float part) { return static_cast<quint8>(part); });
    }
}

DRSampleScene::Colour DRSampleScene::mixed(const Colour& from, const Colour& to, float share)
{
    return {from[0] + (to[0] - from[0]) * share, from[1] + (to[1] - from[1]) * share,
            from[2] + (to[2] - from[2]) * share};
}

DRSampleScene::Colour DRSampleScene::pixel(int x, int y, const Colour& sky) const
{
    const auto row = static_cast<float>(y);
    const auto column = static_cast<std::size_t>(x);
    // The nearest range hides those behind; its edge is blended over one pixel with the range behind it.
    std::size_t nearest = m_hills.size();
    while (nearest > 0 && row < m_hills[nearest - 1].tops[column]) {
        --nearest;
    }
    if (nearest > 0) {
        const Hills& hills = m_hills[nearest - 1];
        const float below = row - hills.tops[column];
        // Mist gathers at the foot of each range.
        const float mist = std::min(below / static_cast<float>(m_height), 0.3F);
        const Colour shaded = mixed(hills.colour, m_horizon, mist);
        const Colour& behind = nearest > 1 ? m_hills[nearest - 2].colour : sky;
        return below < 1 ? mixed(behind, shaded, below) : shaded;
    }
    const float dx = static_cast<float>(x) - m_sunX;
    const float dy = row - m_sunY;
    const float squared = (dx * dx + dy * dy) / (m_sunRadius * m_sunRadius);
    if (squared < 1) {
        return mixed(sky, m_sun, std::min(1.0F, 0.55F + (1 - squared) * m_sunRadius / 2));
    }
    const float glow = std::max(0.0F, 1 - squared / (kGlowReach * kGlowReach));
    return mixed(sky, m_sun, 0.55F * glow * glow);
}
