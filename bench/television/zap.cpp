// How long a viewer waits for a picture: after a change of channel within one multiplex, and after
// that of the multiplex. Prints medians and 95th percentiles in milliseconds.
//
//   build/release/bench-zap FILE.ts VIDEO AUDIO VIDEO AUDIO [CHANGES]

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "live/LivePlayer.h"
#include "media/audio/NullSink.h"
#include "support/Clock.h"
#include "television/Tuner.h"

namespace {

using namespace quiravent::desktop;

/// Tells when the first picture is shown.
class FirstPicture : public VideoOutput {
  public:
    void show(const VideoPicture&) override {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_at == 0) m_at = quiravent::desktop::clock::now();
        m_changed.notify_all();
    }
    void hide() override {}

    int64_t wait() {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this] { return m_at != 0; });
        return m_at;
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int64_t m_at = 0;
};

void tell(const char* what, std::vector<int64_t> times) {
    std::sort(times.begin(), times.end());
    const auto part = [&](size_t hundredths) {
        return static_cast<double>(times[(times.size() - 1) * hundredths / 100]) / 1000;
    };
    std::printf("%s: median %.1f ms, 95 %% within %.1f ms\n", what, part(50), part(95));
}

class Viewer {
  public:
    Viewer(const std::string& file, char** pids) : m_file(file) {
        const auto pid = [&](int index) { return static_cast<Pid>(std::atoi(pids[index])); };
        m_services = {{pid(0), pid(1), pid(0), kNullPid}, {pid(2), pid(3), pid(2), kNullPid}};
    }

    void select() {
        m_tuner.select(m_file, "", [](e_pl_dtv_error) {});
    }

    int64_t zap(size_t number) {
        const int64_t begin = quiravent::desktop::clock::now();
        const auto output = std::make_shared<FirstPicture>();
        const auto next = LivePlayer::make(m_engine, m_tuner.multiplex(), m_services[number % 2],
                                           {0, 0, 1280, 720}, output);
        next->start();
        if (m_player) m_player->close();
        m_player = next;
        return output->wait() - begin;
    }

    int64_t retune() {
        m_tuner.unselect();
        const int64_t begin = quiravent::desktop::clock::now();
        select();
        m_player->close();
        m_player.reset();
        zap(0);
        return quiravent::desktop::clock::now() - begin;
    }

    void leave() {
        if (m_player) m_player->close();
        m_player.reset();
    }

  private:
    const std::string m_file;
    std::vector<LiveStreams> m_services;
    Tuner m_tuner{Configuration::Television{}};
    MediaEngine m_engine{MediaSettings{}, std::make_unique<NullSink>()};
    std::shared_ptr<LivePlayer> m_player;
};

}  // namespace

int main(int count, char** words) {
    constexpr std::chrono::milliseconds kBetween{50};
    if (count < 6) {
        std::fprintf(stderr, "usage: bench-zap FILE.ts VIDEO AUDIO VIDEO AUDIO [CHANGES]\n");
        return 2;
    }
    const size_t changes = count > 6 ? static_cast<size_t>(std::atoi(words[6])) : 50;
    Viewer viewer(words[1], words + 2);
    viewer.select();
    viewer.zap(0);
    std::this_thread::sleep_for(std::chrono::seconds(3));
    std::vector<int64_t> zaps;
    for (size_t change = 1; change <= changes; ++change) {
        std::this_thread::sleep_for(kBetween);
        zaps.push_back(viewer.zap(change));
    }
    tell("channel change within a multiplex", zaps);
    std::vector<int64_t> retunes;
    for (size_t change = 0; change < changes / 5 + 1; ++change) retunes.push_back(viewer.retune());
    tell("change of the multiplex", retunes);
    viewer.leave();
    return 0;
}
