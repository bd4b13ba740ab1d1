#pragma once

#include "lineup/description/Lineup.h"
#include "lineup/streams/Pictures.h"

namespace quiravent::desktop::lineup {

/// The test picture of a service: its colour, its name, the picture's number for machines (see
/// FrameMark) and for people, and a square that goes from the left to the right once in the loop.
class TestPictures : public Pictures {
  public:
    /// count: of pictures in the loop. Throws DeviceError when the font can't be read.
    TestPictures(const Service& service, const std::string& fontFile, int64_t count);

    AvFrame picture(int64_t number) override;

  private:
    void drawNumber(AVFrame& picture, int64_t number) const;
    void drawSquare(AVFrame& picture, int64_t number) const;

    const uint8_t m_service;
    const int64_t m_count;
    AvFrame m_background;
};

}  // namespace quiravent::desktop::lineup
