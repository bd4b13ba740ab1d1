#include "television/FileSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "resources/Location.h"
#include "support/Clock.h"
#include "support/Text.h"
#include "television/TunerError.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kBlock = 64U << 10;
/// So many bytes a file must have to be repeated: of three packets.
constexpr size_t kLeast = 3 * TransportPacket::kSize;
/// How far ahead packets are read, and how often they are given, in microseconds.
constexpr int64_t kAhead = 200000;
constexpr int64_t kInterval = 4000;
/// After so much time in which nothing ran, what wasn't given isn't made up for.
constexpr int64_t kLongestDelay = 1000000;

}  // namespace

FileSource::FileSource(FileRequest request)
    : m_request(std::move(request)), m_block(kBlock), m_pacer(m_request.bitRate) {}

void FileSource::open() {
    const std::string what = "the transport stream " + inQuotes(m_request.path) + " can't be read";
    m_file = FileDescriptor(::open(m_request.path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!m_file) throw TunerError::ofSystem(what, errno, e_pl_dtv_error_media_not_found);
    struct stat about = {};
    if (::fstat(m_file.number(), &about) != 0) {
        throw TunerError::ofSystem(what, errno, e_pl_dtv_error_data_unavailable);
    }
    if (!S_ISREG(about.st_mode)) {
        throw TunerError(e_pl_dtv_error_not_supported, what + ": it is no regular file");
    }
    m_sync.restart();
    m_pacer = ClockPacer(m_request.bitRate);
    m_pacer.begin(clock::now());
    m_roundStart = 0;
    m_isAtEnd = false;
}

TransportSource::Awaited FileSource::awaited() const {
    const auto& timed = m_pacer.timed();
    if (!timed.empty()) return {-1, std::max(timed.front().due, m_lastRead + kInterval)};
    return {-1, m_isAtEnd ? INT64_MAX : m_pacer.time() - kAhead};
}

void FileSource::read(PacketSink& sink, int64_t now) {
    m_lastRead = now;
    const auto& timed = m_pacer.timed();
    const int64_t next = timed.empty() ? m_pacer.time() : timed.front().due;
    if (next < now - kLongestDelay && !m_isAtEnd) {
        m_pacer.postpone(now - next);
        sink.onRestart();
    }
    fill(now + kAhead);
    give(sink, now);
}

/// Reads until the times are known up to that one.
void FileSource::fill(int64_t until) {
    while (!m_isAtEnd && m_pacer.time() < until) readBlock();
}

void FileSource::readBlock() {
    const ssize_t count = ::read(m_file.number(), m_block.data(), m_block.size());
    if (count < 0) {
        if (errno == EINTR) return;
        throw TunerError::ofSystem(
            "the transport stream " + inQuotes(m_request.path) + " can't be read further", errno,
            e_pl_dtv_error_data_unavailable);
    }
    if (count == 0) return turnRound();
    m_sync.add({m_block.data(), static_cast<size_t>(count)},
               [&](const TransportPacket& packet, uint64_t offset) {
                   m_pacer.add(packet, m_roundStart + offset);
               });
    m_pacer.reach(m_roundStart + m_sync.taken());
}

void FileSource::turnRound() {
    if (m_sync.taken() < kLeast) {
        throw TunerError(e_pl_dtv_error_data_unavailable,
                         joined("the transport stream ", inQuotes(m_request.path), " has ",
                                m_sync.taken(), " bytes; needed: ", kLeast));
    }
    m_roundStart += m_sync.taken();
    m_sync.restart();
    if (m_request.loops) {
        ::lseek(m_file.number(), 0, SEEK_SET);
        m_pacer.restart();
    } else {
        m_pacer.finish(m_roundStart);
        m_isAtEnd = true;
    }
}

void FileSource::give(PacketSink& sink, int64_t now) {
    auto& timed = m_pacer.timed();
    for (; !timed.empty() && timed.front().due <= now; timed.pop_front()) {
        const ClockPacer::Timed& packet = timed.front();
        if (packet.isAfterRestart) sink.onRestart();
        sink.onPacket(TransportPacket(packet.bytes.data()), packet.due);
    }
}

}  // namespace quiravent::desktop
