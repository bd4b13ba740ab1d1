#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/ConnectionServer.h"
#include "common/ServerConnection.h"
#include "common/Watched.h"

namespace quiravent::test {

/// How a server misbehaves. Bytes count from the beginning of the file, whichever range is asked
/// for.
struct Misbehaviour {
    size_t goodBytes = SIZE_MAX;  ///< sent without delay
    bool thenDrops = false;       ///< the connection breaks there, and every later one is refused
    std::string status;           ///< answered to everything, as "404 Not Found"; empty: none
    bool silent = false;          ///< takes requests and answers nothing
};

/// Serves the media of the tests over HTTP(S) on the loopback interface, each connection on a
/// thread of its own, with ranges.
class MediaServer {
  public:
    explicit MediaServer(Misbehaviour misbehaviour = {});
    /// Over TLS. certificate: the name of a PEM file among the media.
    explicit MediaServer(const std::string& certificate);
    ~MediaServer();
    MediaServer(const MediaServer&) = delete;
    MediaServer& operator=(const MediaServer&) = delete;

    std::string url(const std::string& name) const;

    /// Behaves from now on; who waits for data gets them.
    void behave();

    /// Has from now on a file of that content, beside the media.
    void publish(const std::string& name, const std::string& content);

    /// Waits until somebody has been left waiting for data.
    bool waitUntilHolding() const;
    bool waitUntilRequested(const std::string& name) const;

    /// Paths that were asked for.
    std::vector<std::string> requested() const { return m_state.get().requested; }

  private:
    struct State {
        Misbehaviour misbehaviour;
        bool isClosed = false;
        bool isHolding = false;
        bool hasDropped = false;
        std::vector<std::string> requested;
        std::map<std::string, std::string> published;
    };
    void serve(int client);

    const std::unique_ptr<ServerIdentity> m_identity;  ///< null: without TLS
    Watched<State> m_state;
    // Last, so that nobody is served any more when the rest goes.
    ConnectionServer m_server{[this](int client) { serve(client); }};
};

}  // namespace quiravent::test
