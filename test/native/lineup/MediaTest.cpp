#include <gtest/gtest.h>

#include <tuple>

#include "common/filmNumber.h"
#include "lineup/TestLineup.h"

namespace quiravent::desktop::lineup {
namespace {

using test::Bytes;
using test::viewOf;

std::string withMedia(const std::string& file, const std::string& service) {
    return R"({"duration":8,"services":[{"name":"A","media":")" + std::string(TEST_MEDIA) + '/' +
           file + "\"," + service + "}]}";
}

std::vector<int> numbersOf(const Bytes& video, const char* name) {
    std::vector<int> numbers;
    test::decode(video, name, TrackKind::video, [&numbers](const AVFrame& picture) {
        const auto brightnessAt = test::brightnessOf(picture);
        numbers.push_back(filmNumber(static_cast<uint32_t>(picture.width),
                                     static_cast<uint32_t>(picture.height), brightnessAt));
    });
    return numbers;
}

/// The film has 150 pictures, and begins again after them: 8 s of 25 pictures are 200 of them.
TEST(Media, AreCodedAnewOrCopiedAndBeginAgain) {
    for (const char* const copy : {"false", "true"}) {
        const Bytes bytes = test::multiplexOf(
            withMedia("film.mp4", std::string(R"("video":{"pid":500,"copy":)") + copy +
                                      R"(},"audio":[{"pid":501,"copy":)" + copy + "}]"));
        EXPECT_TRUE(inspect(viewOf(bytes)).problems.empty());
        const std::vector<int> numbers = numbersOf(test::contentOf(bytes, 500), "video.h264");
        ASSERT_NEAR(static_cast<double>(numbers.size()), 200, 3) << copy;
        for (size_t i = 0; i < numbers.size(); ++i) {
            EXPECT_EQ(numbers[i], static_cast<int>(i % 150)) << copy << i;
        }
    }
}

TEST(Media, GiveTheTrackThatIsAskedFor) {
    const Bytes bytes =
        test::multiplexOf(withMedia("film.mp4", R"("video":null,"audio":[{"pid":501,"track":2}])"));
    const std::vector<float> samples = test::soundOf(test::contentOf(bytes, 501), "sound.aac");
    EXPECT_NEAR(static_cast<double>(test::crossingsOf(samples, 0, samples.size())), 880 * 8, 60);
}

TEST(Media, AreRefusedWhenTheyCannotBeUsed) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"silent.mp4", R"("id":1)", "services[0].media is"},
        {"sound.m4a", R"("id":1)", "video track 1 that can be read; here, there are 0"},
        {"film.mp4", R"("audio":[{"track":3}])",
         "sound track 3 that can be read; here, there are 2"},
        {"random.mp4", R"("id":1)", "services[0].media is"},
        {"empty.mp4", R"("id":1)", "services[0].media is"},
        {"film.mp4", R"("video":{"copy":true,"codec":"mpeg2"})",
         "video.copy is true; allowed: false, since the medium has h264, not mpeg2video"},
        {"film.mp4", R"("audio":[{"copy":true,"codec":"mp2"}])",
         "audio[0].copy is true; allowed: false, since the medium has aac, not mp2"},
    };
    for (const auto& [file, service, expected] : cases) {
        const std::string message = test::refusalOf(withMedia(file, service));
        EXPECT_NE(message.find(expected), std::string::npos) << file << ": " << message;
    }
}

}  // namespace
}  // namespace quiravent::desktop::lineup
