#include "television/text/CharacterSet.h"

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace quiravent::desktop {

namespace {

constexpr char32_t kLastAscii = 0x7E;

bool isOpen(iconv_t converter) { return reinterpret_cast<intptr_t>(converter) != -1; }

void append(std::string& text, char32_t character) {
    const auto tail = [&](int shift) {
        text += static_cast<char>(0x80 | (character >> shift & 0x3F));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | character >> 6);
        tail(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0 | character >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | character >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

}  // namespace

CharacterSet::CharacterSet(const char* name) : m_converter(::iconv_open("WCHAR_T", name)) {}

CharacterSet::~CharacterSet() {
    if (isOpen(m_converter)) ::iconv_close(m_converter);
}

std::u32string CharacterSet::decode(ByteView bytes) const {
    std::u32string text;
    if (!isOpen(m_converter)) {
        for (const uint8_t byte : bytes) text += byte <= kLastAscii ? byte : kUnknownCharacter;
        return text;
    }
    std::string input(bytes.begin(), bytes.end());
    // A byte stands for two characters at most.
    std::u32string output(2 * input.size() + 1, 0);
    char* from = input.data();
    size_t left = input.size();
    auto* to = reinterpret_cast<char*>(output.data());
    size_t room = output.size() * sizeof(char32_t);
    ::iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
    while (left > 0 && ::iconv(m_converter, &from, &left, &to, &room) == static_cast<size_t>(-1)) {
        if (errno == E2BIG) break;
        if (left == 0 || room < sizeof kUnknownCharacter) break;
        std::memcpy(to, &kUnknownCharacter, sizeof kUnknownCharacter);
        to += sizeof kUnknownCharacter;
        room -= sizeof kUnknownCharacter;
        ++from;
        --left;
        ::iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
    }
    ::iconv(m_converter, nullptr, nullptr, &to, &room);
    output.resize(output.size() - room / sizeof(char32_t));
    return output;
}

std::string toUtf8(const std::u32string& text) {
    std::string result;
    for (const char32_t character : text) append(result, character);
    return result;
}

}  // namespace quiravent::desktop
