#include "television/SelectionOptions.h"

#include <algorithm>
#include <charconv>

#include "resources/Location.h"
#include "support/Text.h"
#include "television/TunerError.h"

namespace quiravent::desktop {

namespace {

constexpr const char* kSeparators = " \t,;&";

[[noreturn]] void refuseValue(const std::string& name, const std::string& value,
                              const std::string& allowed) {
    TunerError::refuse(
        joined("the option ", name, " is ", inQuotes(value), "; allowed: ", allowed));
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 0x20) : letter;
    });
    return text;
}

}  // namespace

void SelectionOptions::add(const std::string& text) {
    for (size_t at = text.find_first_not_of(kSeparators); at != std::string::npos;) {
        const size_t end = std::min(text.find_first_of(kSeparators, at), text.size());
        const std::string word = text.substr(at, end - at);
        const size_t equals = word.find('=');
        if (equals == 0 || equals == std::string::npos) {
            TunerError::refuse(joined("the option ", inQuotes(word), " isn't as NAME=VALUE"));
        }
        set(word.substr(0, equals), word.substr(equals + 1));
        at = text.find_first_not_of(kSeparators, end);
    }
}

void SelectionOptions::set(const std::string& name, const std::string& value) {
    m_values[lowered(name)] = value;
}

std::optional<std::string> SelectionOptions::takeText(const std::string& name) {
    m_taken.push_back(name);
    const auto found = m_values.find(name);
    if (found == m_values.end()) return std::nullopt;
    std::string value = std::move(found->second);
    m_values.erase(found);
    return value;
}

std::optional<uint64_t> SelectionOptions::takeNumber(const std::string& name, uint64_t least,
                                                     uint64_t most) {
    const auto text = takeText(name);
    if (!text) return std::nullopt;
    uint64_t number = 0;
    const char* const end = text->data() + text->size();
    const auto [rest, error] = std::from_chars(text->data(), end, number);
    const bool isNumber = error == std::errc{} && rest == end;
    if (isNumber && number >= least && number <= most) return number;
    refuseValue(name, *text, joined("a whole number from ", least, " to ", most));
}

std::optional<size_t> SelectionOptions::takeChoice(const std::string& name,
                                                   const std::vector<std::string>& choices) {
    const auto text = takeText(name);
    if (!text) return std::nullopt;
    const auto found = std::find(choices.begin(), choices.end(), lowered(*text));
    if (found == choices.end()) refuseValue(name, *text, listed(choices));
    return static_cast<size_t>(found - choices.begin());
}

void SelectionOptions::expectEmpty() const {
    if (m_values.empty()) return;
    TunerError::refuse(joined("unknown option ", inQuotes(m_values.begin()->first),
                              "; allowed here: ", listed(m_taken)));
}

}  // namespace quiravent::desktop
