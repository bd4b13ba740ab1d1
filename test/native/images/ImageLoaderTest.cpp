#include "graphics/images/ImageLoader.h"

#include <gtest/gtest.h>

#include "common/TemporaryFolder.h"
#include "images/Encoders.h"

namespace quiravent::test {
namespace {

TEST(ImageLoaderTest, TellsTheFormatByContentNotByName) {
    const TemporaryFolder folder;
    desktop::SurfacePool pool(size_t{1} << 20);
    for (const Bytes& bytes : {encodePng(gradient), encodeJpeg(gradient), encodeWebp(gradient)}) {
        const auto image = desktop::loadImage(folder.write("picture.gif", bytes), pool);
        ASSERT_TRUE(image) << image.reason();
        EXPECT_LE(distance(**image, gradient), 5);
    }
    EXPECT_EQ(pool.usedBytes(), 0U);
}

TEST(ImageLoaderTest, NamesTheLocationOfWhatFails) {
    const TemporaryFolder folder;
    desktop::SurfacePool pool(size_t{1} << 20);
    Bytes half = encodePng(gradient);
    half.resize(half.size() / 2);
    const struct {
        std::string location;
        std::string start;
        std::string why;
    } kCases[] = {
        {folder.write("half", half), "cannot load image", "truncated PNG data"},
        {folder.write("text", {'h', 'i'}), "cannot load image",
         "it is none of a PNG, JPEG and WebP picture"},
        {folder.write("empty", {}), "cannot read", "it is empty"},
        {folder / "", "cannot read", "it is a directory"},
        {folder / "missing", "cannot read", "no such file"},
        {"/proc/self/mem", "cannot read", "Input/output error"},
    };
    for (const auto& expected : kCases) {
        const auto image = desktop::loadImage(expected.location, pool);
        ASSERT_FALSE(image) << expected.location;
        EXPECT_EQ(image.reason(), expected.start + " '" + expected.location + "': " + expected.why);
    }
}

}  // namespace
}  // namespace quiravent::test
