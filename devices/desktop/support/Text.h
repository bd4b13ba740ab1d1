#pragma once

#include <string>
#include <string_view>
#include <type_traits>

namespace quiravent::desktop {

namespace detail {

inline void append(std::string& text, std::string_view part) { text.append(part); }
inline void append(std::string& text, char part) { text.push_back(part); }

template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
void append(std::string& text, Number part) {
    text.append(std::to_string(part));
}

}  // namespace detail

/// The parts (texts, characters, numbers) one after the other.
template <class... Parts>
std::string joined(const Parts&... parts) {
    std::string text;
    (detail::append(text, parts), ...);
    return text;
}

/// The elements of a sequence of texts, with ", " between them.
template <class Sequence>
std::string listed(const Sequence& elements) {
    std::string text;
    for (const auto& element : elements) {
        if (!text.empty()) text += ", ";
        text += element;
    }
    return text;
}

}  // namespace quiravent::desktop
