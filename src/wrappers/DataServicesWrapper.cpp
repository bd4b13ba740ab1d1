#include "DataServicesWrapper.h"

#include "PersistentWrapper.h"
#include "interfaces/DataServices.h"
#include "support/Arguments.h"
#include "support/Entry.h"
#include "support/Errors.h"

using namespace quiravent;

namespace {

void GetPersistent(const Info& info) {
    if (!info[0]->IsString()) {
        return ThrowTypeError(
            "getPersistent() error. I believe that you need to choose a context for this app.");
    }
    Persistent* store = DataServices::GetPersistent(ReadText(info[0]));
    if (store != nullptr) info.GetReturnValue().Set(PersistentWrapper::ToScript(store));
}

}  // namespace

void DataServicesWrapper::Init(v8::Local<v8::Object> exports) {
    ExportNamespace(exports, "dataServices", {MemberOf<GetPersistent>("getPersistent")});
}
