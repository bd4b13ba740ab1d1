#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "television/Section.h"
#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// Puts together the sections that the packets of one identifier carry. For one thread.
class SectionAssembler {
  public:
    using Use = std::function<void(const Section&)>;

    /// Takes the next packet and calls use for each section that it completes, whose bytes are
    /// valid during the call. isDiscontinuous: packets before this one are missing.
    void add(const TransportPacket& packet, bool isDiscontinuous, const Use& use);

    /// How many sections were left out because their checksum or length is wrong.
    uint64_t faulty() const { return m_faulty; }

  private:
    void append(ByteView bytes, const Use& use);
    void drop() { m_bytes.clear(); }

    std::vector<uint8_t> m_bytes;  ///< from the start of the section that isn't complete
    bool m_isInSync = false;       ///< the start of a section has been seen
    uint64_t m_faulty = 0;
};

}  // namespace quiravent::desktop
