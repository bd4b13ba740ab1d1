#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quiravent::desktop {

/// Cuts what arrives in pieces into lines, and holds no more of a line than it may have.
class LineBuffer {
  public:
    static constexpr size_t kMaxLine = 64U << 10;  ///< bytes, without the line feed

    struct Line {
        std::string text;
        bool isTooLong;  ///< then the text is empty
    };

    /// Whether there is room for more before lines are taken.
    bool hasRoom() const { return m_bytes.size() <= kMaxLine; }

    void append(std::string_view bytes) { m_bytes.append(bytes); }

    /// Nothing follows: what is there without a line feed is a line as well.
    void end() { m_ended = true; }
    bool hasEnded() const { return m_ended; }

    /// None when no line is there as a whole.
    std::optional<Line> take();

  private:
    std::optional<Line> takeRest();

    std::string m_bytes;
    bool m_skipping = false;  ///< the rest of a line that is too long
    bool m_ended = false;
};

}  // namespace quiravent::desktop
