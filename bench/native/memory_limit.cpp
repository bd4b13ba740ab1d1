#include <nan.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <vector>

// What moving the same bytes costs: rectangles of a screen stored to or copied into, row by row,
// in the grid that scenes of pictures use.

namespace {

constexpr size_t kWidth = 1280;
constexpr size_t kHeight = 720;

std::vector<uint32_t> screen(kWidth* kHeight);
std::vector<uint32_t> source(kWidth* kHeight);

struct Rectangles {
    size_t width;
    size_t height;
    size_t count;

    uint32_t* at(size_t index) const {
        const size_t x = index % 8 * 160 % (kWidth - width + 1);
        const size_t y = index / 8 * 120 % (kHeight - height + 1);
        return screen.data() + y * kWidth + x;
    }
};

uint32_t Number(const Nan::FunctionCallbackInfo<v8::Value>& info, int index) {
    return Nan::To<uint32_t>(info[index]).FromMaybe(0);
}

Rectangles Arguments(const Nan::FunctionCallbackInfo<v8::Value>& info) {
    return {std::min<size_t>(Number(info, 0), kWidth), std::min<size_t>(Number(info, 1), kHeight),
            Number(info, 2)};
}

/// set(width, height, count)
void Set(const Nan::FunctionCallbackInfo<v8::Value>& info) {
    static int value = 0;
    const Rectangles all = Arguments(info);
    ++value;
    for (size_t i = 0; i < all.count; ++i) {
        for (size_t y = 0; y < all.height; ++y) {
            std::memset(all.at(i) + y * kWidth, value, all.width * sizeof(uint32_t));
        }
    }
}

/// copy(width, height, count): each out of memory of its own, as far as there is some.
void Copy(const Nan::FunctionCallbackInfo<v8::Value>& info) {
    const Rectangles all = Arguments(info);
    const size_t pixels = all.width * all.height;
    for (size_t i = 0; i < all.count; ++i) {
        const uint32_t* from = source.data() + i * pixels % (kWidth * kHeight - pixels + 1);
        for (size_t y = 0; y < all.height; ++y, from += all.width) {
            std::memcpy(all.at(i) + y * kWidth, from, all.width * sizeof(uint32_t));
        }
    }
}

/// threadTime(): milliseconds of the processor that this thread has had.
void ThreadTime(const Nan::FunctionCallbackInfo<v8::Value>& info) {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    info.GetReturnValue().Set(static_cast<double>(now.tv_sec) * 1e3 +
                              static_cast<double>(now.tv_nsec) / 1e6);
}

void Init(v8::Local<v8::Object> exports) {
    Nan::SetMethod(exports, "set", Set);
    Nan::SetMethod(exports, "copy", Copy);
    Nan::SetMethod(exports, "threadTime", ThreadTime);
}

}  // namespace

NAN_MODULE_WORKER_ENABLED(memory_limit, Init)
