#include "media/audio/WavSink.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "media/audio/AudioFormat.h"
#include "resources/Location.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kHeaderSize = 44;
constexpr uint32_t kBytesPerFrame = 2 * kAudioChannels;
/// The sizes in the header have 32 bits.
constexpr uint32_t kMaxDataBytes = std::numeric_limits<uint32_t>::max() - 4096;

class Header {
  public:
    void text(const char* fourLetters) {
        std::memcpy(&m_bytes[m_size], fourLetters, 4);
        m_size += 4;
    }
    void number(uint32_t value, size_t bytes) {
        for (size_t byte = 0; byte < bytes; ++byte)
            m_bytes[m_size++] = static_cast<unsigned char>(value >> (8 * byte));
    }
    const unsigned char* data() const { return m_bytes.data(); }

  private:
    std::array<unsigned char, kHeaderSize> m_bytes{};
    size_t m_size = 0;
};

}  // namespace

Result<std::unique_ptr<WavSink>> WavSink::create(const std::string& path) {
    File file(std::fopen(path.c_str(), "wb"));
    if (!file)
        return Failure{"cannot write sound to " + inQuotes(path) + ": " + std::strerror(errno)};
    std::unique_ptr<WavSink> sink(new WavSink(std::move(file)));
    sink->writeHeader();
    return sink;
}

void WavSink::writeHeader() {
    Header header;
    header.text("RIFF");
    header.number(static_cast<uint32_t>(kHeaderSize) - 8 + m_dataBytes, 4);
    header.text("WAVE");
    header.text("fmt ");
    header.number(16, 4);
    header.number(1, 2);  // PCM
    header.number(kAudioChannels, 2);
    header.number(kAudioRate, 4);
    header.number(kAudioRate * kBytesPerFrame, 4);
    header.number(kBytesPerFrame, 2);
    header.number(16, 2);
    header.text("data");
    header.number(m_dataBytes, 4);
    std::rewind(m_file.get());
    std::fwrite(header.data(), 1, kHeaderSize, m_file.get());
    std::fseek(m_file.get(), 0, SEEK_END);
    std::fflush(m_file.get());
}

void WavSink::write(const float* samples, size_t frames) {
    m_bytes.clear();
    for (size_t index = 0; index < frames * kAudioChannels; ++index) {
        const float scaled = std::clamp(samples[index], -1.0F, 1.0F) * 32767.0F;
        const auto value = static_cast<uint16_t>(static_cast<int16_t>(std::lround(scaled)));
        m_bytes.push_back(static_cast<unsigned char>(value & 0xFF));
        m_bytes.push_back(static_cast<unsigned char>(value >> 8));
    }
    if (m_dataBytes + m_bytes.size() <= kMaxDataBytes) {
        m_dataBytes +=
            static_cast<uint32_t>(std::fwrite(m_bytes.data(), 1, m_bytes.size(), m_file.get()));
        writeHeader();
    }
    m_pace.write(samples, frames);
}

void WavSink::rest() { m_pace.rest(); }

}  // namespace quiravent::desktop
