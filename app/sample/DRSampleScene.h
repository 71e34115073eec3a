#pragma once

#include <QtGlobal>

#include <array>
#include <span>
#include <vector>

/// A made-up landscape: a sky with a sun above ranges of hills. Equal seeds show the same landscape at every size.
class DRSampleScene {
public:
    static constexpr int kChannels = 3; ///< bytes of a pixel: red, green, blue

    /// Width and height in pixels, each at least 1.
    DRSampleScene(quint64 seed, int width, int height);

    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }

    /// Writes row `y`, from the top, into `pixels`: `width` pixels, no more.
    void paintRow(int y, std::span<quint8> pixels) const;

private:
    using Colour = std::array<float, kChannels>;
    struct Hills {
        Colour colour{};
        std::vector<float> tops; ///< of each column, in pixels from the top
    };

    [[nodiscard]] static Colour mixed(const Colour& from, const Colour& to, float share);
    [[nodiscard]] Colour pixel(int x, int y, const Colour& sky) const;

    int m_width;
    int m_height;
    Colour m_zenith{};
    Colour m_horizon{};
    Colour m_sun{};
    // In pixels.
    float m_sunX = 0;
    float m_sunY = 0;
    float m_sunRadius = 0;
    std::vector<Hills> m_hills; ///< the farthest first
};
