#include "television/adapter/AdapterSource.h"

#include <unistd.h>

#include <cerrno>

#include "television/TunerError.h"

namespace quiravent::desktop {

void AdapterSource::open() {
    m_sync.restart();
    m_frontEnd->tune(m_tuning);
}

TransportSource::Awaited AdapterSource::awaited() const {
    return {m_frontEnd->stream(), INT64_MAX};
}

void AdapterSource::read(PacketSink& sink, int64_t now) {
    const ssize_t count = ::read(m_frontEnd->stream(), m_block.data(), m_block.size());
    if (count > 0) {
        m_sync.add({m_block.data(), static_cast<size_t>(count)},
                   [&](const TransportPacket& packet, uint64_t) { sink.onPacket(packet, now); });
        return;
    }
    // The driver lost packets since its buffer was full; what follows is sound.
    if (count < 0 && errno == EOVERFLOW) return sink.onRestart();
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    throw TunerError::ofSystem("the television adapter is gone", count == 0 ? ENODEV : errno,
                               e_pl_dtv_error_unavailable);
}

}  // namespace quiravent::desktop
