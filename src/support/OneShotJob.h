#pragma once

#include <nan.h>

#include "Arguments.h"

namespace quiravent {

/// A job that makes one native object on a pool thread and hands it to a script callback: first
/// argument the error, second the result, of which exactly one is null.
///
/// The native object belongs to the script object that is made for it; the job owns neither.
template <class Wrapper>
class OneShotJob : public Nan::AsyncWorker {
  public:
    using Native = typename Wrapper::Native;

    /// \param callback any script value but undefined
    /// \param failureText all that the script learns when there is no result
    OneShotJob(v8::Local<v8::Value> callback, const char* failureText)
        : Nan::AsyncWorker(NewCallback(callback)), m_failureText(failureText) {}

    void Execute() final {
        m_result = Produce();
        if (m_result == nullptr) SetErrorMessage(m_failureText);
    }

  protected:
    /// Makes the native object, or gives null. Runs on a pool thread: no script value in sight.
    virtual Native* Produce() = 0;

    void HandleOKCallback() final {
        const Nan::HandleScope scope;
        Answer(Nan::Null(), Wrapper::ToScript(m_result));
    }

    void HandleErrorCallback() final {
        const Nan::HandleScope scope;
        const v8::Local<v8::Object> error = Nan::New<v8::Object>();
        (void)Nan::Set(error, NameOf(Property::message), Text(ErrorMessage()));
        Answer(error, Nan::Null());
    }

  private:
    void Answer(v8::Local<v8::Value> error, v8::Local<v8::Value> result) {
        v8::Local<v8::Value> arguments[] = {error, result};
        (void)callback->Call(2, arguments, async_resource);
    }

    const char* m_failureText;
    Native* m_result = nullptr;
};

}  // namespace quiravent
