// Picture files, through the decoders of the device.

#include "Input.h"
#include "graphics/images/ImageLoader.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quiravent::desktop;
    constexpr size_t kBudget = size_t{8} << 20;
    SurfacePool pool(kBudget);
    {
        const auto image = decodeImage(data, size, pool);
        quiravent::fuzz::expect(image || !image.reason().empty());
    }
    quiravent::fuzz::expect(pool.usedBytes() == 0);
    return 0;
}
