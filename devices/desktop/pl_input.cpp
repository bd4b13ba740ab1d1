#include "porting/pl_input.h"

#include "boundary.h"

/// The first function that the module calls: a device that can't start says so here.
int32_t pl_input_init() {
    using namespace quiravent::desktop;
    return answer(__func__, Required(), [](Device&) { return e_pl_status_ok; });
}
