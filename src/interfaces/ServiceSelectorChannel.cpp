#include "ServiceSelectorChannel.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <string>

#include "InputWorker.h"
#include "ServiceSelectorMessage.h"
#include "porting/pl_platform.h"

namespace quiravent {

namespace {

constexpr const char* kPipePath = "/tmp/quiravent-serviceselector";
constexpr size_t kMessageBytes = 1024;

/// Who takes a thread's leave: the thread itself, or the one that waits for its end. The first to
/// say so does.
enum class Leave { open, joined, detached };

struct Channel {
    pthread_t thread = {};
    std::atomic<Leave> leave{Leave::open};
};

std::atomic<bool> thread_is_running{true};

/// The channel started last; the earlier ones of a platform without properties run on.
std::shared_ptr<Channel>& CurrentChannel() {
    static auto& channel = *new std::shared_ptr<Channel>;
    return channel;
}

// One byte more than a message, so that the text ends.
using Buffer = std::array<char, kMessageBytes + 1>;

void LeaveOverlay() {
    auto state = e_pl_platform_runtime_state_paused;
    (void)pl_platform_GetRuntimeState(&state);
    if (state == e_pl_platform_runtime_state_overlay) {
        (void)pl_platform_SetRuntimeState(e_pl_platform_runtime_state_low_profile);
    }
}

void HandleMessage(Buffer& buffer) {
    const auto message = ParseServiceSelectorMessage(buffer.data());
    if (!message || !g_input_worker_slot.Get()) return;
    if (std::strcmp(message->name, "serviceunselect") == 0) LeaveOverlay();
    g_input_worker_slot.Get()->dispatchCustomEvent(message->name, message->value);
}

/// \return false when the thread is to end
bool ServeOnce(int descriptor) {
    // A descriptor of -1 is waited for as one that never has anything to say.
    pollfd request = {descriptor, POLLIN, 0};
    if (poll(&request, 1, -1) < 0) return false;
    // Closed by someone else: it would be told of again at once, for ever.
    if ((request.revents & POLLNVAL) != 0) return false;
    if ((request.revents & POLLIN) == 0) return true;
    // The message that woke the thread stays unread when the thread is to end.
    if (!thread_is_running) return false;
    Buffer buffer = {};
    if (read(descriptor, buffer.data(), kMessageBytes) < 0) {
        (void)tcflush(descriptor, TCIOFLUSH);
    } else {
        HandleMessage(buffer);
    }
    (void)tcflush(descriptor, TCIOFLUSH);
    return true;
}

void* message_thread(void* argument) {
    const std::unique_ptr<std::shared_ptr<Channel>> channel(
        static_cast<std::shared_ptr<Channel>*>(argument));
    (void)mkfifo(kPipePath, 0666);
    // Open for writing too, so that the pipe has no end when its writers leave.
    const int descriptor = open(kPipePath, O_RDWR | O_NONBLOCK);
    while (ServeOnce(descriptor)) {
    }
    if (descriptor >= 0) (void)close(descriptor);
    if ((*channel)->leave.exchange(Leave::detached) == Leave::open) pthread_detach(pthread_self());
    return nullptr;
}

}  // namespace

int StartServiceSelectorChannel() {
    thread_is_running = true;
    const auto channel = std::make_shared<Channel>();
    auto argument = std::make_unique<std::shared_ptr<Channel>>(channel);
    const int failure = pthread_create(&channel->thread, nullptr, message_thread, argument.get());
    if (failure != 0) return failure;
    (void)argument.release();
    CurrentChannel() = channel;
    return pthread_setname_np(channel->thread, "messageIPC");
}

void StopServiceSelectorChannel() {
    thread_is_running = false;
    const std::shared_ptr<Channel> channel = CurrentChannel();
    if (!channel) return;
    if (channel->leave.exchange(Leave::joined) != Leave::open) return;
    (void)pthread_join(channel->thread, nullptr);
}

}  // namespace quiravent
