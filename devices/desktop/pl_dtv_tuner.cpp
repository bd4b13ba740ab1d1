#include "boundary.h"
#include "porting/pl_dtv.h"

using quiravent::desktop::answer;
using quiravent::desktop::Device;
using quiravent::desktop::Required;

int32_t pl_dtv_Action_selectTransportStream(const char* selector, const char* option,
                                            pl_dtv_action_callback callback) {
    return answer(__func__, Required(selector, callback), [&](Device& device) {
        device.tuner().select(selector, option != nullptr ? option : "", callback);
        return e_pl_status_ok;
    });
}

int32_t pl_dtv_Action_unselectTransportStream() {
    return answer(__func__, Required(), [](Device& device) {
        device.tuner().unselect();
        return e_pl_status_ok;
    });
}
