#include "TunerServicesWrapper.h"

#include "DTVPlayerWrapper.h"
#include "interfaces/TunerServices.h"
#include "support/Arguments.h"
#include "support/Entry.h"
#include "support/Errors.h"

using namespace quiravent;

namespace {

// The reserved entry points take anything and do nothing.
void Reserved(const Info&) {}

void GetLivePlayer(const Info& info) {
    static constexpr const char* kParameters[] = {"videoPid", "audioPid", "pcrPid"};
    for (int index = 0; index < 3; ++index) {
        if (info[index]->IsNumber()) continue;
        return ThrowTypeError(std::string("getPlayer() error. Number expected in parameter ") +
                              kParameters[index]);
    }
    const int videoPid = ReadInt32(info[0]);
    const int audioPid = ReadInt32(info[1]);
    const int pcrPid = ReadInt32(info[2]);
    DTVPlayer* player = TunerServices::GetPlayer(videoPid, audioPid, pcrPid);
    if (player != nullptr) info.GetReturnValue().Set(DTVPlayerWrapper::ToScript(player));
}

}  // namespace

void TunerServicesWrapper::Init(v8::Local<v8::Object> exports) {
    ExportNamespace(
        exports, "tunerServices",
        {MemberOf<Reserved>("getAllTransportStreams"), MemberOf<Reserved>("getTableInfo"),
         MemberOf<Reserved>("unselectTransportStream"), MemberOf<GetLivePlayer>("getPlayer"),
         MemberOf<Reserved>("openDemuxFilter")});
}
