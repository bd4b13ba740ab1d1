#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <optional>
#include <string>

#include "common/MalformedInput.h"
#include "common/processMemory.h"
#include "graphics/TestPixels.h"
#include "images/Encoders.h"

namespace quiravent::test {
namespace {

/// Bytes without which there is no picture: all, but for the checksum of a PNG's empty last chunk,
/// which its decoder does without.
size_t neededOf(const Sample& sample) {
    return sample.bytes.size() - (sample.name.find("PNG") == std::string::npos ? 0 : 4);
}

bool isValid(const desktop::Surface& surface) {
    const auto pixels = desktop::test::pixelsOf(surface);
    return std::all_of(pixels.begin(), pixels.end(), [&](uint32_t pixel) {
        return desktop::test::isPremultiplied(pixel) &&
               (!surface.isOpaque() || desktop::test::channel(pixel, 3) == 255);
    });
}

/// Decoding what is broken, with an eye on memory and on what libraries print.
class MalformedImageTest : public testing::Test {
  protected:
    void SetUp() override { testing::internal::CaptureStderr(); }
    void TearDown() override {
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(m_pool.usedBytes(), 0U);
    }

    /// The reason of the failure; empty when a valid picture came out.
    std::string failureOf(const Bytes& bytes) {
        const auto image = desktop::decodeImage(bytes.data(), bytes.size(), m_pool);
        if (!image) return image.reason().empty() ? "no reason" : image.reason();
        EXPECT_TRUE(isValid(**image));
        return {};
    }

    desktop::SurfacePool m_pool{size_t{1} << 24};
};

TEST_F(MalformedImageTest, RefusesEveryTruncationAndSurvivesChangedBytes) {
    for (const Sample& sample : samples()) {
        for (const Bytes& bytes : truncations(sample.bytes, neededOf(sample)))
            EXPECT_NE(failureOf(bytes), "") << sample.name << " of " << bytes.size() << " bytes";
        for (const size_t reach : {sample.bytes.size(), size_t{64}})
            for (const Bytes& bytes : byteFlips(sample.bytes, 300, reach)) failureOf(bytes);
    }
}

TEST_F(MalformedImageTest, RefusesAPngWithAnyByteChanged) {
    const Bytes png = encodePng(fadingGradient);
    for (size_t i = 0; i < png.size(); ++i) {
        Bytes changed = png;
        changed[i] ^= 0x10;
        EXPECT_NE(failureOf(changed), "") << "byte " << i;
    }
}

TEST_F(MalformedImageTest, RefusesWhatIsNoPicture) {
    const Bytes gif{'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0, 0, 0, ';'};
    for (const Bytes& bytes : {Bytes{}, Bytes{0x89}, gif, Bytes(1000, 0)})
        EXPECT_EQ(failureOf(bytes), "it is none of a PNG, JPEG and WebP picture");
    Bytes half = encodePng(gradient);
    half.resize(half.size() / 2);
    EXPECT_EQ(failureOf(half), "truncated PNG data");
}

uint32_t checksumOf(const uint8_t* data, size_t size) {
    return static_cast<uint32_t>(crc32(0, data, static_cast<uInt>(size)));
}

constexpr size_t kPngHeaderSize = 33;  // signature and IHDR

/// A chunk with whatever length it claims to have; its own if none is given.
Bytes pngChunk(const std::string& type, const Bytes& data, std::optional<uint32_t> length = {}) {
    Bytes chunk(4);
    putBigEndian(chunk, 0, length.value_or(static_cast<uint32_t>(data.size())));
    chunk.insert(chunk.end(), type.begin(), type.end());
    chunk.insert(chunk.end(), data.begin(), data.end());
    const uint32_t checksum = checksumOf(&chunk[4], chunk.size() - 4);
    chunk.resize(chunk.size() + 4);
    putBigEndian(chunk, chunk.size() - 4, checksum);
    return chunk;
}

Bytes joined(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// A picture with more before its pixels.
Bytes pngWith(const Bytes& chunks) {
    Bytes png = encodePng(gradient);
    png.insert(png.begin() + kPngHeaderSize, chunks.begin(), chunks.end());
    return png;
}

/// A picture of zeros instead of its pixels.
Bytes pngOfZeros(const Bytes& compressed) {
    Bytes png = encodePng(gradient);
    png.resize(kPngHeaderSize);
    return joined(joined(png, pngChunk("IDAT", compressed)), pngChunk("IEND", {}));
}

/// What inflates to so many mebibytes of zeros.
Bytes deflatedZeros(size_t mebibytes) {
    Bytes zeros(size_t{1} << 20);
    Bytes compressed((mebibytes << 11) + 1000);
    z_stream stream{};
    EXPECT_EQ(deflateInit(&stream, 9), Z_OK);
    stream.next_out = compressed.data();
    stream.avail_out = static_cast<uInt>(compressed.size());
    for (size_t left = mebibytes; left > 0; --left) {
        stream.next_in = zeros.data();
        stream.avail_in = static_cast<uInt>(zeros.size());
        EXPECT_EQ(deflate(&stream, left > 1 ? Z_NO_FLUSH : Z_FINISH),
                  left > 1 ? Z_OK : Z_STREAM_END);
    }
    compressed.resize(stream.total_out);
    deflateEnd(&stream);
    return compressed;
}

Bytes manyTexts() {
    const Bytes text = pngChunk("tEXt", {'k', 0, 'v'});
    Bytes texts;
    for (int i = 0; i < 20000; ++i) texts = joined(std::move(texts), text);
    return texts;
}

TEST_F(MalformedImageTest, TakesLittleMemoryForWhatInflatesToMuch) {
    constexpr size_t kMostKibibytes = 80 << 10;
    const Bytes zeros = deflatedZeros(256);
    const std::string beyond = "broken PNG data: reached chunk/cache limits";
    const struct {
        const char* name;
        Bytes png;
        std::string failure;
    } kCases[] = {
        {"profile", pngWith(pngChunk("iCCP", joined({'p', 0, 0}, zeros))), beyond},
        {"text", pngWith(pngChunk("zTXt", joined({'k', 0, 0}, zeros))), beyond},
        {"international text", pngWith(pngChunk("iTXt", joined({'k', 0, 1, 0, 0, 0}, zeros))),
         beyond},
        {"many texts", pngWith(manyTexts()), beyond},
        {"large text", pngWith(pngChunk("tEXt", Bytes(size_t{32} << 20, 'k'))), ""},
        {"longest chunk", pngWith(pngChunk("tEXt", {}, UINT32_MAX)),
         "broken PNG data: chunk exceeds maximum standard length"},
        {"pixels", pngOfZeros(zeros), ""},
    };
    for (const auto& expected : kCases) {
        forgetMostMemory();
        const size_t before = processMemory("VmHWM");
        EXPECT_EQ(failureOf(expected.png), expected.failure) << expected.name;
        EXPECT_LE(processMemory("VmHWM") - before, kMostKibibytes) << expected.name;
    }
}

Bytes pngOfDeclaredSize(uint32_t side) {
    Bytes png = encodePng(gradient);
    putBigEndian(png, 16, side);
    putBigEndian(png, 20, side);
    putBigEndian(png, 29, checksumOf(&png[12], 17));
    return png;
}

Bytes jpegOfDeclaredSize(uint32_t side) {
    Bytes jpeg = encodeJpeg(gradient);
    const uint8_t kFrameHeader[] = {0xFF, 0xC0};
    const auto found =
        std::search(jpeg.begin(), jpeg.end(), std::begin(kFrameHeader), std::end(kFrameHeader));
    const auto at = static_cast<size_t>(found - jpeg.begin());
    putBigEndian(jpeg, at + 5, side, 2);
    putBigEndian(jpeg, at + 7, side, 2);
    return jpeg;
}

Bytes webpOfDeclaredSize(uint32_t side) {
    return encodeWebpAnimation(gradient, 0, 0, static_cast<int>(side), static_cast<int>(side));
}

TEST_F(MalformedImageTest, RefusesWhatIsTooLargeBeforeTakingMemory) {
    for (const auto& ofSize : {pngOfDeclaredSize, jpegOfDeclaredSize, webpOfDeclaredSize}) {
        EXPECT_EQ(failureOf(ofSize(60000)),
                  "its 60000 x 60000 pixels exceed the 16384 x 16384 pixels that a picture may "
                  "have");
        EXPECT_EQ(failureOf(ofSize(10000)),
                  "the graphics memory that is left can't hold its 10000 x 10000 pixels");
    }
}

}  // namespace
}  // namespace quiravent::test
