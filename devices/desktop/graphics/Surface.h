#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace quiravent::desktop {

/// A picture in memory: premultiplied ARGB32 in native order, one `uint32_t` per pixel (alpha in
/// bits 24 to 31, red 16 to 23, green 8 to 15, blue 0 to 7; every colour is at most its alpha).
///
/// Rows begin on 64-byte boundaries and 64 bytes of slack follow the last one, so that a kernel
/// may read, but never write, past the end of a row. Made by a SurfacePool only. A surface does
/// no locking: whoever shares one between threads orders the accesses.
class Surface {
  public:
    ~Surface();
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    uint32_t width() const { return m_width; }
    uint32_t height() const { return m_height; }

    /// Distance between rows, in pixels; a multiple of 16 and never a power of two of 1024 or
    /// more, which would map neighbouring rows to the same cache set.
    size_t stride() const { return m_stride; }
    size_t byteSize() const { return m_byteSize; }

    /// To write to: the surface isn't known to be clear any more.
    uint32_t* row(uint32_t y) {
        m_clear = false;
        return m_pixels + y * m_stride;
    }
    const uint32_t* row(uint32_t y) const { return m_pixels + y * m_stride; }

    /// True when every pixel is known to have alpha 255, so that drawing the surface is a copy.
    bool isOpaque() const { return m_opaque; }
    void setOpaque(bool opaque) { m_opaque = opaque; }

    /// True when every pixel is known to be 0, so that there is nothing to clear.
    bool isClear() const { return m_clear; }
    void setClear() { m_clear = true; }

    /// Rises with every change of the pixels; with id() it keys what is cached of a surface.
    uint64_t generation() const { return m_generation; }
    void touch() { ++m_generation; }

    /// Unique among all surfaces ever made by the process.
    uint64_t id() const { return m_id; }

  private:
    friend class SurfacePool;
    struct PoolState;
    Surface(std::shared_ptr<PoolState> pool, uint32_t width, uint32_t height, size_t stride,
            size_t byteSize, uint32_t* pixels);

    std::shared_ptr<PoolState> m_pool;
    uint32_t m_width;
    uint32_t m_height;
    size_t m_stride;
    size_t m_byteSize;
    uint32_t* m_pixels;
    bool m_opaque = false;
    bool m_clear = false;
    uint64_t m_generation = 0;
    uint64_t m_id;
};

/// Gives out surfaces within a budget of bytes and keeps freed memory for the next one of its
/// size, since fresh pages of a full-screen surface cost more than drawing it. Thread-safe; the
/// surfaces may outlive the pool.
class SurfacePool {
  public:
    /// Longest side of a surface, in pixels.
    static constexpr uint32_t kMaxSide = 16384;

    enum class Fill {
        transparent,    ///< all pixels 0
        uninitialised,  ///< for a decoder that writes every pixel
    };

    explicit SurfacePool(size_t budgetBytes);

    /// Null when a side is 0 or above kMaxSide, when the budget doesn't allow it, or when the
    /// system has no memory.
    std::shared_ptr<Surface> create(uint32_t width, uint32_t height, Fill fill = Fill::transparent);

    /// Bytes held by live surfaces, and what is left of the budget.
    size_t usedBytes() const;
    size_t freeBytes() const;

  private:
    std::shared_ptr<Surface::PoolState> m_state;
};

}  // namespace quiravent::desktop
