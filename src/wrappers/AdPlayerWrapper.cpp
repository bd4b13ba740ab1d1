#include "AdPlayerWrapper.h"

#include "support/InitOrder.h"
#include "support/PlayerMethods.h"

using namespace quiravent;

Nan::Persistent<v8::Function> AdPlayerWrapper::constructor
    __attribute__((init_priority(quiravent::kAdPlayerConstructor)));

namespace {

using AdPlayerWorker = PlayerWorker<AdPlayer, pl_ad_SetCallback_Event>;
using Methods = PlayerMethods<AdPlayer, AdPlayerWorker>;

// Deliberately the last range alone, and undefined without any: applications rely on it.
void GetBufferedTimes(AdPlayer* player, const Info& info) {
    Methods::ForEachBufferedTime(
        player, [&](unsigned, v8::Local<v8::Object> range) { info.GetReturnValue().Set(range); });
}

}  // namespace

void AdPlayerWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWith(exports, {MethodOf<Methods::Call<&AdPlayer::Start>>("start"),
                         MethodOf<Methods::Call<&AdPlayer::Pause>>("pause"),
                         MethodOf<Methods::Call<&AdPlayer::Resume>>("resume"),
                         MethodOf<Methods::Call<&AdPlayer::Stop>>("stop"),
                         MethodOf<Methods::Unload>("unload"), MethodOf<Methods::GetTime>("getTime"),
                         MethodOf<Methods::SetVolume>("setVolume"),
                         MethodOf<GetBufferedTimes>("getBufferedTimes"),
                         MethodOf<Methods::RegisterListener>("registerListener")});
}
