#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "television/PacketSync.h"
#include "television/TransportSource.h"
#include "television/adapter/FrontEnd.h"

namespace quiravent::desktop {

/// The transport stream that a front end receives.
class AdapterSource : public TransportSource {
  public:
    AdapterSource(std::unique_ptr<FrontEnd> frontEnd, const Tuning& tuning)
        : m_frontEnd(std::move(frontEnd)), m_tuning(tuning), m_block(kBlock) {}

    void open() override;
    Awaited awaited() const override;
    void read(PacketSink& sink, int64_t now) override;
    uint64_t syncLosses() const override { return m_sync.losses(); }
    std::optional<SignalQuality> quality() override { return m_frontEnd->quality(); }

  private:
    static constexpr size_t kBlock = size_t{1024} * TransportPacket::kSize;

    const std::unique_ptr<FrontEnd> m_frontEnd;
    const Tuning m_tuning;
    std::vector<uint8_t> m_block;
    PacketSync m_sync;
};

}  // namespace quiravent::desktop
