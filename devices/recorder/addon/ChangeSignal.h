#pragma once

#include <nan.h>

namespace quiravent::recorder {

/// Tells a script function, on the script thread, that something about the recorder has changed.
/// Many changes may come as one call.
class ChangeSignal {
  public:
    /// Begins to tell, for the rest of the process or until stop(); keeps the loop from ending only
    /// while held.
    explicit ChangeSignal(v8::Local<v8::Function> listener);
    ~ChangeSignal() = default;
    ChangeSignal(const ChangeSignal&) = delete;
    ChangeSignal& operator=(const ChangeSignal&) = delete;

    void hold(bool held);

    /// To be called before the loop is torn down, since other threads signal it.
    void stop();

  private:
    static void onSignal(uv_async_t* handle);

    uv_async_t m_async{};
    Nan::Callback m_listener;
    Nan::AsyncResource m_resource{"recorder:change"};
};

}  // namespace quiravent::recorder
