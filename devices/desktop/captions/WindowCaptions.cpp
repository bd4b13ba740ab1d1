#include "captions/WindowCaptions.h"

#include <algorithm>
#include <vector>

#include "captions/ServiceText.h"
#include "media/Av.h"

namespace quiravent::desktop {

namespace {

// Codes of CEA-708, section 7.
constexpr uint8_t kBackspace = 0x08;
constexpr uint8_t kFormFeed = 0x0C;
constexpr uint8_t kCarriageReturn = 0x0D;
constexpr uint8_t kHorizontalReturn = 0x0E;
constexpr uint8_t kExtension = 0x10;
constexpr uint8_t kSetCurrentWindow = 0x80;
constexpr uint8_t kClearWindows = 0x88;
constexpr uint8_t kDisplayWindows = 0x89;
constexpr uint8_t kHideWindows = 0x8A;
constexpr uint8_t kToggleWindows = 0x8B;
constexpr uint8_t kDeleteWindows = 0x8C;
constexpr uint8_t kDelay = 0x8D;
constexpr uint8_t kDelayCancel = 0x8E;
constexpr uint8_t kReset = 0x8F;
constexpr uint8_t kSetPenColor = 0x91;
constexpr uint8_t kSetPenLocation = 0x92;
constexpr uint8_t kSetWindowAttributes = 0x97;
constexpr uint8_t kDefineWindow = 0x98;

constexpr size_t kMaxWaiting = 128;  // bytes that a receiver holds back during a delay
constexpr size_t kIncomplete = 0;
constexpr int64_t kDelayUnit = 100 * kMillisecond;

/// Bytes of the commands 0x80 to 0x9F, with the command itself.
constexpr std::array<uint8_t, 32> kCommandLengths{1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 1, 1,
                                                  3, 4, 3, 1, 1, 1, 1, 5, 7, 7, 7, 7, 7, 7, 7, 7};

bool isCharacter(uint8_t code) { return (code & 0x60) != 0; }

/// A colour of two bits for each of red, green and blue, and its opacity: solid, flashing (which
/// is shown as solid), translucent, transparent.
Color toColor(uint8_t color, unsigned opacity) {
    constexpr std::array<uint8_t, 4> kAlphas{255, 255, 128, 0};
    const auto level = [](unsigned bits) { return static_cast<uint8_t>((bits & 3) * 85); };
    return {level(color >> 4U), level(color >> 2U), level(color), kAlphas.at(opacity & 3)};
}

}  // namespace

void WindowCaptions::accept(const uint8_t* bytes, size_t count, int64_t pts) {
    m_bytes.insert(m_bytes.end(), bytes, bytes + count);
    if (isDelayed(pts)) cutDelay();
    interpret(pts);
}

void WindowCaptions::advance(int64_t pts) {
    if (!m_bytes.empty()) interpret(pts);
}

void WindowCaptions::reset() { *this = WindowCaptions(); }

/// A delay ends early when it is cancelled, when the service is reset, or when no more can wait.
void WindowCaptions::cutDelay() {
    const auto ends = [](uint8_t code) { return code == kDelayCancel || code == kReset; };
    size_t at = 0;
    for (size_t length = 0; at < m_bytes.size(); at += length) {
        if (ends(m_bytes[at])) break;
        length = lengthOf(at);
        if (length == kIncomplete) return;
    }
    if (at < m_bytes.size() || m_bytes.size() >= kMaxWaiting) m_delayedUntil = INT64_MIN;
}

/// Bytes of the code at an index, or kIncomplete when not all of them are there.
size_t WindowCaptions::lengthOf(size_t at) const {
    const auto there = [&](size_t length) {
        return at + length <= m_bytes.size() ? length : kIncomplete;
    };
    const uint8_t code = m_bytes[at];
    if (code == kExtension) {
        if (at + 1 >= m_bytes.size()) return kIncomplete;
        const uint8_t second = m_bytes[at + 1];
        if (second < 0x20) return there(2 + second / 8U);
        if (second < 0x80 || second >= 0xA0) return there(2);
        if (second < 0x90) return there(second < 0x88 ? 6 : 7);
        if (at + 2 >= m_bytes.size()) return kIncomplete;
        return there(3U + (m_bytes[at + 2] & 0x3FU));
    }
    if (code < 0x10) return 1;
    if (code < 0x20) return there(code < 0x18 ? 2 : 3);
    if (code >= 0x80 && code < 0xA0) return there(kCommandLengths.at(code - 0x80U));
    return 1;
}

void WindowCaptions::interpret(int64_t pts) {
    bool changed = false;
    while (!m_bytes.empty() && !isDelayed(pts)) {
        const size_t length = lengthOf(0);
        if (length == kIncomplete) break;
        execute(pts);
        changed = true;
        m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(
                                                             std::min(length, m_bytes.size())));
    }
    if (changed) show(pts);
}

void WindowCaptions::execute(int64_t pts) {
    const uint8_t code = m_bytes[0];
    if (code == kExtension)
        extended(m_bytes[1]);
    else if (isCharacter(code))
        current().write(serviceCharacter(code));
    else if (code < 0x80)
        control(code);
    else
        command(code, pts);
}

void WindowCaptions::extended(uint8_t code) {
    if (isCharacter(code)) current().write(extendedServiceCharacter(code));
}

void WindowCaptions::control(uint8_t code) {
    if (code == kBackspace) current().backspace();
    if (code == kFormFeed) current().clear();
    if (code == kCarriageReturn) current().nextRow();
    if (code == kHorizontalReturn) current().clearRow();
}

void WindowCaptions::command(uint8_t code, int64_t pts) {
    if (code < kClearWindows) {
        m_current = code - kSetCurrentWindow;
    } else if (code <= kDeleteWindows) {
        onWindows(code, m_bytes[1]);
    } else if (code == kDelay) {
        m_delayedUntil = pts + m_bytes[1] * kDelayUnit;
    } else if (code == kReset) {
        for (CaptionWindow& window : m_windows) window.remove();
        m_current = 0;
    } else if (code == kSetPenColor) {
        setPenColor();
    } else if (code == kSetPenLocation) {
        current().movePen(m_bytes[1] & 0x0FU, m_bytes[2] & 0x3FU);
    } else if (code == kSetWindowAttributes) {
        setWindowAttributes();
    } else if (code >= kDefineWindow) {
        m_current = code - kDefineWindow;
        define(current());
    }
}

void WindowCaptions::onWindows(uint8_t code, uint8_t mask) {
    for (size_t index = 0; index < m_windows.size(); ++index) {
        if ((mask >> index & 1) == 0) continue;
        CaptionWindow& window = m_windows[index];
        if (code == kClearWindows) window.clear();
        if (code == kDisplayWindows) window.setVisible(true);
        if (code == kHideWindows) window.setVisible(false);
        if (code == kToggleWindows) window.setVisible(!window.isVisible());
        if (code == kDeleteWindows) window.remove();
    }
}

void WindowCaptions::define(CaptionWindow& window) {
    const auto bits = [this](size_t byte, unsigned shift, unsigned mask) {
        return static_cast<uint8_t>(m_bytes[byte] >> shift & mask);
    };
    CaptionWindow::Definition definition{};
    definition.visible = bits(1, 5, 1) != 0;
    definition.priority = bits(1, 0, 7);
    definition.relative = bits(2, 7, 1) != 0;
    definition.anchorDown = bits(2, 0, 0x7F);
    definition.anchorAcross = bits(3, 0, 0xFF);
    definition.anchorPoint = std::min<uint8_t>(bits(4, 4, 0x0F), 8);
    definition.rows =
        static_cast<uint8_t>(std::min(bits(4, 0, 0x0F) + 1U, CaptionWindow::kMaxRows));
    definition.columns =
        static_cast<uint8_t>(std::min(bits(5, 0, 0x3F) + 1U, CaptionWindow::kMaxColumns));
    definition.windowStyle = bits(6, 3, 7);
    definition.penStyle = bits(6, 0, 7);
    window.define(definition);
}

void WindowCaptions::setPenColor() {
    current().pen() = {toColor(m_bytes[1], m_bytes[1] >> 6U),
                       toColor(m_bytes[2], m_bytes[2] >> 6U)};
}

void WindowCaptions::setWindowAttributes() {
    constexpr std::array kJustifications{PlacedLine::Anchor::left, PlacedLine::Anchor::right,
                                         PlacedLine::Anchor::centre, PlacedLine::Anchor::left};
    current().setAttributes(
        {toColor(m_bytes[1], m_bytes[1] >> 6U), kJustifications.at(m_bytes[3] & 3U)});
}

void WindowCaptions::show(int64_t pts) {
    std::vector<const CaptionWindow*> visible;
    for (const CaptionWindow& window : m_windows)
        if (window.isVisible()) visible.push_back(&window);
    // The least important one first, so that the others cover it.
    std::stable_sort(visible.begin(), visible.end(), [](const auto* one, const auto* other) {
        return one->priority() > other->priority();
    });
    m_cue = SubtitleCue{};
    m_cue.begin = pts;
    m_cue.end = INT64_MAX;
    for (const CaptionWindow* window : visible) window->addTo(m_cue);
}

}  // namespace quiravent::desktop
