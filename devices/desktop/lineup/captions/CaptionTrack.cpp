#include "lineup/captions/CaptionTrack.h"

#include <algorithm>
#include <cmath>

#include "lineup/captions/Cea608Coder.h"
#include "lineup/captions/Cea708Coder.h"
#include "lineup/captions/captionText.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr CaptionTriplet kEmptyField1{0xFC, 0x80, 0x80};
constexpr CaptionTriplet kEmptyField2{0xFD, 0x80, 0x80};
constexpr CaptionTriplet kPadding{0xFA, 0, 0};

double rateOf(const FrameRate& rate) {
    return static_cast<double>(rate.numerator) / rate.denominator;
}

/// Puts the captions of a loop into the places of one standard.
class Planner {
  public:
    Planner(CaptionCoder& coder, const FrameRate& rate, int64_t count, const Place& place)
        : m_coder(coder),
          m_pictureRate(rateOf(rate)),
          m_slotsPerPicture(coder.slotsPerPicture(m_pictureRate)),
          m_place(place),
          m_plan(static_cast<size_t>(static_cast<double>(count) * m_slotsPerPicture)) {}

    SlotPlan plan(const std::vector<Caption>& captions) {
        const std::vector<CaptionCode> codes = encode(captions);
        std::vector<size_t> shown;
        for (size_t i = 0; i < codes.size(); ++i) {
            shown.push_back(put(slotOf(captions[i].from), codes[i].show));
            const bool isReplaced = i + 1 < codes.size() && captions[i + 1].from == captions[i].to;
            if (!isReplaced) put(slotOf(captions[i].to), codes[i].hide);
        }
        size_t begin = 0;
        for (size_t i = 0; i < codes.size(); ++i) {
            if (!m_plan.putBefore(shown[i], begin, codes[i].load)) {
                refuseTime(captions[i], m_place.at(i), codes[i]);
            }
            begin = shown[i] + codes[i].show.size();
        }
        m_coder.finish(m_plan);
        return std::move(m_plan);
    }

  private:
    std::vector<CaptionCode> encode(const std::vector<Caption>& captions) {
        std::vector<CaptionCode> codes;
        for (size_t i = 0; i < captions.size(); ++i) {
            const std::vector<std::u32string> lines = linesOf(captions[i].text);
            const Place place = m_place.at(i).at("text");
            if (!fitsScreen(lines)) refuseValue(place, captions[i].text, kCaptionSize);
            std::optional<CaptionCode> code = m_coder.encode(lines);
            if (!code) {
                refuseValue(place, captions[i].text, joined("the characters of ", m_coder.name()));
            }
            codes.push_back(std::move(*code));
        }
        return codes;
    }

    /// The first place of the picture that is seen at that time, or of the next one that has one.
    size_t slotOf(int64_t milliseconds) const {
        const double picture = std::round(static_cast<double>(milliseconds) * m_pictureRate / 1000);
        return static_cast<size_t>(std::ceil(picture * m_slotsPerPicture));
    }

    /// Where the run begins: at that place, or as near to it as there is room. There always is.
    size_t put(size_t slot, const CaptionRun& run) {
        const size_t latest = m_plan.size() - std::min(run.size(), m_plan.size());
        if (const auto end = m_plan.putFrom(std::min(slot, latest), run)) return *end - run.size();
        m_plan.putBefore(m_plan.size(), 0, {run});
        return latest;
    }

    [[noreturn]] void refuseTime(const Caption& caption, const Place& place,
                                 const CaptionCode& code) const {
        size_t slots = code.show.size();
        for (const CaptionRun& run : code.load) slots += run.size();
        const double slotRate = m_pictureRate * m_slotsPerPicture;
        const double seconds = std::ceil(static_cast<double>(slots) / slotRate * 10) / 10;
        refuseValue(place.at("from"), static_cast<double>(caption.from) / 1000,
                    joined("at least ", nlohmann::json(seconds).dump(),
                           " seconds after the beginning, or after the text before is shown; ",
                           m_coder.name(), " sends this text for so long"));
    }

    CaptionCoder& m_coder;
    const double m_pictureRate;
    const double m_slotsPerPicture;
    const Place m_place;
    SlotPlan m_plan;
};

void append(std::vector<uint8_t>& data, const CaptionTriplet& triplet) {
    data.insert(data.end(), triplet.begin(), triplet.end());
}

}  // namespace

CaptionTrack::CaptionTrack(const Captions& captions, const FrameRate& rate, int64_t count,
                           const Place& place) {
    const Place texts = place.at("texts");
    Cea608Coder cea608;
    Cea708Coder cea708;
    m_slots608 = cea608.slotsPerPicture(rateOf(rate));
    m_slots708 = static_cast<size_t>(cea708.slotsPerPicture(rateOf(rate)));
    if (captions.cea608) m_cea608 = Planner(cea608, rate, count, texts).plan(captions.texts);
    if (captions.cea708) m_cea708 = Planner(cea708, rate, count, texts).plan(captions.texts);
}

std::vector<uint8_t> CaptionTrack::dataOf(int64_t picture) const {
    std::vector<uint8_t> data;
    const bool hasField1 = m_slots608 >= 1 || picture % 2 == 0;
    if (m_cea608 && hasField1) {
        const auto slot = static_cast<size_t>(static_cast<double>(picture) * m_slots608);
        append(data,
               slot < m_cea608->size() ? m_cea608->at(slot).value_or(kEmptyField1) : kEmptyField1);
    }
    if (m_cea608 && (m_slots608 >= 1 || !hasField1)) append(data, kEmptyField2);
    for (size_t i = 0; m_cea708 && i < m_slots708; ++i) {
        append(data,
               m_cea708->at(static_cast<size_t>(picture) * m_slots708 + i).value_or(kPadding));
    }
    return data;
}

}  // namespace quiravent::desktop::lineup
