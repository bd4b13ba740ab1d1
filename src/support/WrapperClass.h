#pragma once

#include <nan.h>

#include "Entry.h"
#include "HardEnd.h"
#include "Runtime.h"

namespace quiravent {

/// What every script object with a native side has behind it: the native object's address. It is
/// kept without its type, because a script may hand an object of one wrapper class where another
/// is expected, and that is not detected: the address is then looked up in the registry of the
/// expected class, where it is unknown.
class Wrapper : public Nan::ObjectWrap {
  public:
    /// The native address behind a script object.
    ///
    /// An object without internal fields fails the wrapper library's assertion, which aborts; one
    /// without a native side ends the process as the null read that it is.
    static void* NativeAddressOf(v8::Local<v8::Object> object) {
        const Wrapper* wrapper = Unwrap<Wrapper>(object);
        if (wrapper == nullptr) EndByNullRead();
        return wrapper->m_native;
    }

  protected:
    explicit Wrapper(void* native) : m_native(native) {}

    void* m_native;
};

/// Makes the constructor function of a wrapper class, with the methods on its prototype, keeps it
/// in `kept` and sets it on the exports object under the class's name.
void ExportClass(v8::Local<v8::Object> exports, const char* name, v8::FunctionCallback construct,
                 int internalFields, const Member* members, size_t count,
                 Nan::Persistent<v8::Function>& kept);

/// The seven wrapper classes whose script objects are made by the module alone, around a native
/// object that comes in an External.
///
/// A class states `kScriptName`, `kHollowText` and its static `constructor`, and its destructor
/// does what is to be done with the native object.
template <class Derived, class NativeClass>
class ExternalWrapper : public Wrapper {
  public:
    using Native = NativeClass;

    explicit ExternalWrapper(Native* native) : Wrapper(native) {}

    static Native* NativeOf(v8::Local<v8::Object> object) {
        return static_cast<Native*>(NativeAddressOf(object));
    }

    /// A new script object for a native object; each call makes another one. Script thread only.
    static v8::Local<v8::Object> ToScript(Native* native) {
        Nan::EscapableHandleScope scope;
        v8::Local<v8::Value> argument = Nan::New<v8::External>(native);
        const v8::Local<v8::Function> make = Nan::New(Derived::constructor);
        return scope.Escape(Nan::NewInstance(make, 1, &argument).ToLocalChecked());
    }

  protected:
    /// A prototype method: finds the native object, then runs the body.
    template <void (*body)(Native*, const Info&)>
    static constexpr Member MethodOf(const char* name) {
        return {name, &DispatchMethod<body>};
    }

    template <size_t count>
    static void ExportWith(v8::Local<v8::Object> exports, const Member (&members)[count]) {
        ExportClass(exports, Derived::kScriptName, Dispatch<New>, 1, members, count,
                    Derived::constructor);
    }

    static void ExportWithoutMethods(v8::Local<v8::Object> exports) {
        ExportClass(exports, Derived::kScriptName, Dispatch<New>, 1, nullptr, 0,
                    Derived::constructor);
    }

    Native* native() const { return static_cast<Native*>(m_native); }

  private:
    static void New(const Info& info) {
        if (!info.IsConstructCall()) {
            // Deliberately forwards nothing: the result is an object without a native side.
            const v8::Local<v8::Function> make = Nan::New(Derived::constructor);
            info.GetReturnValue().Set(Nan::NewInstance(make, 0, nullptr).ToLocalChecked());
            return;
        }
        Native* native = nullptr;
        if (info[0]->IsExternal()) {
            native = static_cast<Native*>(Nan::GetExternalValue(info[0].As<v8::External>()));
        }
        if (native == nullptr) {
            // Deliberately neither thrown nor returned: scripts may call the constructor, and get
            // an object that is of no use.
            (void)Nan::Error(Derived::kHollowText);
            Nan::SetInternalFieldPointer(info.This(), 0, nullptr);
            return;
        }
        auto* wrapper = new Derived(native);
        wrapper->Wrap(info.This());
        info.GetReturnValue().Set(info.This());
    }

    template <void (*body)(Native*, const Info&)>
    static void DispatchMethod(const v8::FunctionCallbackInfo<v8::Value>& raw) {
        const bool outer = KeptException::Begin();
        const Info info(raw, v8::Local<v8::Value>());
        body(NativeOf(info.Holder()), info);
        KeptException::End(outer);
    }
};

}  // namespace quiravent
