#pragma once

#include <cstddef>
#include <cstdint>

namespace quiravent::desktop {

/// What a pixel of source or destination is multiplied by, in the compositing algebra of
/// T. Porter and T. Duff ("Compositing Digital Images", 1984):
/// result = source * its factor + destination * its factor.
enum class Factor {
    zero,
    one,
    sourceAlpha,
    destinationAlpha,
    inverseSourceAlpha,
    inverseDestinationAlpha,
};

struct PorterDuff {
    Factor source;
    Factor destination;
};

static constexpr size_t kPorterDuffModes = 12;
static constexpr uint32_t kSourceOver = 1;
static constexpr uint32_t kAdd = 9;
static constexpr uint32_t kSource = 11;

/// By mode code. Code 0 is what an unknown name selects: source-over.
static constexpr PorterDuff kPorterDuff[kPorterDuffModes] = {
    {Factor::one, Factor::inverseSourceAlpha},                      // 0
    {Factor::one, Factor::inverseSourceAlpha},                      // 1 SRC_OVER
    {Factor::destinationAlpha, Factor::inverseSourceAlpha},         // 2 SRC_ATOP
    {Factor::destinationAlpha, Factor::zero},                       // 3 SRC_IN
    {Factor::inverseDestinationAlpha, Factor::zero},                // 4 SRC_OUT
    {Factor::inverseDestinationAlpha, Factor::one},                 // 5 DST_OVER
    {Factor::inverseDestinationAlpha, Factor::sourceAlpha},         // 6 DST_ATOP
    {Factor::zero, Factor::sourceAlpha},                            // 7 DST_IN
    {Factor::zero, Factor::inverseSourceAlpha},                     // 8 DST_OUT
    {Factor::one, Factor::one},                                     // 9 ADD, held to 255
    {Factor::inverseDestinationAlpha, Factor::inverseSourceAlpha},  // 10 XOR
    {Factor::one, Factor::zero},                                    // 11 SRC
};

/// The factor for alphas on a scale from 0 to `full`.
static constexpr uint32_t factorOf(Factor factor, uint32_t sourceAlpha, uint32_t destinationAlpha,
                                   uint32_t full) {
    switch (factor) {
        case Factor::zero:
            return 0;
        case Factor::one:
            return full;
        case Factor::sourceAlpha:
            return sourceAlpha;
        case Factor::destinationAlpha:
            return destinationAlpha;
        case Factor::inverseSourceAlpha:
            return full - sourceAlpha;
        case Factor::inverseDestinationAlpha:
            return full - destinationAlpha;
    }
    return 0;
}

/// Whether a pixel ends opaque when source and destination are each opaque (1) or transparent (0).
static constexpr bool endsOpaque(const PorterDuff& mode, uint32_t source, uint32_t destination) {
    return factorOf(mode.source, source, destination, 1) * source +
               factorOf(mode.destination, source, destination, 1) * destination >
           0;
}

/// Whether an opaque destination stays opaque. Alpha is linear in the source's alpha there, so
/// the two ends decide for all between.
static constexpr bool keepsOpaque(const PorterDuff& mode, bool sourceOpaque) {
    return endsOpaque(mode, 1, 1) && (sourceOpaque || endsOpaque(mode, 0, 1));
}

/// Whether an opaque source makes any destination opaque.
static constexpr bool makesOpaque(const PorterDuff& mode) {
    return endsOpaque(mode, 1, 0) && endsOpaque(mode, 1, 1);
}

/// Whether a transparent source changes nothing.
static constexpr bool ignoresTransparent(const PorterDuff& mode) {
    return factorOf(mode.destination, 0, 0, 1) == 1 && factorOf(mode.destination, 0, 1, 1) == 1;
}

}  // namespace quiravent::desktop
