#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace quiravent::desktop {

/// A hash with one more value in it, every bit of which spreads over all of the result: as the
/// finaliser of MurmurHash3 does.
inline uint64_t mixedHash(uint64_t hash, uint64_t value) {
    hash = (hash ^ value) * 0xFF51AFD7ED558CCDU;
    return hash ^ hash >> 33;
}

/// Of a text, by words of eight bytes; the last word overlaps the one before.
struct TextHash {
    size_t operator()(std::string_view text) const {
        uint64_t hash = text.size();
        if (text.size() < sizeof(uint64_t)) {
            uint64_t word = 0;
            if (!text.empty()) std::memcpy(&word, text.data(), text.size());
            return static_cast<size_t>(mixedHash(hash, word));
        }
        const char* const last = text.data() + text.size() - sizeof(uint64_t);
        for (const char* at = text.data(); at < last; at += sizeof(uint64_t))
            hash = mixedHash(hash, wordAt(at));
        return static_cast<size_t>(mixedHash(hash, wordAt(last)));
    }

  private:
    static uint64_t wordAt(const char* bytes) {
        uint64_t word = 0;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }
};

}  // namespace quiravent::desktop
