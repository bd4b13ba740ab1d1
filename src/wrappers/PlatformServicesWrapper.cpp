#include "PlatformServicesWrapper.h"

#include <cstdio>
#include <string>

#include "interfaces/PlatformServices.h"
#include "support/Arguments.h"
#include "support/Entry.h"
#include "support/Errors.h"

using namespace quiravent;

namespace {

v8::Local<v8::String> WholeText(const std::string& text) { return Nan::New(text).ToLocalChecked(); }

void InitProperties(const Info& info) {
    const v8::Local<v8::Object> result = Nan::New<v8::Object>();
    for (const auto& [key, value] : PlatformServices::InitProperties()) {
        (void)Nan::Set(result, WholeText(key), WholeText(value));
    }
    info.GetReturnValue().Set(result);
}

void Exit(const Info&) { PlatformServices::Exit(); }

void GetRuntimeState(const Info& info) {
    std::string state;
    PlatformServices::GetRuntimeState(&state);
    info.GetReturnValue().Set(WholeText(state));
}

void SetRuntimeState(const Info& info) {
    if (!info[0]->IsString()) {
        return ThrowTypeError("setRuntimeState() error. Expected 'state' string");
    }
    info.GetReturnValue().Set(PlatformServices::SetRuntimeState(ReadText(info[0])));
}

void ToggleLiveDTV(const Info& info) {
    if (!info[0]->IsBoolean()) return ThrowTypeError("toggleLiveDTV() error. Expected boolean");
    PlatformServices::ToggleLiveDTV(info[0]->IsTrue());
}

void GetLiveDTVStatus(const Info& info) {
    info.GetReturnValue().Set(PlatformServices::GetLiveDTVStatus());
}

void SetReferenceDate(const Info& info) {
    const uint32_t timestamp = ReadUint32(info[0]);
    (void)std::fprintf(stdout, "[PlatformServicesWrapper] SetReferenceDate(timestamp = %zu)\n",
                       static_cast<size_t>(timestamp));
    (void)std::fflush(stdout);
    PlatformServices::SetReferenceDate(timestamp);
    // Deliberately the last: the device gets 0 first.
    if (info[0]->IsUndefined()) {
        ThrowTypeError("setReferenceDate() error. Expected 'timestamp' uint32_t");
    }
}

void Restart(const Info& info) { info.GetReturnValue().Set(PlatformServices::Restart()); }

void EnableDTVEvents(const Info&) { PlatformServices::EnableDTVEvents(); }

}  // namespace

void PlatformServicesWrapper::Init(v8::Local<v8::Object> exports) {
    ExportNamespace(
        exports, "platformServices",
        {MemberOf<InitProperties>("initProperties"), MemberOf<Exit>("exit"),
         MemberOf<GetRuntimeState>("getRuntimeState"), MemberOf<SetRuntimeState>("setRuntimeState"),
         MemberOf<ToggleLiveDTV>("toggleLiveDTV"), MemberOf<GetLiveDTVStatus>("getLiveDTVStatus"),
         MemberOf<SetReferenceDate>("setReferenceDate"), MemberOf<Restart>("restart"),
         MemberOf<EnableDTVEvents>("enableDTVEvents")});
}
