#include "live/LivePlayer.h"

#include <algorithm>
#include <utility>

#include "captions/captionText.h"
#include "live/VideoCaptionsOverlay.h"
#include "live/sniffStream.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

/// What is due is shown so much later, since it comes only just in time and has to be decoded.
constexpr int64_t kLatency = 100 * kMillisecond;
constexpr size_t kMaxWaiting = 256;

}  // namespace

std::shared_ptr<LivePlayer> LivePlayer::make(MediaEngine& engine, Multiplex& multiplex,
                                             const LiveStreams& streams, const Rect& bounds,
                                             std::shared_ptr<VideoOutput> output) {
    std::unique_ptr<LivePlayer> player(
        new LivePlayer(engine, multiplex, streams, bounds, std::move(output)));
    return engine.reaper().buried(std::move(player));
}

LivePlayer::LivePlayer(MediaEngine& engine, Multiplex& multiplex, const LiveStreams& streams,
                       const Rect& bounds, std::shared_ptr<VideoOutput> output)
    : m_multiplex(multiplex), m_output(std::move(output)) {
    m_wanted.streams = streams;
    m_playback = std::make_unique<Playback>(Playback::Parts{m_source, engine.mixer(), *m_output,
                                                            engine.pictures(), m_wakeup,
                                                            engine.settings().subtitleFont});
    m_playback->presenter().setBounds(bounds);
    m_thread = startThread("live-player", [this] { run(); });
}

LivePlayer::~LivePlayer() {
    m_thread.join();
    m_playback.reset();
}

template <class Change>
void LivePlayer::change(Change apply) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        apply();
    }
    m_wakeup.signal();
}

void LivePlayer::start() {
    change([this] { m_wanted.playing = true; });
}

void LivePlayer::stop() {
    change([this] { m_wanted.playing = false; });
}

void LivePlayer::setStreams(const LiveStreams& streams) {
    change([&] { m_wanted.streams = streams; });
}

void LivePlayer::setBounds(const Rect& bounds) {
    m_playback->presenter().setBounds(bounds);
    change([this] { m_redraw = true; });
}

void LivePlayer::setVolume(uint8_t percent) {
    m_playback->voice().setGain(static_cast<float>(percent) / 100);
}

void LivePlayer::setCaptions(uint16_t number) {
    change([&] { m_wanted.captions = number; });
}

LivePlayer::Captions LivePlayer::captions() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_shown;
}

void LivePlayer::close() {
    m_playback->presenter().close();
    m_playback->voice().setGain(0);
    m_source.close();
    change([this] { m_closed = true; });
}

void LivePlayer::run() {
    while (follow()) {
        for (StreamIntake::Item& item : m_intake.take()) handle(item);
        const int64_t next = m_playback->tick(clock::now());
        noteCaptions();
        m_wakeup.waitUntil(next);
    }
    m_subscription.reset();
    m_playback->setRunning(false);
}

/// Does what was asked for since; false when the player is closed.
bool LivePlayer::follow() {
    Wanted wanted;
    bool redraw = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closed) return false;
        wanted = m_wanted;
        redraw = std::exchange(m_redraw, false);
    }
    followCaptions(wanted.captions);
    followPlaying(wanted);
    if (redraw) m_playback->presenter().redraw();
    return true;
}

void LivePlayer::followPlaying(const Wanted& wanted) {
    LiveStreams streams = wanted.streams;
    streams.subtitle = m_followed.streams.subtitle;
    if (wanted.playing == m_followed.playing && streams == m_followed.streams) return;
    m_subscription.reset();
    end();
    m_followed.playing = wanted.playing;
    m_followed.streams = streams;
    m_intake.reset(streams);
    if (!wanted.playing) return;
    begin();
    m_subscription = m_multiplex.subscribe(m_intake, {pids(), streams.video});
}

std::vector<Pid> LivePlayer::pids() const {
    const LiveStreams& streams = m_followed.streams;
    return {streams.video, streams.audio, streams.clock, streams.subtitle};
}

void LivePlayer::followCaptions(uint16_t number) {
    if (number == m_followed.captions) return;
    m_followed.captions = number;
    const bool inVideo = number != kNoCaptions && number < kFirstSubtitlePid;
    m_playback->presenter().setCaptions(inVideo ? std::make_shared<VideoCaptionsOverlay>(number)
                                                : nullptr);
    const Pid pid = number >= kFirstSubtitlePid ? Pid{number} : kNullPid;
    if (pid != m_followed.streams.subtitle) {
        m_followed.streams.subtitle = pid;
        m_streams.erase(pid);
        m_source.replaceSubtitles(++m_serial, nullptr);
        m_intake.setSubtitle(pid);
        if (m_subscription) m_subscription.setPids(pids());
    }
    m_playback->presenter().redraw();
}

void LivePlayer::handle(StreamIntake::Item& item) {
    switch (item.kind) {
        case StreamIntake::Item::Kind::tuned:
            end();
            begin();
            break;
        case StreamIntake::Item::Kind::gone:
            end();
            break;
        case StreamIntake::Item::Kind::tables:
            checkTables();
            break;
        case StreamIntake::Item::Kind::unit:
            play(std::move(item.unit));
            break;
    }
}

void LivePlayer::begin() {
    const uint32_t serial = ++m_serial;
    const LiveStreams& streams = m_followed.streams;
    Playback::Start start{};
    start.serial = serial;
    start.target = clock::now() - kLatency;
    start.speed = 1;
    start.hasVideo = streams.video != kNullPid;
    start.hasAudio = streams.audio != kNullPid;
    start.live = true;
    m_playback->begin(start);
    m_source.begin(serial);
    m_playback->setRunning(true);
    m_playback->presenter().setVisible(true);
    if (m_followed.captions != kNoCaptions && m_followed.captions < kFirstSubtitlePid)
        m_playback->presenter().setCaptions(
            std::make_shared<VideoCaptionsOverlay>(m_followed.captions));
}

void LivePlayer::end() {
    m_playback->setRunning(false);
    m_playback->presenter().setVisible(false);
    m_playback->presenter().forget();
    m_source.begin(++m_serial);
    m_streams.clear();
    m_waiting.clear();
    m_timing = StreamTiming();
}

void LivePlayer::checkTables() {
    const MultiplexRef description = m_multiplex.description();
    if (!description) return;
    const bool changed = std::any_of(m_streams.begin(), m_streams.end(), [&](const auto& known) {
        const ElementaryStream* const told = description->findStream(known.first);
        return told != nullptr && told->codec != StreamCodec::other &&
               told->codec != known.second.codec;
    });
    if (!changed) return;
    end();
    begin();
}

bool LivePlayer::hasUseFor(Pid pid, TrackKind kind) const {
    const LiveStreams& streams = m_followed.streams;
    if (kind == TrackKind::video) return pid == streams.video;
    return pid == (kind == TrackKind::audio ? streams.audio : streams.subtitle);
}

StreamCodec LivePlayer::codecOf(const PesUnit& unit) const {
    const MultiplexRef description = m_multiplex.description();
    const ElementaryStream* const told = description ? description->findStream(unit.pid) : nullptr;
    if (told != nullptr && told->codec != StreamCodec::other) return told->codec;
    return sniffStream(unit.data.data(), unit.data.size());
}

LivePlayer::Stream& LivePlayer::streamOf(const PesUnit& unit) {
    Stream& stream =
        m_streams.try_emplace(unit.pid, Stream{StreamCodec::other, nullptr}).first->second;
    if (stream.codec != StreamCodec::other) return stream;
    stream.codec = codecOf(unit);
    auto parser = ElementaryStreamParser::make(unit.pid, stream.codec);
    if (!parser || !hasUseFor(unit.pid, parser->track()->kind)) return stream;
    stream.parser = std::move(parser);
    if (stream.parser->track()->kind == TrackKind::subtitle)
        m_source.replaceSubtitles(++m_serial, stream.parser->track());
    else
        m_source.addTrack(stream.parser->track());
    return stream;
}

void LivePlayer::play(PesUnit unit) {
    m_waiting.push_back(std::move(unit));
    while (!m_waiting.empty() && playNow(m_waiting.front())) m_waiting.erase(m_waiting.begin());
    if (m_waiting.size() > kMaxWaiting) m_waiting.clear();
}

bool LivePlayer::playNow(const PesUnit& unit) {
    Stream& stream = streamOf(unit);
    if (!stream.parser) return true;
    const auto times = m_timing.timesOf(unit);
    if (!times) return false;
    const TrackKind kind = stream.parser->track()->kind;
    for (PacketRef& packet : stream.parser->parse(unit, times->pts, times->dts))
        m_source.push(kind, std::move(packet));
    return true;
}

void LivePlayer::noteCaptions() {
    Captions shown;
    shown.number = m_followed.captions;
    if (shown.number != kNoCaptions) {
        for (const SubtitleCue* cue : m_playback->presenter().shownCues()) {
            for (std::string& line : captionText(*cue)) shown.lines.push_back(std::move(line));
            shown.pictures += cue->bitmaps.size();
        }
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_shown = std::move(shown);
}

}  // namespace quiravent::desktop
