#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "media/Decoder.h"
#include "media/Deinterlacer.h"
#include "media/FrameQueue.h"
#include "media/MediaErrors.h"
#include "media/PacketSource.h"

namespace quiravent::desktop {

/// Decodes the video track of a source into a queue, on a thread of its own.
class VideoDecoder {
  public:
    /// Source and queue outlive the decoder.
    VideoDecoder(PacketSource& source, FrameQueue& queue);
    /// The source and the queue must have been closed.
    ~VideoDecoder();
    VideoDecoder(const VideoDecoder&) = delete;
    VideoDecoder& operator=(const VideoDecoder&) = delete;

    /// Why nothing can be decoded; `none` as long as that isn't certain.
    MediaError error() const { return m_error; }
    uint64_t decodedFrames() const { return m_decodedFrames; }

  private:
    void run();
    void begin(const Segment& segment);
    void decode(const PacketSource::Read& read);
    void send(const AVPacket* packet);
    void sendAlone(const AVPacket* packet);
    void receive();
    void accept(VideoFrame frame);
    bool isBeforeTarget(const Packet& packet) const;
    void push(const VideoFrame& frame);
    void decodeLast();
    void finish();
    void collect(const PacketSource::Read& read);
    void playGroup();
    void fail(MediaError error);
    VideoFrame toFrame(AvFrame picture);

    PacketSource& m_source;
    FrameQueue& m_queue;
    Segment m_segment;
    TrackRef m_opened;  ///< the track that m_decoder is for
    std::unique_ptr<Decoder> m_decoder;
    uint32_t m_fruitlessPackets = 0;
    int64_t m_nextTime = 0;                 ///< of a picture without a time
    bool m_pushed = false;                  ///< a picture of this segment reached the queue
    int64_t m_seenAlone = kNoTime;          ///< time of the first picture, which comes once more
    VideoFrame m_skipped;                   ///< the last picture before the target
    std::vector<PacketRef> m_skippedGroup;  ///< what it takes to decode all up to the target
    Deinterlacer m_deinterlacer;
    std::vector<PacketRef> m_group;
    std::atomic<uint64_t> m_decodedFrames{0};
    std::atomic<MediaError> m_error{MediaError::none};
    std::thread m_thread;
};

}  // namespace quiravent::desktop
