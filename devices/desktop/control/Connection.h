#pragma once

#include <poll.h>

#include <cstdint>
#include <optional>
#include <string>

#include "control/ControlTarget.h"
#include "control/LineBuffer.h"
#include "control/Work.h"
#include "support/FileDescriptor.h"

namespace quiravent::desktop {

/// One client of the control channel: takes its requests one after the other and answers each. What
/// it holds is bounded: while a request is under way, or answers wait to be taken, nothing is read.
/// Keys that the client holds down come up when it leaves.
class Connection {
  public:
    Connection(FileDescriptor socket, const ControlTarget& target,
               std::shared_ptr<const WakeSignal> wakeServer);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// What to wait for, and until when by Clock.h.
    pollfd awaited() const;
    int64_t again() const { return m_again; }

    /// Goes on as far as it can without waiting. events: what poll() has told.
    void serve(short events, int64_t now);

    /// Whether the client has left and everything it asked for is done.
    bool isOver() const;

  private:
    void receive();
    bool answerNext(int64_t now);
    Progress advance(int64_t now);
    void start(const LineBuffer::Line& line);
    void answer(const OrderedJson& members);
    void send();

    const FileDescriptor m_socket;
    ControlSession m_session;
    LineBuffer m_lines;
    std::string m_output;
    bool m_hungUp = false;

    // The request under way.
    std::optional<LineBuffer::Line> m_line;
    std::optional<OrderedJson> m_id;
    Work m_work;
    int64_t m_again = INT64_MAX;
};

}  // namespace quiravent::desktop
