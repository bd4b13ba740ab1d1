#include "KeptException.h"

namespace quiravent {

bool KeptException::s_kept = false;

namespace {

// Never destroyed: at process end the runtime that owns the value may be gone already.
Nan::Persistent<v8::Value>& KeptValue() {
    static auto& value = *new Nan::Persistent<v8::Value>;
    return value;
}

void Move(Nan::Persistent<v8::Value>& from, Nan::Persistent<v8::Value>& to) {
    const Nan::HandleScope scope;
    to.Reset(Nan::New(from));
    from.Reset();
}

}  // namespace

KeptException::SetAside::SetAside() {
    Move(KeptValue(), m_value);
    s_kept = false;
}

KeptException::SetAside::~SetAside() {
    Move(m_value, KeptValue());
    s_kept = true;
}

void KeptException::Keep(const Nan::TryCatch& caught) {
    if (s_kept || !caught.HasCaught()) return;
    s_kept = true;
    KeptValue().Reset(caught.Exception());
}

void KeptException::ThrowKept() {
    const Nan::HandleScope scope;
    const v8::Local<v8::Value> exception = Nan::New(KeptValue());
    s_kept = false;
    KeptValue().Reset();
    Nan::ThrowError(exception);
}

}  // namespace quiravent
