#pragma once

#include <string>
#include <vector>

#include "support/FileDescriptor.h"
#include "television/ClockPacer.h"
#include "television/PacketSync.h"
#include "television/TransportSource.h"

namespace quiravent::desktop {

/// Which file, and how it is played.
struct FileRequest {
    std::string path;
    bool loops = true;
    double bitRate = 10e6;  ///< where there are no clock references
};

/// A file as a live multiplex: its packets come at the times that its clock references tell. At
/// its end it begins again, with every packet in its place; only counters and clocks jump.
class FileSource : public TransportSource {
  public:
    explicit FileSource(FileRequest request);

    void open() override;
    Awaited awaited() const override;
    void read(PacketSink& sink, int64_t now) override;
    uint64_t syncLosses() const override { return m_sync.losses(); }

  private:
    void fill(int64_t until);
    void readBlock();
    void turnRound();
    void give(PacketSink& sink, int64_t now);

    const FileRequest m_request;
    FileDescriptor m_file;
    std::vector<uint8_t> m_block;
    PacketSync m_sync;
    ClockPacer m_pacer;
    uint64_t m_roundStart = 0;  ///< place of the file's beginning, this time round
    bool m_isAtEnd = false;     ///< and it doesn't begin again
    int64_t m_lastRead = 0;
};

}  // namespace quiravent::desktop
