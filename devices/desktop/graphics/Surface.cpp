#include "Surface.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace quiravent::desktop {

namespace {

constexpr size_t kAlignment = 64;
constexpr size_t kSlackBytes = 64;
constexpr size_t kPixelsPerLine = kAlignment / sizeof(uint32_t);

struct Layout {
    size_t stride;
    size_t byteSize;
};

Layout layoutFor(uint32_t width, uint32_t height) {
    size_t stride = (width + kPixelsPerLine - 1) / kPixelsPerLine * kPixelsPerLine;
    const bool powerOfTwo = (stride & (stride - 1)) == 0;
    if (powerOfTwo && stride >= 1024) stride += kPixelsPerLine;
    return {stride, stride * sizeof(uint32_t) * height + kSlackBytes};
}

uint64_t nextId() {
    static std::atomic<uint64_t> last{0};
    return ++last;
}

}  // namespace

struct Surface::PoolState {
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };
    using Block = std::unique_ptr<uint32_t, Free>;

    explicit PoolState(size_t budgetBytes) : budget(budgetBytes) {}

    static Block allocate(size_t byteSize) {
        const size_t rounded = (byteSize + kAlignment - 1) / kAlignment * kAlignment;
        return Block(static_cast<uint32_t*>(std::aligned_alloc(kAlignment, rounded)));
    }

    /// Reserves the bytes and hands out a kept block of that size if there is one. Empties the
    /// kept blocks when they and the live surfaces together would exceed the budget.
    bool reserve(size_t byteSize, Block& block) {
        const std::lock_guard<std::mutex> lock(mutex);
        if (byteSize > budget || used > budget - byteSize) return false;
        used += byteSize;
        if (const auto kept = blocks.find(byteSize); kept != blocks.end()) {
            block = std::move(kept->second);
            blocks.erase(kept);
            keptBytes -= byteSize;
        }
        if (used + keptBytes > budget) dropKept();
        return true;
    }

    void cancel(size_t byteSize) {
        const std::lock_guard<std::mutex> lock(mutex);
        used -= byteSize;
    }

    void giveBack(uint32_t* pixels, size_t byteSize) {
        Block block(pixels);
        const std::lock_guard<std::mutex> lock(mutex);
        used -= byteSize;
        keptBytes += byteSize;
        blocks.emplace(byteSize, std::move(block));
        if (used + keptBytes > budget) dropKept();
    }

    void dropKept() {
        blocks.clear();
        keptBytes = 0;
    }

    mutable std::mutex mutex;
    const size_t budget;
    size_t used = 0;
    size_t keptBytes = 0;
    std::multimap<size_t, Block> blocks;
};

Surface::Surface(std::shared_ptr<PoolState> pool, uint32_t width, uint32_t height, size_t stride,
                 size_t byteSize, uint32_t* pixels)
    : m_pool(std::move(pool)),
      m_width(width),
      m_height(height),
      m_stride(stride),
      m_byteSize(byteSize),
      m_pixels(pixels),
      m_id(nextId()) {}

Surface::~Surface() { m_pool->giveBack(m_pixels, m_byteSize); }

SurfacePool::SurfacePool(size_t budgetBytes)
    : m_state(std::make_shared<Surface::PoolState>(budgetBytes)) {}

std::shared_ptr<Surface> SurfacePool::create(uint32_t width, uint32_t height, Fill fill) {
    if (width == 0 || height == 0 || width > kMaxSide || height > kMaxSide) return nullptr;
    const Layout layout = layoutFor(width, height);
    Surface::PoolState::Block block;
    if (!m_state->reserve(layout.byteSize, block)) return nullptr;
    if (!block) block = Surface::PoolState::allocate(layout.byteSize);
    if (!block) {
        m_state->cancel(layout.byteSize);
        return nullptr;
    }
    if (fill == Fill::transparent) std::memset(block.get(), 0, layout.byteSize);
    std::shared_ptr<Surface> surface(
        new Surface(m_state, width, height, layout.stride, layout.byteSize, block.get()));
    static_cast<void>(block.release());
    if (fill == Fill::transparent) surface->setClear();
    return surface;
}

size_t SurfacePool::usedBytes() const {
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    return m_state->used;
}

size_t SurfacePool::freeBytes() const {
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    return m_state->budget - m_state->used;
}

}  // namespace quiravent::desktop
