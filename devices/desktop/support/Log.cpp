#include "support/Log.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <exception>
#include <string>

namespace quiravent::desktop::log {

namespace {

std::atomic<Level> s_level{Level::warning};

const char* nameOf(Level level) { return kLevelNames.at(static_cast<size_t>(level)); }

void appendVisible(std::string& line, std::string_view message) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    for (const char character : message) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '\n') {
            line += "\\n";
        } else if (character == '\t') {
            line += "\\t";
        } else if (byte < 0x20 || byte == 0x7f) {
            line += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
        } else {
            line += character;
        }
    }
}

void writeAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
}

}  // namespace

void setLevel(Level level) noexcept { s_level.store(level, std::memory_order_relaxed); }

bool isEnabled(Level level) noexcept { return level <= s_level.load(std::memory_order_relaxed); }

void write(Level level, std::string_view message) noexcept {
    try {
        std::string line = joined("quiravent: ", nameOf(level), ": ");
        appendVisible(line, message);
        line += '\n';
        writeAll(line);
    } catch (const std::exception&) {
        // Without memory for the line there is nobody left to tell.
        writeAll("quiravent: error: out of memory\n");
    }
}

}  // namespace quiravent::desktop::log
