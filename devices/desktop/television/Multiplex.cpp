#include "television/Multiplex.h"

#include <algorithm>
#include <map>
#include <utility>

namespace quiravent::desktop {

namespace {

std::map<Pid, StreamCodec> videoStreamsOf(const MultiplexDescription& description) {
    std::map<Pid, StreamCodec> streams;
    for (const Service& service : description.services)
        for (const ElementaryStream& stream : service.streams)
            if (kindOf(stream.codec) == StreamKind::video) streams[stream.pid] = stream.codec;
    return streams;
}

/// Each once, and none that means nothing.
std::vector<Pid> cleaned(std::vector<Pid> pids) {
    std::sort(pids.begin(), pids.end());
    pids.erase(std::unique(pids.begin(), pids.end()), pids.end());
    pids.erase(std::lower_bound(pids.begin(), pids.end(), kNullPid), pids.end());
    return pids;
}

bool wants(const std::vector<Pid>& pids, Pid pid) {
    return std::find(pids.begin(), pids.end(), pid) != pids.end();
}

}  // namespace

Subscription::Subscription(Subscription&& other) noexcept
    : m_multiplex(std::exchange(other.m_multiplex, nullptr)), m_number(other.m_number) {}

Subscription& Subscription::operator=(Subscription&& other) noexcept {
    if (this != &other) {
        reset();
        m_multiplex = std::exchange(other.m_multiplex, nullptr);
        m_number = other.m_number;
    }
    return *this;
}

void Subscription::setPids(const std::vector<Pid>& pids) {
    if (m_multiplex != nullptr) m_multiplex->setPids(m_number, pids);
}

void Subscription::reset() {
    if (m_multiplex != nullptr) std::exchange(m_multiplex, nullptr)->unsubscribe(m_number);
}

Multiplex::Multiplex(size_t ringBytes) : m_isWanted(kPidCount), m_ring(ringBytes) {}

Subscription Multiplex::subscribe(StreamListener& listener, const Interest& interest) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_subscribers.push_back({++m_lastSubscriber, &listener, cleaned(interest.pids)});
    reckonWanted();
    if (m_isTuned) {
        listener.onTuned();
        if (m_hasSignal) listener.onSignal(true);
        replay(m_subscribers.back(), interest.keyPid);
    }
    return {*this, m_lastSubscriber};
}

void Multiplex::replay(const Subscriber& subscriber, Pid keyPid) const {
    const auto begin = m_ring.lastKeyPicture(keyPid);
    if (!begin) return;
    m_ring.forEachFrom(*begin, [&](const StreamPacket& packet) {
        if (wants(subscriber.pids, packet.packet.pid())) subscriber.listener->onPacket(packet);
    });
}

void Multiplex::setPids(uint64_t number, const std::vector<Pid>& pids) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (Subscriber& subscriber : m_subscribers)
        if (subscriber.number == number) subscriber.pids = cleaned(pids);
    reckonWanted();
}

void Multiplex::unsubscribe(uint64_t number) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto isMeant = [&](const Subscriber& one) { return one.number == number; };
    m_subscribers.erase(std::remove_if(m_subscribers.begin(), m_subscribers.end(), isMeant),
                        m_subscribers.end());
    reckonWanted();
}

void Multiplex::reckonWanted() {
    std::fill(m_isWanted.begin(), m_isWanted.end(), false);
    for (const Subscriber& subscriber : m_subscribers)
        for (const Pid pid : subscriber.pids) m_isWanted[pid] = true;
}

MultiplexRef Multiplex::description() const {
    const std::lock_guard<std::mutex> lock(m_descriptionMutex);
    return m_description;
}

void Multiplex::setDescription(MultiplexRef description) {
    const std::lock_guard<std::mutex> lock(m_descriptionMutex);
    m_description.swap(description);
}

uint64_t Multiplex::begin() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isTuned = true;
    m_hasSignal = false;
    m_ring.release();
    setDescription(std::make_shared<MultiplexDescription>());
    for (const Subscriber& subscriber : m_subscribers) subscriber.listener->onTuned();
    return ++m_selection;
}

void Multiplex::end() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!std::exchange(m_isTuned, false)) return;
    m_hasSignal = false;
    m_ring.release();
    setDescription(nullptr);
    for (const Subscriber& subscriber : m_subscribers) subscriber.listener->onUntuned();
}

void Multiplex::publish(uint64_t selection, MultiplexRef description, bool isOtherStreams) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!isCurrent(selection)) return;
    if (isOtherStreams) m_ring.setVideoStreams(videoStreamsOf(*description));
    setDescription(std::move(description));
    if (!isOtherStreams) return;
    for (const Subscriber& subscriber : m_subscribers) subscriber.listener->onTablesChanged();
}

void Multiplex::receive(uint64_t selection, const std::vector<StreamPacket>& packets) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!isCurrent(selection)) return;
    for (const StreamPacket& packet : packets) {
        m_ring.add(packet);
        if (m_isWanted[packet.packet.pid()]) deliver(packet);
    }
}

void Multiplex::deliver(const StreamPacket& packet) const {
    for (const Subscriber& subscriber : m_subscribers)
        if (wants(subscriber.pids, packet.packet.pid())) subscriber.listener->onPacket(packet);
}

void Multiplex::setSignal(uint64_t selection, bool isPresent) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!isCurrent(selection) || m_hasSignal == isPresent) return;
    m_hasSignal = isPresent;
    if (!isPresent) m_ring.clear();
    for (const Subscriber& subscriber : m_subscribers) subscriber.listener->onSignal(isPresent);
}

}  // namespace quiravent::desktop
