#pragma once

#include <cstdint>

/// The number that a picture of the tests' film carries in twelve blocks along its upper edge, the
/// lowest bit first; see make-media.sh. brightnessAt(x, y): from 0 to 255.
template <class Brightness>
int filmNumber(uint32_t width, uint32_t height, Brightness brightnessAt) {
    int number = 0;
    for (uint32_t bit = 0; bit < 12; ++bit)
        if (brightnessAt(width * (2 * bit + 1) / 24, height / 24) > 128) number |= 1 << bit;
    return number;
}
