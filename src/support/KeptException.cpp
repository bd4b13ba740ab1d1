#include "KeptException.h"

#include <vector>

namespace quiravent {

bool KeptException::s_kept = false;

namespace {

// What the entries that are running have kept, that of the innermost last. Never destroyed: at
// process end the runtime that owns the values may be gone already.
std::vector<Nan::Global<v8::Value>>& KeptValues() {
    static auto& values = *new std::vector<Nan::Global<v8::Value>>;
    return values;
}

}  // namespace

void KeptException::Keep(const Nan::TryCatch& caught) {
    if (s_kept || !caught.HasCaught()) return;
    s_kept = true;
    KeptValues().emplace_back(caught.Exception());
}

void KeptException::ThrowKept() {
    const Nan::HandleScope scope;
    const v8::Local<v8::Value> exception = Nan::New(KeptValues().back());
    KeptValues().pop_back();
    Nan::ThrowError(exception);
}

}  // namespace quiravent
