#include "Location.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quiravent::desktop {

namespace {

// The <cctype> functions depend on the locale that the process happens to have.
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isSchemeCharacter(char c) {
    return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
}

char toLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), toLower);
    return result;
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// The scheme in lower case; empty for a path.
std::string schemeOf(std::string_view text) {
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || !isLetter(text[0])) return {};
    const std::string_view scheme = text.substr(0, colon);
    if (!std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter)) return {};
    std::string name = lowered(scheme);
    const std::string_view rest = text.substr(colon + 1);
    const bool isUrl = startsWith(rest, "//") || (name == "file" && startsWith(rest, "/"));
    return isUrl ? name : std::string();
}

std::optional<unsigned> hexValue(char c) {
    if (isDigit(c)) return static_cast<unsigned>(c - '0');
    const char lower = toLower(c);
    if (lower >= 'a' && lower <= 'f') return static_cast<unsigned>(lower - 'a' + 10);
    return std::nullopt;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string result;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            result += text[at];
            continue;
        }
        if (at + 2 >= text.size()) return std::nullopt;
        const auto high = hexValue(text[at + 1]);
        const auto low = hexValue(text[at + 2]);
        if (!high || !low || (*high == 0 && *low == 0)) return std::nullopt;
        result += static_cast<char>(*high * 16 + *low);
        at += 2;
    }
    return result;
}

/// The path of the part of a `file:` URL that follows the colon.
Result<Location> fileUrlLocation(std::string_view rest) {
    rest = rest.substr(0, rest.find_first_of("?#"));
    if (startsWith(rest, "//")) {
        rest.remove_prefix(2);
        const std::string_view host = rest.substr(0, rest.find('/'));
        if (!host.empty() && lowered(host) != "localhost")
            return Failure{"a file URL can't name another host"};
        rest.remove_prefix(host.size());
    }
    if (rest.empty()) return Failure{"the file URL has no path"};
    auto path = percentDecoded(rest);
    if (!path) return Failure{"the file URL is not properly percent-encoded"};
    return Location{Location::Kind::file, std::move(*path)};
}

}  // namespace

Result<Location> parseLocation(const std::string& text) {
    if (text.empty()) return Failure{"the location is empty"};
    if (text.find('\0') != std::string::npos) return Failure{"the location contains a NUL"};
    const std::string scheme = schemeOf(text);
    if (scheme.empty()) return Location{Location::Kind::file, text};
    if (scheme == "file") return fileUrlLocation(std::string_view(text).substr(scheme.size() + 1));
    if (scheme == "http" || scheme == "https") return Location{Location::Kind::http, text};
    return Failure{"the scheme '" + scheme + "' is none of file, http and https"};
}

std::string inQuotes(const std::string& text) {
    constexpr size_t kLongest = 300;
    std::string result = "'" + text.substr(0, kLongest);
    const auto isControl = [](unsigned char c) { return c < 0x20 || c == 0x7F; };
    std::replace_if(result.begin(), result.end(), isControl, '?');
    return result + (text.size() > kLongest ? "...'" : "'");
}

}  // namespace quiravent::desktop
