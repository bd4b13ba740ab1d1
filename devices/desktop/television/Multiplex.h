#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "television/MultiplexDescription.h"
#include "television/PacketRing.h"
#include "television/StreamListener.h"

namespace quiravent::desktop {

class Multiplex;

/// What a listener wants to hear.
struct Interest {
    /// Any order; kNullPid and repetitions are left out.
    std::vector<Pid> pids;
    /// Of a video stream, whose last key picture a replay begins with; kNullPid: no replay.
    Pid keyPid = kNullPid;
};

/// Ends with its life: after the destructor has returned, or reset(), the listener isn't called
/// any more. For one thread at a time.
class Subscription {
  public:
    Subscription() = default;
    ~Subscription() { reset(); }
    Subscription(Subscription&& other) noexcept;
    Subscription& operator=(Subscription&& other) noexcept;

    explicit operator bool() const { return m_multiplex != nullptr; }

    /// Other packet identifiers from now on, without a replay.
    void setPids(const std::vector<Pid>& pids);

    void reset();

  private:
    friend class Multiplex;
    Subscription(Multiplex& multiplex, uint64_t number)
        : m_multiplex(&multiplex), m_number(number) {}

    Multiplex* m_multiplex = nullptr;
    uint64_t m_number = 0;
};

/// The transport stream that is tuned, as those see it who play it or tell of it. It stays over
/// selections, and subscriptions with it: a subscription may be there before anything is tuned.
/// Keeps the last seconds of packets, so that who comes later needn't wait for a key picture.
///
/// Thread-safe; see StreamListener for who may call what from where.
class Multiplex {
  public:
    /// ringBytes: for the packets that are kept.
    explicit Multiplex(size_t ringBytes);

    /// Calls the listener before it returns when something is tuned: onTuned(), onSignal() if there
    /// is one, and, with a key PID of which a whole key picture is kept, the wanted packets from
    /// the last one on, as replayed ones with their own time of arrival. What follows joins that
    /// without a gap. The listener and the multiplex outlive the subscription.
    Subscription subscribe(StreamListener& listener, const Interest& interest);

    /// Null while nothing is tuned; what isn't received yet is empty.
    MultiplexRef description() const;

    // What follows is for those who receive.

    /// A selection begins, in the place of what was before. Its number goes with all that is
    /// received for it: what comes late for another selection is dropped.
    uint64_t begin();
    /// Nothing is tuned any more: listeners have been told when this returns, and aren't called any
    /// more. May be called again.
    void end();

    /// isOtherStreams: not only names and events have changed.
    void publish(uint64_t selection, MultiplexRef description, bool isOtherStreams);
    void receive(uint64_t selection, const std::vector<StreamPacket>& packets);
    void setSignal(uint64_t selection, bool isPresent);

  private:
    friend class Subscription;

    struct Subscriber {
        uint64_t number;
        StreamListener* listener;
        std::vector<Pid> pids;
    };

    void setPids(uint64_t number, const std::vector<Pid>& pids);
    void unsubscribe(uint64_t number);
    void replay(const Subscriber& subscriber, Pid keyPid) const;
    void deliver(const StreamPacket& packet) const;
    void setDescription(MultiplexRef description);
    bool isCurrent(uint64_t selection) const { return m_isTuned && selection == m_selection; }
    void reckonWanted();

    mutable std::mutex m_mutex;  ///< guards what follows, up to the blank line
    uint64_t m_selection = 0;
    bool m_isTuned = false;
    bool m_hasSignal = false;
    uint64_t m_lastSubscriber = 0;
    std::vector<Subscriber> m_subscribers;
    std::vector<bool> m_isWanted;  ///< by PID: by some subscriber
    PacketRing m_ring;

    mutable std::mutex m_descriptionMutex;  ///< taken after the other, if both are
    MultiplexRef m_description;
};

}  // namespace quiravent::desktop
