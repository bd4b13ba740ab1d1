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

/// Of a text, by words of eight bytes.
struct TextHash {
    size_t operator()(std::string_view text) const {
        uint64_t hash = text.size();
        uint64_t word = 0;
        for (; text.size() > sizeof word; text.remove_prefix(sizeof word)) {
            std::memcpy(&word, text.data(), sizeof word);
            hash = mixedHash(hash, word);
        }
        word = 0;
        if (!text.empty()) std::memcpy(&word, text.data(), text.size());
        return static_cast<size_t>(mixedHash(hash, word));
    }
};

}  // namespace quiravent::desktop
