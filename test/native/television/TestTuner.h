#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/FileDescriptor.h"
#include "television/TestStream.h"
#include "television/Tuner.h"

namespace quiravent::test {

/// A tuner and what it reports. One at a time, since reports carry nothing of the caller's.
class TestTuner {
  public:
    explicit TestTuner(const desktop::Configuration::Television& configuration = {});

    desktop::Tuner* operator->() { return &m_tuner; }

    void select(const std::string& selector, const std::string& option = "");

    /// Waits until so many reports have come since the tuner was made; all of them. Fewer when they
    /// haven't come in fifteen seconds.
    std::vector<int> waitForReports(size_t count);
    std::vector<int> reports() const;

    /// Is called with each report, on the tuner's thread.
    void onReport(std::function<void(int)> use);

  private:
    desktop::Tuner m_tuner;
};

/// Waits until something is so; false when it isn't in fifteen seconds.
bool waitUntil(const std::function<bool()>& isSo);

/// Sends datagrams to a port of this machine, or to a group on it.
class Sender {
  public:
    Sender(const std::string& address, uint16_t port);

    /// Sends packets in datagrams of seven, after a header where one is given.
    void sendStream(const Bytes& packets, const Bytes& header = {}) const;

  private:
    desktop::FileDescriptor m_socket;
};

/// A port of this machine that nobody uses at present.
uint16_t freePort();

}  // namespace quiravent::test
