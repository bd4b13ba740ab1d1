#pragma once

#include <string>

#include "support/FileDescriptor.h"
#include "television/adapter/FrontEnd.h"
#include "television/adapter/SystemCalls.h"

namespace quiravent::desktop {

/// A television adapter of this machine, by version 5 of Linux's interface for digital television:
/// /dev/dvb/adapterN with frontendM, demuxM and dvrM.
class LinuxFrontEnd : public FrontEnd {
  public:
    /// calls outlives the front end.
    LinuxFrontEnd(unsigned adapter, unsigned frontEnd, SystemCalls& calls = systemCalls());

    void tune(const Tuning& tuning) override;
    int stream() const override { return m_stream.number(); }
    SignalQuality quality() override;

  private:
    void openDevices();
    void passWholeStream();
    std::string device(const char* kind) const;

    const unsigned m_adapter;
    const unsigned m_number;
    SystemCalls& m_calls;
    FileDescriptor m_frontEnd;
    FileDescriptor m_demux;
    FileDescriptor m_stream;
};

}  // namespace quiravent::desktop
