#pragma once

#include <cstdint>

/// A live player: one player handle of the porting layer. After Release the handle is 0, and every
/// method does nothing. Script thread.
class DTVPlayer {
  public:
    explicit DTVPlayer(uint32_t handle) : m_handle(handle) {}
    /// Releases the handle if the script hasn't.
    ~DTVPlayer() { Release(); }
    DTVPlayer(const DTVPlayer&) = delete;
    DTVPlayer& operator=(const DTVPlayer&) = delete;

    void Start() const;
    void Stop() const;
    void SetBounds(int x, int y, int w, int h) const;
    /// \param volume 0.0 to 1.0; the device gets the low 8 bits of a hundred times as much
    void SetVolume(double volume) const;
    /// \param value the device gets its low 16 bits
    void ToggleClosedCaption(bool on, unsigned int value) const;
    void Release();

  private:
    uint32_t m_handle;
};
