#include <nan.h>

#include "support/PropertyNames.h"
#include "wrappers/CanvasWrapper.h"
#include "wrappers/DataServicesWrapper.h"
#include "wrappers/FontWrapper.h"
#include "wrappers/GraphicServicesWrapper.h"
#include "wrappers/PersistentWrapper.h"

/// Fills the exports object, on the script thread. The order of the calls is the order of the
/// properties.
void InitAll(v8::Local<v8::Object> exports) {
    quiravent::InitPropertyNames();
    GraphicServicesWrapper::Init(exports);
    FontWrapper::Init(exports);
    CanvasWrapper::Init(exports);
    DataServicesWrapper::Init(exports);
    PersistentWrapper::Init(exports);
}

namespace {

/// InitAll in the shape in which the runtime calls it; the further arguments are of no interest.
void InitAll(v8::Local<v8::Object> exports, v8::Local<v8::Value>, void*) { ::InitAll(exports); }

// Written out instead of left to the runtime's registration macros, whose further fields and entry
// points differ from one runtime to the next.
node::node_module module_record = {
    NODE_MODULE_VERSION,
    0,        // flags
    nullptr,  // library handle, filled in by the runtime
    "../src/Quiravent",
    InitAll,
    nullptr,  // context register function
    "quiravent",
    nullptr,  // private data
    nullptr,  // link, used by the runtime
};

__attribute__((constructor)) void RegisterModule() { node_module_register(&module_record); }

}  // namespace
