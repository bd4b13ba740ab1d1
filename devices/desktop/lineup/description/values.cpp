#include "lineup/description/values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <regex>

namespace quiravent::desktop::lineup {

namespace {

using nlohmann::json;

bool isControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7F;
}

template <class Test>
std::optional<std::string> textWithout(const json& value, Test isRefused) {
    if (!value.is_string()) return std::nullopt;
    auto text = value.get<std::string>();
    if (std::any_of(text.begin(), text.end(), isRefused)) return std::nullopt;
    return text;
}

std::optional<double> numberOf(const json& value, double least, double most) {
    if (!value.is_number()) return std::nullopt;
    const auto number = value.get<double>();
    if (!(number >= least && number <= most)) return std::nullopt;
    return number;
}

std::optional<int64_t> milliseconds(const json& seconds, double least, double most) {
    const std::optional<double> number = numberOf(seconds, least, most);
    if (!number) return std::nullopt;
    return std::llround(*number * 1000);
}

struct NamedRate {
    double name = 0;
    FrameRate rate;
};
constexpr std::array<NamedRate, 8> kRates{{{23.976, {24000, 1001}},
                                           {24, {24, 1}},
                                           {25, {25, 1}},
                                           {29.97, {30000, 1001}},
                                           {30, {30, 1}},
                                           {50, {50, 1}},
                                           {59.94, {60000, 1001}},
                                           {60, {60, 1}}}};

bool isLeapYear(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int daysOfMonth(int year, int month) {
    constexpr std::array<int, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : kDays[static_cast<size_t>(month) - 1];
}

/// Days since the beginning of 1970.
int64_t daysOf(int year, int month, int day) {
    int64_t days = day - 1;
    for (int m = 1; m < month; ++m) days += daysOfMonth(year, m);
    for (int y = 1970; y < year; ++y) days += isLeapYear(y) ? 366 : 365;
    return days;
}

constexpr int64_t kDay = 86400;
constexpr int64_t kHour = 3600;
constexpr int64_t kMinute = 60;

}  // namespace

std::optional<std::string> readText(const json& value) { return textWithout(value, isControl); }

std::optional<std::string> readName(const json& value) {
    std::optional<std::string> text = readText(value);
    return text && !text->empty() ? text : std::nullopt;
}

std::optional<std::string> readLines(const json& value) {
    std::optional<std::string> text =
        textWithout(value, [](char one) { return isControl(one) && one != '\n'; });
    return text && !text->empty() ? text : std::nullopt;
}

std::optional<std::string> readLanguage(const json& value) {
    std::optional<std::string> text =
        textWithout(value, [](char one) { return one < 'a' || one > 'z'; });
    return text && text->size() == 3 ? text : std::nullopt;
}

std::optional<std::string> readPath(const json& value) {
    std::optional<std::string> text = textWithout(value, [](char one) { return one == '\0'; });
    return text && !text->empty() ? text : std::nullopt;
}

std::optional<std::optional<uint32_t>> readColour(const json& value) {
    static const std::regex kForm("#[0-9A-Fa-f]{6}");
    if (!value.is_string()) return std::nullopt;
    const auto text = value.get<std::string>();
    if (!std::regex_match(text, kForm)) return std::nullopt;
    return std::optional(static_cast<uint32_t>(std::stoul(text.substr(1), nullptr, 16)));
}

std::optional<int64_t> readTime(const json& value) { return milliseconds(value, 0, kDay); }

std::optional<int64_t> readDuration(const json& value) { return milliseconds(value, 1, 300); }

std::optional<double> readTone(const json& value) { return numberOf(value, 20, 20000); }

std::optional<FrameRate> readFrameRate(const json& value) {
    if (!value.is_number()) return std::nullopt;
    const auto number = value.get<double>();
    for (const NamedRate& rate : kRates) {
        if (std::abs(rate.name - number) < 1e-9) return rate.rate;
    }
    return std::nullopt;
}

std::optional<int64_t> readDate(const json& value) {
    static const std::regex kForm(
        R"((\d{4})-(\d\d)-(\d\d)T(\d\d):(\d\d):(\d\d)(Z|([+-])(\d\d):(\d\d)))");
    if (!value.is_string()) return std::nullopt;
    const auto text = value.get<std::string>();
    std::smatch match;
    if (!std::regex_match(text, match, kForm)) return std::nullopt;
    const auto part = [&match](size_t index) {
        return match[index].matched ? std::stoi(match[index].str()) : 0;
    };
    const int year = part(1);
    const int month = part(2);
    const int day = part(3);
    // The tables count days with 16 bits, which end in April 2038.
    if (year < 1970 || year > 2037 || month < 1 || month > 12) return std::nullopt;
    if (day < 1 || day > daysOfMonth(year, month)) return std::nullopt;
    if (part(4) > 23 || part(5) > 59 || part(6) > 59) return std::nullopt;
    if (part(9) > 14 || part(10) > 59) return std::nullopt;
    const int64_t local =
        daysOf(year, month, day) * kDay + part(4) * kHour + part(5) * kMinute + part(6);
    const int64_t offset = part(9) * kHour + part(10) * kMinute;
    return match[8].str() == "-" ? local + offset : local - offset;
}

}  // namespace quiravent::desktop::lineup
