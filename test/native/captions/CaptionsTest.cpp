// Captions as a picture's data carry them, read back as text and as places on the picture.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "captions/VideoCaptions.h"
#include "captions/captionText.h"

namespace quiravent::desktop {
namespace {

using Lines = std::vector<std::string>;
using Bytes = std::vector<uint8_t>;

constexpr int64_t kPicture = 40 * kMillisecond;

uint8_t withParity(uint8_t data) {
    return (__builtin_popcount(data) & 1) != 0 ? data : static_cast<uint8_t>(data | 0x80);
}

Bytes operator+(Bytes one, const Bytes& other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

Bytes text(const std::string& characters) { return {characters.begin(), characters.end()}; }

/// The captions of one number, as pictures bring them, one pair with each.
class Pictures {
  public:
    explicit Pictures(unsigned number) : m_captions(number) {}

    void carry(const Bytes& ccData) {
        m_captions.accept(captionPairs(ccData.data(), ccData.size()), m_pts);
        m_pts += kPicture;
    }

    /// Pairs of CEA-608, each control code twice as senders do.
    void line(unsigned field, const Bytes& bytes) {
        for (size_t at = 0; at < bytes.size(); at += 2) {
            const uint8_t second = at + 1 < bytes.size() ? bytes[at + 1] : uint8_t{0};
            const Bytes pair{static_cast<uint8_t>(0xFC | field), withParity(bytes[at]),
                             withParity(second)};
            carry(pair);
            if (bytes[at] < 0x20) carry(pair);
        }
    }

    /// A packet of CEA-708 with one block of a service.
    void service(unsigned service, const Bytes& block) {
        Bytes packet{0};
        if (service < 7)
            packet.push_back(static_cast<uint8_t>(service << 5U | block.size()));
        else
            packet = packet + Bytes{static_cast<uint8_t>(7U << 5U | block.size()),
                                    static_cast<uint8_t>(service)};
        send(packet + block);
    }

    void send(Bytes packet) {
        packet.resize((packet.size() + 1) / 2 * 2);
        packet[0] = static_cast<uint8_t>(m_sequence++ % 4 << 6U | packet.size() / 2);
        Bytes ccData;
        for (size_t at = 0; at < packet.size(); at += 2) {
            const uint8_t kind = at == 0 ? 0xFF : 0xFE;
            ccData = ccData + Bytes{kind, packet[at], packet[at + 1]};
        }
        carry(ccData);
    }
    void losePacket() { ++m_sequence; }
    void pass(int pictures) {
        while (pictures-- > 0) carry({});
    }

    Lines lines() const { return captionText(m_captions.cue()); }
    const SubtitleCue& cue() const { return m_captions.cue(); }

  private:
    VideoCaptions m_captions;
    int64_t m_pts = 0;
    unsigned m_sequence = 0;
};

// Commands of CEA-608 in channel 1 of field 1; the other three channels set bits.
const Bytes kPopOn{0x14, 0x20};
const Bytes kErase{0x14, 0x2C};
const Bytes kRow14{0x14, 0x40};
const Bytes kRow15{0x14, 0x60};
const Bytes kShow{0x14, 0x2F};

Bytes channel2(Bytes pairs) {
    for (size_t at = 0; at < pairs.size(); at += 2)
        if (pairs[at] < 0x20) pairs[at] |= 0x08;
    return pairs;
}

TEST(LineCaptions, EachChannelShowsItsOwnText) {
    const Lines linesOf[] = {{"FIRST", "ROW 2"}, {"SECOND"}, {"THIRD"}, {}};
    for (unsigned number = 1; number <= std::size(linesOf); ++number) {
        Pictures pictures(number);
        pictures.line(0, kPopOn + kRow14 + text("FIRST ") + kRow15 + text("ROW 2 ") + kShow);
        pictures.line(0, channel2(kPopOn + kRow15 + text("SECOND") + kShow));
        // Between the captions of field 2 lie extended data, here a programme's name.
        pictures.line(1, kPopOn + kRow15 + text("TH") + Bytes{0x01, 0x03} + text("NAME"));
        pictures.line(1, Bytes{0x0F, 0x10} + kPopOn + text("IRD ") + kShow);
        EXPECT_EQ(pictures.lines(), linesOf[number - 1]) << "CC" << number;
    }
}

TEST(LineCaptions, CommandsDoWhatTheyShould) {
    const Bytes popOn = kPopOn + kRow15 + text("HI");
    const Bytes newRow{0x14, 0x2D};
    const Bytes rollUp = Bytes{0x14, 0x25} + newRow + kRow15 + text("ONE ") + newRow + text("TWO ");
    const std::pair<Bytes, Lines> cases[] = {
        {popOn, {}},
        {popOn + kShow, {"HI"}},
        {popOn + kShow + kErase, {}},
        {rollUp, {"ONE", "TWO"}},
        {rollUp + newRow + text("THREE "), {"TWO", "THREE"}},
    };
    for (const auto& [bytes, lines] : cases) {
        Pictures pictures(1);
        pictures.line(0, bytes);
        EXPECT_EQ(pictures.lines(), lines);
        if (lines != Lines{"HI"}) continue;
        EXPECT_NEAR(pictures.cue().placedLines.at(0).bottom, 0.9, 0.01);
        EXPECT_NEAR(pictures.cue().placedLines.at(0).x, 0.1, 0.01);
    }
}

Bytes defineWindow(unsigned number, bool visible, unsigned rows, unsigned columns,
                   unsigned priority = 0) {
    const unsigned first = (visible ? 0x20U : 0U) | priority;
    return {static_cast<uint8_t>(0x98 + number),
            static_cast<uint8_t>(first),
            70,
            105,
            static_cast<uint8_t>(7U << 4U | (rows - 1)),
            static_cast<uint8_t>(columns - 1),
            1U << 3U | 1U};
}

TEST(WindowCaptions, CommandsDoWhatTheyShould) {
    const Bytes twoRows = defineWindow(0, true, 2, 20);
    const Bytes hidden = defineWindow(0, false, 2, 20);
    const Bytes reset{0x8F};
    const std::tuple<const char*, std::vector<Bytes>, Lines> cases[] = {
        {"text", {twoRows + text("Hello")}, {"Hello"}},
        {"hidden", {hidden + text("Hello")}, {}},
        {"displayed", {hidden + text("Hello"), {0x89, 0x01}}, {"Hello"}},
        {"hidden again", {twoRows + text("Hello"), {0x8A, 0x01}}, {}},
        {"toggled", {hidden + text("Hello"), {0x8B, 0x01}}, {"Hello"}},
        {"of another window", {twoRows + text("Hello"), {0x8A, 0x02}}, {"Hello"}},
        {"cleared", {twoRows + text("Hello"), {0x88, 0x01}}, {}},
        {"deleted", {twoRows + text("Hello"), {0x8C, 0x01}, {0x89, 0x01}}, {}},
        {"reset", {twoRows + text("Hello"), reset}, {}},
        {"two rows", {twoRows + text("one\rtwo")}, {"one", "two"}},
        {"scrolled", {twoRows + text("one\rtwo\rthree")}, {"two", "three"}},
        {"backspace", {twoRows + text("onr") + Bytes{0x08} + text("e")}, {"one"}},
        {"row erased", {twoRows + text("one\rtwo") + Bytes{0x0E} + text("2")}, {"one", "2"}},
        {"form feed", {twoRows + text("one\rtwo") + Bytes{0x0C} + text("3")}, {"3"}},
        {"pen moved",
         {twoRows + Bytes{0x92, 1, 2} + text("x") + Bytes{0x92, 0, 0} + text("y")},
         {"y", "x"}},
        {"pen beyond", {twoRows + Bytes{0x92, 15, 63} + text("z")}, {"z"}},
        {"signs",
         {twoRows + Bytes{0xE9, 0x7F, 0x10, 0x39, 0x10, 0x76, 0x10, 0xA0, 0x10, 0x5A}},
         {"é♪™⅛[CC]_"}},
        {"unknown codes",
         {twoRows + Bytes{'a', 0x11, 'X', 0x18, 'X', 'X', 0x93},
          Bytes{0x10, 0x08, 'X', 0x10, 0x1F, 'X', 'X', 'X', 0x10, 0x85, 'X', 'X', 'X', 'X', 0x10,
                0x90, 2, 'X', 'X'} +
              text("b")},
         {"ab"}},
        {"redefined", {twoRows + text("one\rtwo"), defineWindow(0, true, 2, 3)}, {"one", "two"}},
        {"two windows",
         {twoRows + text("low") + defineWindow(1, true, 1, 9) + Bytes{0x80} + text("er")},
         {"lower"}},
        {"without a window", {text("lost")}, {}},
        {"across blocks", {{0x98, 0x20, 70}, {105, 0x71, 19, 9}, text("done")}, {"done"}},
    };
    for (const auto& [what, blocks, lines] : cases) {
        Pictures pictures(1);
        for (const Bytes& block : blocks) pictures.service(1, block);
        EXPECT_EQ(pictures.lines(), lines) << what;
    }
}

TEST(WindowCaptions, ServicesAreToldApart) {
    for (const unsigned number : {1U, 2U, 6U, 7U, 15U}) {
        Pictures pictures(number);
        pictures.line(0, kPopOn + kRow15 + text("OLD ") + kShow);
        for (const unsigned service : {1U, 2U, 6U, 15U})
            pictures.service(service, defineWindow(0, true, 1, 20) + text("service") +
                                          text(std::to_string(service)));
        const Lines expected = number == 7 ? Lines{} : Lines{"service" + std::to_string(number)};
        EXPECT_EQ(pictures.lines(), expected);
    }
}

TEST(WindowCaptions, AreForgottenAfterALossAndHeldBackByADelay) {
    Pictures broken(1);
    broken.service(1, defineWindow(0, true, 1, 20) + text("half a sen"));
    broken.losePacket();
    broken.service(1, defineWindow(0, true, 1, 20) + text("new"));
    EXPECT_EQ(broken.lines(), Lines{"new"});

    const Bytes begun = defineWindow(0, true, 1, 20) + text("a") + Bytes{0x8D, 10} + text("b");
    Pictures waiting(1);
    waiting.service(1, begun);
    EXPECT_EQ(waiting.lines(), Lines{"a"});
    waiting.pass(23);
    EXPECT_EQ(waiting.lines(), Lines{"a"});
    waiting.pass(3);
    EXPECT_EQ(waiting.lines(), Lines{"ab"});

    Pictures cancelled(1);
    cancelled.service(1, begun);
    cancelled.service(1, {0x8E});
    EXPECT_EQ(cancelled.lines(), Lines{"ab"});
}

TEST(WindowCaptions, LookAndPlaceAreThoseOfTheWindow) {
    Pictures pictures(1);
    // Red on translucent blue; the window centred, its fill transparent.
    pictures.service(1, defineWindow(0, true, 2, 21) + Bytes{0x97, 0xC0, 0, 0x02, 0} +
                            Bytes{0x91, 0x30, 0x83, 0} + text("red"));
    const SubtitleCue& cue = pictures.cue();
    ASSERT_EQ(cue.placedLines.size(), 1U);
    const PlacedLine& line = cue.placedLines[0];
    EXPECT_EQ(line.anchor, PlacedLine::Anchor::centre);
    // The middle of the window's lower edge lies at row 70 of 75 and column 105 of 210.
    EXPECT_NEAR(line.x, 0.5, 0.001);
    EXPECT_NEAR(line.bottom, 0.1 + 0.8 * 70 / 75 - 0.8 / 15, 0.001);
    ASSERT_EQ(line.pieces.size(), 1U);
    EXPECT_EQ(line.pieces[0].color.red, 255);
    EXPECT_EQ(line.pieces[0].color.blue, 0);
    EXPECT_EQ(line.pieces[0].background.blue, 255);
    EXPECT_EQ(line.pieces[0].background.alpha, 128);
    EXPECT_TRUE(cue.areas.empty());
}

TEST(VideoCaptions, SurviveAnything) {
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        Pictures pictures(1 + round % 4);
        for (int picture = 0; picture < 40; ++picture) {
            Bytes bytes(random() % (picture % 2 == 0 ? 64 : 32));
            // Commands are met more often than among bytes of all values.
            for (uint8_t& byte : bytes)
                byte = static_cast<uint8_t>(random() % 3 == 0 ? 0x80 + random() % 32 : random());
            if (picture % 2 == 0)
                pictures.carry(bytes);
            else
                pictures.service(1, bytes);
        }
        for (const PlacedLine& line : pictures.cue().placedLines) {
            EXPECT_GE(line.bottom, 0);
            EXPECT_LE(line.bottom, 1.1);
        }
    }
}

}  // namespace
}  // namespace quiravent::desktop
