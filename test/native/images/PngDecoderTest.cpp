#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "images/Encoders.h"

namespace quiravent::test {
namespace {

/// Random samples of a picture of some shape, and what the PNG standard says they mean.
class RandomPng {
  public:
    RandomPng(PngShape shape, bool withTransparency)
        : m_shape(shape), m_withTransparency(withTransparency) {
        std::mt19937 random(shape.colourType * 100U + shape.depth);
        m_rowBytes = (kWidth * channels() * shape.depth + 7) / 8;
        m_samples.resize(m_rowBytes * kHeight);
        for (uint8_t& byte : m_samples) byte = static_cast<uint8_t>(random());
        m_palette.n_entries = 1U << (shape.depth < 8 ? shape.depth : 8);
        for (auto& entry : m_palette.entries)
            entry = {static_cast<uint8_t>(random()), static_cast<uint8_t>(random()),
                     static_cast<uint8_t>(random()), 255};
        // The colour of one pixel of the picture is the transparent one.
        m_transparency.gray = static_cast<uint16_t>(sample(5, 7, 0));
        if (shape.colourType == SPNG_COLOR_TYPE_TRUECOLOR) {
            m_transparency.red = static_cast<uint16_t>(sample(5, 7, 0));
            m_transparency.green = static_cast<uint16_t>(sample(5, 7, 1));
            m_transparency.blue = static_cast<uint16_t>(sample(5, 7, 2));
        }
        m_transparency.n_type3_entries = m_palette.n_entries - 1;  // the last stays opaque
        for (auto& alpha : m_transparency.type3_alpha) alpha = static_cast<uint8_t>(random());
    }

    Bytes encoded() {
        const bool indexed = m_shape.colourType == SPNG_COLOR_TYPE_INDEXED;
        return encodePng(m_shape, m_samples, indexed ? &m_palette : nullptr,
                         m_withTransparency ? &m_transparency : nullptr);
    }

    Colour at(uint32_t x, uint32_t y) const {
        switch (m_shape.colourType) {
            case SPNG_COLOR_TYPE_INDEXED:
                return indexedAt(x, y);
            case SPNG_COLOR_TYPE_GRAYSCALE:
                return greyAt(x, y, isKeyed(x, y, 1) ? 0 : 255);
            case SPNG_COLOR_TYPE_GRAYSCALE_ALPHA:
                return greyAt(x, y, level(x, y, 1));
            case SPNG_COLOR_TYPE_TRUECOLOR:
                return colourAt(x, y, isKeyed(x, y, 3) ? 0 : 255);
            default:
                return colourAt(x, y, level(x, y, 3));
        }
    }

  private:
    uint32_t channels() const {
        switch (m_shape.colourType) {
            case SPNG_COLOR_TYPE_GRAYSCALE_ALPHA:
                return 2;
            case SPNG_COLOR_TYPE_TRUECOLOR:
                return 3;
            case SPNG_COLOR_TYPE_TRUECOLOR_ALPHA:
                return 4;
            default:
                return 1;
        }
    }

    uint32_t sample(uint32_t x, uint32_t y, uint32_t channel) const {
        const uint8_t* row = m_samples.data() + m_rowBytes * y;
        const uint32_t index = x * channels() + channel;
        if (m_shape.depth == 16) {
            uint16_t value = 0;
            std::memcpy(&value, row + size_t{index} * 2, sizeof value);
            return value;
        }
        const uint32_t bit = index * m_shape.depth;
        const uint32_t mask = (1U << m_shape.depth) - 1;
        return row[bit / 8] >> (8 - m_shape.depth - bit % 8) & mask;
    }

    int level(uint32_t x, uint32_t y, uint32_t channel) const {
        const uint32_t value = sample(x, y, channel);
        if (m_shape.depth == 16) return static_cast<int>(value >> 8);
        return static_cast<int>(value * 255 / ((1U << m_shape.depth) - 1));
    }

    bool isKeyed(uint32_t x, uint32_t y, uint32_t count) const {
        const uint16_t rgb[] = {m_transparency.red, m_transparency.green, m_transparency.blue};
        bool equal = m_withTransparency;
        for (uint32_t channel = 0; channel < count; ++channel)
            equal =
                equal && sample(x, y, channel) == (count == 1 ? m_transparency.gray : rgb[channel]);
        return equal;
    }

    Colour indexedAt(uint32_t x, uint32_t y) const {
        const uint32_t index = sample(x, y, 0);
        const spng_plte_entry& entry = m_palette.entries[index];
        const bool listed = m_withTransparency && index < m_transparency.n_type3_entries;
        return {entry.red, entry.green, entry.blue,
                listed ? m_transparency.type3_alpha[index] : 255};
    }
    Colour greyAt(uint32_t x, uint32_t y, int alpha) const {
        const int grey = level(x, y, 0);
        return {grey, grey, grey, alpha};
    }
    Colour colourAt(uint32_t x, uint32_t y, int alpha) const {
        return {level(x, y, 0), level(x, y, 1), level(x, y, 2), alpha};
    }

    PngShape m_shape;
    bool m_withTransparency;
    size_t m_rowBytes = 0;
    Bytes m_samples;
    spng_plte m_palette{};
    spng_trns m_transparency{};
};

void expectDecoded(PngShape shape, bool withTransparency) {
    SCOPED_TRACE(testing::Message()
                 << "colour type " << int{shape.colourType} << ", depth " << int{shape.depth}
                 << ", interlaced " << shape.interlaced << ", tRNS " << withTransparency);
    RandomPng png(shape, withTransparency);
    const auto surface = decoded(png.encoded());
    ASSERT_TRUE(surface);
    ASSERT_EQ(surface->width(), kWidth);
    ASSERT_EQ(surface->height(), kHeight);
    EXPECT_EQ(distance(*surface, [&png](uint32_t x, uint32_t y) { return png.at(x, y); }), 0);
    const bool hasAlpha = (shape.colourType & 4) != 0;
    EXPECT_EQ(surface->isOpaque(), !hasAlpha && !withTransparency);
}

TEST(PngDecoderTest, DecodesEveryColourTypeAndDepth) {
    const struct {
        uint8_t colourType;
        std::vector<uint8_t> depths;
    } kTypes[] = {
        {SPNG_COLOR_TYPE_GRAYSCALE, {1, 2, 4, 8, 16}}, {SPNG_COLOR_TYPE_TRUECOLOR, {8, 16}},
        {SPNG_COLOR_TYPE_INDEXED, {1, 2, 4, 8}},       {SPNG_COLOR_TYPE_GRAYSCALE_ALPHA, {8, 16}},
        {SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, {8, 16}},
    };
    for (const auto& type : kTypes)
        for (const uint8_t depth : type.depths)
            for (const bool interlaced : {false, true}) {
                expectDecoded({type.colourType, depth, interlaced}, false);
                const bool mayHaveTransparency = (type.colourType & 4) == 0;
                if (mayHaveTransparency) expectDecoded({type.colourType, depth, interlaced}, true);
            }
}

TEST(PngDecoderTest, NotesThatAnAlphaChannelIsFull) {
    const auto surface = decoded(encodePng(gradient));
    ASSERT_TRUE(surface);
    EXPECT_TRUE(surface->isOpaque());
    EXPECT_EQ(distance(*surface, gradient), 0);
}

}  // namespace
}  // namespace quiravent::test
