#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quiravent::test {

/// How a server misbehaves. Bytes count from the beginning of the file, whichever range is asked
/// for.
struct Misbehaviour {
    size_t goodBytes = SIZE_MAX;  ///< sent without delay
    bool thenDrops = false;       ///< the connection breaks there, and every later one is refused
    std::string status;           ///< answered to everything, as "404 Not Found"; empty: none
    bool silent = false;          ///< takes requests and answers nothing
};

/// Serves the media of the tests over HTTP on the loopback interface, each connection on a thread
/// of its own, with ranges.
class MediaServer {
  public:
    explicit MediaServer(Misbehaviour misbehaviour = {});
    ~MediaServer();
    MediaServer(const MediaServer&) = delete;
    MediaServer& operator=(const MediaServer&) = delete;

    std::string url(const std::string& name) const;

    /// Behaves from now on; who waits for data gets them.
    void behave();

    /// Waits until somebody has been left waiting for data.
    bool waitUntilHolding();

    /// Paths that were asked for.
    std::vector<std::string> requested() const;

  private:
    void accept();
    void serve(int client);
    void sendFile(int client, const std::string& content, size_t from);
    bool send(int client, const std::string& bytes) const;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Misbehaviour m_misbehaviour;
    bool m_closed = false;
    bool m_holding = false;
    bool m_dropped = false;
    std::vector<std::string> m_requested;
    std::vector<int> m_clients;
    std::vector<std::thread> m_threads;
    int m_listener;
    unsigned m_port = 0;
    std::thread m_acceptor;
};

}  // namespace quiravent::test
