// media_bench first|seek|thumbnail|calls FILE, or play FILE SECONDS: measures one thing about
// playing and prints its samples in milliseconds, one a line; "play" only plays. See bench/media.

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "media/Player.h"
#include "media/audio/NullSink.h"
#include "support/Clock.h"

namespace {

using namespace quiravent::desktop;

constexpr Rect kBounds{0, 0, 1280, 720};
constexpr std::chrono::seconds kPatience{30};

/// Waits for pictures, by their positions.
class Output : public VideoOutput {
  public:
    void show(const VideoPicture& picture) override {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_current = picture;
        m_shownAt = clock::now();
        m_changed.notify_all();
    }
    void hide() override {}

    /// When the first picture was shown that `isWanted`, a function of its position.
    int64_t waitFor(const std::function<bool(int64_t)>& isWanted) {
        std::unique_lock<std::mutex> lock(m_mutex);
        const auto isThere = [&] { return m_current.surface && isWanted(m_current.position); };
        if (!m_changed.wait_for(lock, kPatience, isThere)) throw std::runtime_error("no picture");
        return m_shownAt;
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    VideoPicture m_current{};
    int64_t m_shownAt = 0;
};

bool isAny(int64_t) { return true; }

/// A player of a file.
struct Bench {
    explicit Bench(MediaEngine& engine, const std::string& file)
        : player(engine, file, kBounds, output) {}

    void startPaused() {
        player.start();
        output->waitFor(isAny);
        player.pause();
    }

    std::shared_ptr<Output> output = std::make_shared<Output>();
    Player player;
};

void print(int64_t microseconds) {
    std::printf("%.3f\n", static_cast<double>(microseconds) / 1000);
}

void measureFirstPicture(MediaEngine& engine, const std::string& file) {
    for (int round = 0; round < 40; ++round) {
        const int64_t before = clock::now();
        Bench bench(engine, file);
        bench.player.start();
        print(bench.output->waitFor(isAny) - before);
        bench.player.unload();
        engine.reaper().waitUntilIdle();
    }
}

void measureSeeks(MediaEngine& engine, const std::string& file) {
    Bench bench(engine, file);
    bench.startPaused();
    const int64_t end = bench.player.times().end;
    // All over the film, and all over its groups of pictures, but not where it stands.
    for (int64_t round = 1; round <= 40; ++round) {
        const int64_t target = (round * 7919 % 100) * (end - kSecond) / 100 / 40000 * 40000;
        const int64_t before = clock::now();
        bench.player.seek(target);
        print(bench.output->waitFor([target](int64_t at) { return at == target; }) - before);
    }
}

void measureThumbnails(MediaEngine& engine, const std::string& file) {
    Bench bench(engine, file);
    SurfacePool pool(64U << 20);
    // Each second has a key picture of its own; the first one opens the medium.
    for (int64_t round = 0; round < 29; ++round) {
        const int64_t before = clock::now();
        if (!bench.player.thumbnail(round * 7919 % 29 * kSecond, 320, 180, pool))
            throw std::runtime_error("no thumbnail");
        print(clock::now() - before);
    }
}

/// How long calls take while playing; of each the 99th of a hundred.
void measureCalls(MediaEngine& engine, const std::string& file) {
    Bench bench(engine, file);
    bench.startPaused();
    Player& player = bench.player;
    double speed = 1;
    const std::vector<std::function<void()>> calls{
        [&] { player.times(); },
        [&] { player.bufferedRanges(); },
        [&] { player.tracks(TrackKind::audio); },
        [&] { player.resume(); },
        [&] { player.setVolume(50); },
        [&] { player.setBounds(kBounds); },
        [&] { player.selectTrack(TrackKind::audio, 1); },
        [&] { player.setSpeed(speed); },
        [&] { player.seek(5 * kSecond); },
        [&] { player.pause(); },
    };
    constexpr int kRounds = 300;
    for (int round = 0; round < kRounds; ++round) {
        for (const auto& call : calls) {
            const int64_t before = clock::now();
            call();
            print(clock::now() - before);
        }
    }
    const int64_t before = clock::now();
    player.unload();
    print(clock::now() - before);
}

void play(MediaEngine& engine, const std::string& file, int64_t seconds) {
    Bench bench(engine, file);
    bench.player.start();
    bench.output->waitFor([seconds](int64_t at) { return at >= seconds * kSecond; });
}

void run(const std::string& what, const std::string& file, int64_t seconds) {
    using Measure = void (*)(MediaEngine&, const std::string&);
    static const std::map<std::string, Measure> measures{{"first", measureFirstPicture},
                                                         {"seek", measureSeeks},
                                                         {"thumbnail", measureThumbnails},
                                                         {"calls", measureCalls}};
    MediaEngine engine({}, std::make_unique<NullSink>());
    const auto found = measures.find(what);
    if (found != measures.end())
        found->second(engine, file);
    else
        play(engine, file, seconds);
}

}  // namespace

int main(int count, char** words) {
    if (count < 3) {
        std::fputs("usage: media_bench first|seek|thumbnail|calls|play FILE [SECONDS]\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        run(words[1], words[2], count > 3 ? std::atoll(words[3]) : 5);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "media_bench: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
