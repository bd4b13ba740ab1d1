#include "ChangeSignal.h"

#include "Recorder.h"

namespace quiravent::recorder {

ChangeSignal::ChangeSignal(v8::Local<v8::Function> listener) : m_listener(listener) {
    uv_async_init(Nan::GetCurrentEventLoop(), &m_async, onSignal);
    m_async.data = this;
    hold(false);
    Recorder::instance().setChangeListener([this] { uv_async_send(&m_async); });
}

void ChangeSignal::hold(bool held) {
    auto* handle = reinterpret_cast<uv_handle_t*>(&m_async);
    held ? uv_ref(handle) : uv_unref(handle);
}

void ChangeSignal::stop() { Recorder::instance().setChangeListener(nullptr); }

void ChangeSignal::onSignal(uv_async_t* handle) {
    auto* signal = static_cast<ChangeSignal*>(handle->data);
    const Nan::HandleScope scope;
    signal->m_listener.Call(0, nullptr, &signal->m_resource);
}

}  // namespace quiravent::recorder
