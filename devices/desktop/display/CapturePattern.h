#pragma once

#include <cstdint>
#include <string>

namespace quiravent::desktop {

/// Where pictures of the screen are written: a path whose last part may hold %d, or %06d for six
/// digits (1 to 9) with zeros in front, which stands for the number of the frame; %% stands for a
/// percent sign. The folders before it are taken as they are.
class CapturePattern {
  public:
    static bool isValid(const std::string& path);

    /// path: valid, or empty for no pictures.
    explicit CapturePattern(const std::string& path);

    bool isEmpty() const { return m_prefix.empty() && !m_perFrame; }

    /// One file for each frame, rather than one in all.
    bool isPerFrame() const { return m_perFrame; }

    /// The file of a frame; without a number in the pattern the same for all.
    std::string fileFor(uint64_t frame) const;

  private:
    bool parse(const std::string& path);
    bool parseNumber(const std::string& name, size_t& at);

    std::string m_prefix;  ///< folders, and the name up to the number
    std::string m_suffix;  ///< the name after the number
    bool m_perFrame = false;
    size_t m_digits = 0;
};

}  // namespace quiravent::desktop
