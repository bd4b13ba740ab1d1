#include "AdPlayerWrapper.h"

#include "support/InitOrder.h"
#include "support/PlayerMethods.h"

using namespace quiravent;

Nan::Persistent<v8::Function> AdPlayerWrapper::constructor
    __attribute__((init_priority(quiravent::kAdPlayerConstructor)));

namespace {

using AdPlayerWorker = PlayerWorker<AdPlayer, pl_ad_SetCallback_Event>;
using AdMethods = PlayerMethods<AdPlayer, AdPlayerWorker>;

// Deliberately the last range alone, and undefined without any: applications rely on it.
void GetBufferedTimes(AdPlayer* player, const Info& info) {
    AdMethods::ForEachBufferedTime(
        player, [&](unsigned, v8::Local<v8::Object> range) { info.GetReturnValue().Set(range); });
}

}  // namespace

void AdPlayerWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWith(
        exports,
        {MethodOf<AdMethods::Call<&AdPlayer::Start>>("start"),
         MethodOf<AdMethods::Call<&AdPlayer::Pause>>("pause"),
         MethodOf<AdMethods::Call<&AdPlayer::Resume>>("resume"),
         MethodOf<AdMethods::Call<&AdPlayer::Stop>>("stop"), MethodOf<AdMethods::Unload>("unload"),
         MethodOf<AdMethods::GetTime>("getTime"), MethodOf<AdMethods::SetVolume>("setVolume"),
         MethodOf<GetBufferedTimes>("getBufferedTimes"),
         MethodOf<AdMethods::RegisterListener>("registerListener")});
}
