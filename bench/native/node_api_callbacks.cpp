#include <node_api.h>

#include <cstdint>

// The same reads as in bare_callbacks.cpp by way of the runtime's stable interface, Node-API.

namespace {

volatile uint32_t sink;
const char* const kNames[] = {"x", "y", "w", "h"};

struct Call {
    napi_env env;
    napi_value arguments[4]{};
    napi_value self{};

    Call(napi_env environment, napi_callback_info info) : env(environment) {
        size_t count = 4;
        napi_get_cb_info(env, info, &count, arguments, &self, nullptr);
        field(self);
    }
    void field(napi_value object) const {
        void* native = nullptr;
        napi_unwrap(env, object, &native);
        sink = *static_cast<uint32_t*>(native);
    }
    void number(napi_value value) const {
        uint32_t read = 0;
        napi_get_value_uint32(env, value, &read);
        sink = read;
    }
    void text(size_t index = 0) const {
        char buffer[256];
        size_t length = 0;
        napi_get_value_string_utf8(env, arguments[index], buffer, sizeof buffer, &length);
        sink = static_cast<uint32_t>(length);
    }
    napi_value object(int count) const {
        napi_value made = nullptr;
        napi_create_object(env, &made);
        for (int index = 0; index < count; ++index) {
            napi_value value = nullptr;
            napi_create_uint32(env, sink, &value);
            napi_set_named_property(env, made, kNames[index], value);
        }
        return made;
    }
};

napi_value FourNumbers(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    for (napi_value value : call.arguments) call.number(value);
    return nullptr;
}

napi_value FourProperties(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    for (const char* name : kNames) {
        napi_value value = nullptr;
        napi_get_named_property(env, call.arguments[0], name, &value);
        call.number(value);
    }
    return nullptr;
}

napi_value Text(napi_env env, napi_callback_info info) {
    Call(env, info).text();
    return nullptr;
}

napi_value TextAndPlace(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    call.text();
    call.number(call.arguments[1]);
    call.number(call.arguments[2]);
    return nullptr;
}

napi_value TwoTexts(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    call.text();
    call.text(1);
    return nullptr;
}

napi_value TextAndText(napi_env env, napi_callback_info info) {
    Call(env, info).text();
    napi_value result = nullptr;
    napi_create_string_utf8(env, "value", NAPI_AUTO_LENGTH, &result);
    return result;
}

napi_value ObjectAndPlace(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    call.field(call.arguments[0]);
    call.number(call.arguments[1]);
    call.number(call.arguments[2]);
    return nullptr;
}

template <int count>
napi_value Results(napi_env env, napi_callback_info info) {
    return Call(env, info).object(count);
}

napi_value TextAndTwoResults(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    call.text();
    return call.object(2);
}

napi_value Answer(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    napi_value result = nullptr;
    napi_get_boolean(env, sink != 0, &result);
    return result;
}

napi_value New(napi_env env, napi_callback_info info) {
    static uint32_t native = 1;
    napi_value self = nullptr;
    napi_get_cb_info(env, info, nullptr, nullptr, &self, nullptr);
    napi_wrap(env, self, &native, nullptr, nullptr, nullptr);
    return self;
}

napi_property_descriptor method(const char* name, napi_callback callback) {
    return {name, nullptr, callback, nullptr, nullptr, nullptr, napi_default, nullptr};
}

napi_value Init(napi_env env, napi_value exports) {
    const napi_property_descriptor methods[] = {method("fourNumbers", FourNumbers),
                                                method("fourProperties", FourProperties),
                                                method("text", Text),
                                                method("textAndPlace", TextAndPlace),
                                                method("twoTexts", TwoTexts),
                                                method("textAndText", TextAndText),
                                                method("objectAndPlace", ObjectAndPlace),
                                                method("threeResults", Results<3>),
                                                method("fourResults", Results<4>),
                                                method("textAndTwoResults", TextAndTwoResults),
                                                method("answer", Answer)};
    napi_value made = nullptr;
    napi_define_class(env, "Bare", NAPI_AUTO_LENGTH, New, nullptr, sizeof methods / sizeof *methods,
                      methods, &made);
    napi_set_named_property(env, exports, "Bare", made);
    return exports;
}

}  // namespace

NAPI_MODULE(node_api_callbacks, Init)
