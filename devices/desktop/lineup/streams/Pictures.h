#pragma once

#include <cstdint>

#include "media/Av.h"

namespace quiravent::desktop::lineup {

/// The pictures of a service, in their order; planar YUV 4:2:0 in the service's size, BT.601 in
/// the range of television.
class Pictures {
  public:
    virtual ~Pictures() = default;

    /// number: of the picture, from 0 on; asked for in rising order.
    virtual AvFrame picture(int64_t number) = 0;
};

}  // namespace quiravent::desktop::lineup
