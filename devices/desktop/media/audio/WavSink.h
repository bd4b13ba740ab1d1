#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "media/audio/NullSink.h"
#include "support/Result.h"

namespace quiravent::desktop {

/// Writes the sound to a WAV file (16 bits, stereo, 48 kHz) in the time that it would take to be
/// heard; rests leave no gap. The file is sound after every write.
class WavSink : public AudioSink {
  public:
    /// Replaces the file; fails when it can't be written.
    static Result<std::unique_ptr<WavSink>> create(const std::string& path);

    int64_t nextHeardAt() override { return m_pace.nextHeardAt(); }
    void write(const float* samples, size_t frames) override;
    void rest() override;

  private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, CloseFile>;

    explicit WavSink(File file) : m_file(std::move(file)) {}
    void writeHeader();

    NullSink m_pace;
    File m_file;
    uint32_t m_dataBytes = 0;
    std::vector<unsigned char> m_bytes;
};

}  // namespace quiravent::desktop
