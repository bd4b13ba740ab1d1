#include "television/Receiver.h"

#include <poll.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "support/Clock.h"
#include "support/Log.h"
#include "support/NamedThread.h"
#include "television/TunerError.h"

namespace quiravent::desktop {

namespace {

/// A source that can't be read is tried again so much later.
constexpr int64_t kOpenInterval = 500 * kMillisecond;
/// What is taken may be by the selection before, which is just about to let it go.
constexpr int64_t kGrace = 300 * kMillisecond;
constexpr int64_t kGraceInterval = 10 * kMillisecond;

/// How soon a fault that is switched is noticed while nothing comes.
constexpr int64_t kLongestWait = kSecond / 4;

/// As poll() takes it: milliseconds, rounded up.
int timeLimit(int64_t until, int64_t now) {
    const int64_t left = std::clamp(until - now, int64_t{0}, kLongestWait);
    return static_cast<int>((left + kMillisecond - 1) / kMillisecond);
}

}  // namespace

Receiver::Receiver(Wanted wanted, Multiplex& multiplex, const SignalFaults& faults, Report report)
    : m_wanted(std::move(wanted)),
      m_multiplex(multiplex),
      m_report(std::move(report)),
      m_began(clock::now()),
      m_path(faults, m_began) {
    m_bytes.reserve(kBatch);
    m_packets.reserve(kBatch);
    m_monitor.begin(m_began);
    m_thread = startThread("tuner receiver", [this] { run(); });
}

Receiver::~Receiver() {
    cancel();
    m_thread.join();
}

void Receiver::cancel() {
    m_cancelled = true;
    m_wake.wake();
}

std::unique_ptr<const ReceiverStatus> Receiver::status() const {
    auto status = std::make_unique<ReceiverStatus>();
    const std::lock_guard<std::mutex> lock(m_statusMutex);
    *status = m_status;
    return status;
}

void Receiver::run() {
    while (!m_cancelled) {
        try {
            receive();
        } catch (const std::exception& error) {
            m_isOpen = false;
            fail(e_pl_dtv_error_resource_unavailable, error.what(), clock::now());
        }
    }
}

/// Waits for what comes next, and does what is due.
void Receiver::receive() {
    if (!m_isOpen && clock::now() >= m_openAgain) tryToOpen(clock::now());
    wait();
    if (m_cancelled) return;
    m_now = clock::now();
    if (m_isOpen) readSource(m_now);
    flush();
    followSignal(m_now);
}

/// Until there is something to read, or to tell, or the receiver is to end.
void Receiver::wait() const {
    const auto awaited =
        m_isOpen ? m_wanted.source->awaited() : TransportSource::Awaited{-1, m_openAgain};
    pollfd descriptors[] = {{m_wake.descriptor(), POLLIN, 0}, {awaited.descriptor, POLLIN, 0}};
    const int64_t until = std::min(awaited.until, m_monitor.nextCheck());
    (void)::poll(descriptors, 2, timeLimit(until, clock::now()));
}

void Receiver::tryToOpen(int64_t now) {
    try {
        m_wanted.source->open();
        m_isOpen = true;
        m_monitor.begin(now);
        forgetSignal();
        const std::lock_guard<std::mutex> lock(m_statusMutex);
        m_status.failure.clear();
    } catch (const TunerError& error) {
        const bool isTaken = error.code() == e_pl_dtv_error_resource_unavailable;
        if (isTaken && now - m_began < kGrace) {
            m_openAgain = now + kGraceInterval;
        } else {
            fail(error.code(), error.what(), now);
        }
    }
}

void Receiver::readSource(int64_t now) {
    try {
        m_wanted.source->read(*this, now);
    } catch (const TunerError& error) {
        m_isOpen = false;
        fail(error.code(), error.what(), now);
    }
}

void Receiver::fail(e_pl_dtv_error code, const std::string& reason, int64_t now) {
    m_openAgain = now + kOpenInterval;
    m_monitor.onFailure(code);
    forgetSignal();
    const std::lock_guard<std::mutex> lock(m_statusMutex);
    if (std::exchange(m_status.failure, reason) != reason) log::warning(reason);
}

void Receiver::onPacket(const TransportPacket& packet, int64_t arrival) {
    if (!m_path.isOpen(m_now)) {
        m_isAfterGap = true;
        return;
    }
    if (std::exchange(m_isAfterGap, false)) m_continuity.restart();
    if (m_bytes.size() == kBatch) flush();
    auto& bytes = m_bytes.emplace_back();
    std::copy_n(packet.bytes(), bytes.size(), bytes.begin());
    m_path.damage(bytes.data(), m_now);
    take(TransportPacket(bytes.data()), arrival);
}

void Receiver::take(const TransportPacket& packet, int64_t arrival) {
    if (packet.bytes()[0] != TransportPacket::kSync || packet.isDamaged()) {
        const std::lock_guard<std::mutex> lock(m_statusMutex);
        ++m_status.statistics.damagedPackets;
        return;
    }
    const ContinuityCheck::Verdict verdict = m_continuity.check(packet);
    const bool isGap = verdict == ContinuityCheck::Verdict::gap;
    {
        const std::lock_guard<std::mutex> lock(m_statusMutex);
        m_status.statistics.count(packet, isGap);
    }
    m_monitor.onPacket(m_now);
    const bool isOfNoUse =
        verdict == ContinuityCheck::Verdict::duplicate || packet.pid() == kNullPid;
    if (isOfNoUse) return;
    const bool isDiscontinuous = isGap || verdict == ContinuityCheck::Verdict::begin;
    m_change = std::max(m_change, m_tables->add(packet, isDiscontinuous));
    m_packets.push_back({packet, arrival, isDiscontinuous, false});
}

void Receiver::onRestart() { m_continuity.restart(); }

/// Hands on what has been received since the last time.
void Receiver::flush() {
    if (m_change != ServiceTables::Change::none) publish();
    if (m_monitor.isPresent()) m_multiplex.setSignal(m_wanted.selection, true);
    if (!m_packets.empty()) m_multiplex.receive(m_wanted.selection, m_packets);
    m_packets.clear();
    m_bytes.clear();
}

void Receiver::publish() {
    const bool isOtherStreams = m_change == ServiceTables::Change::association;
    m_change = ServiceTables::Change::none;
    m_multiplex.publish(m_wanted.selection,
                        std::make_shared<MultiplexDescription>(m_tables->describe()),
                        isOtherStreams);
    const auto& program = m_wanted.program;
    const bool isMissing = program && m_tables->hasAssociation() && !m_tables->hasProgram(*program);
    if (isMissing) {
        m_monitor.onMissing(e_pl_dtv_error_service_not_found);
    } else if (program ? m_tables->hasMapOf(*program) : m_tables->isLocked()) {
        m_monitor.onLock();
    }
}

void Receiver::followSignal(int64_t now) {
    const bool wasPresent = m_monitor.isPresent();
    const auto outcome = m_monitor.check(now);
    if (wasPresent && !m_monitor.isPresent()) forgetSignal();
    measure(now);
    if (outcome) m_report(*outcome);
}

/// What was known of the signal is over; tables have to come anew.
void Receiver::forgetSignal() {
    m_multiplex.setSignal(m_wanted.selection, false);
    m_tables = std::make_unique<ServiceTables>();
    m_change = ServiceTables::Change::none;
    m_continuity.restart();
    m_measureFrom = 0;
}

void Receiver::measure(int64_t now) {
    constexpr double kBitsPerPacket = 8.0 * TransportPacket::kSize;
    const int64_t time = now - m_measureFrom;
    if (m_measureFrom != 0 && time < kSecond && m_monitor.isPresent()) return;
    auto quality = m_isOpen ? m_wanted.source->quality() : std::nullopt;
    const std::lock_guard<std::mutex> lock(m_statusMutex);
    SignalStatistics& statistics = m_status.statistics;
    const auto packets = static_cast<double>(statistics.packets - m_measuredPackets);
    const bool isMeasured = m_measureFrom != 0 && m_monitor.isPresent();
    statistics.bitRate =
        isMeasured ? packets * kBitsPerPacket * kSecond / static_cast<double>(time) : 0;
    statistics.syncLosses = m_wanted.source->syncLosses();
    statistics.faultySections = m_tables->faultySections();
    m_status.quality = quality;
    m_measureFrom = now;
    m_measuredPackets = statistics.packets;
}

}  // namespace quiravent::desktop
