#include "TunerServices.h"

#include "DTVPlayer.h"
#include "porting/pl_dtv.h"

namespace {

uint16_t PacketIdentifier(int number) { return static_cast<uint16_t>(number & 0xFFFF); }

}  // namespace

DTVPlayer* TunerServices::GetPlayer(int videoPid, int audioPid, int pcrPid) {
    uint32_t handle = 0;
    const int32_t status = pl_dtv_Action_getPlayer(
        PacketIdentifier(videoPid), PacketIdentifier(audioPid), PacketIdentifier(pcrPid), &handle);
    if (status != 0 || handle == 0) return nullptr;
    return new DTVPlayer(handle);
}
