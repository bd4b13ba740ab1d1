#pragma once

#include <algorithm>
#include <string_view>

namespace quiravent::desktop {

/// Order of texts in which the case of the letters A to Z makes no difference.
struct IgnoringCase {
    using is_transparent = void;

    bool operator()(std::string_view one, std::string_view other) const {
        return std::lexicographical_compare(
            one.begin(), one.end(), other.begin(), other.end(),
            [](char left, char right) { return lowered(left) < lowered(right); });
    }

  private:
    static char lowered(char character) {
        const bool isCapital = character >= 'A' && character <= 'Z';
        return isCapital ? static_cast<char>(character + ('a' - 'A')) : character;
    }
};

}  // namespace quiravent::desktop
