#include "FakeDevice.h"
#include "Fulfil.h"

namespace quiravent::recorder {

void Fulfil::operator()(Fn<&pl_persistent_GetPersistent>, Answer& answer, unsigned int* handle,
                        const std::string& context) const {
    answer.put("handle", handle, [&] { return device().openStore(context); });
}

/// Prepared as "value", a text.
void Fulfil::operator()(Fn<&pl_persistent_GetValue>, Answer& answer, unsigned int handle,
                        const std::string& key, std::string& value) const {
    if (const Value* prepared = answer.prepared("value")) {
        value = prepared->text();
        return;
    }
    const FakeDevice::Store store = device().store(handle);
    const auto found = store.find(key);
    if (found == store.end()) {
        answer.fail(e_pl_status_not_found);
    } else if (answer.succeeds()) {
        value = found->second;
    }
}

void Fulfil::operator()(Fn<&pl_persistent_SetValue>, Answer& answer, unsigned int handle,
                        const std::string& key, const std::string& value) const {
    if (answer.succeeds()) device().setInStore(handle, key, value);
}

/// Prepared as "values", a record of texts.
void Fulfil::operator()(Fn<&pl_persistent_GetAllValues>, Answer& answer, unsigned int handle,
                        std::map<std::string, std::string>& values) const {
    if (const Value* prepared = answer.prepared("values")) {
        if (const auto* record = std::get_if<Record>(prepared)) {
            for (const auto& [key, value] : *record) values[key] = value.text();
        }
    } else if (answer.succeeds()) {
        values = device().store(handle);
    }
}

/// Prepared as "properties", a list of pairs of texts, so that a key may come twice.
void Fulfil::operator()(Fn<&pl_platform_InitProperties>, Answer& answer,
                        s_pl_platform_properties* properties) const {
    const Value* prepared = answer.prepared("properties");
    if (!prepared && !answer.succeeds()) return;
    std::vector<std::string> keys;
    std::vector<std::string> values;
    for (const Value& pair : prepared ? prepared->list() : List()) {
        if (pair.list().size() != 2) continue;
        keys.push_back(pair.list().at(0).text());
        values.push_back(pair.list().at(1).text());
    }
    *properties = device().keepProperties(keys, values);
}

void Fulfil::operator()(Fn<&pl_platform_GetRuntimeState>, Answer& answer,
                        e_pl_platform_runtime_state* state) const {
    answer.put("state", state, [] { return device().runtimeState(); });
}

void Fulfil::operator()(Fn<&pl_platform_SetRuntimeState>, Answer& answer,
                        e_pl_platform_runtime_state state) const {
    if (answer.succeeds()) device().setRuntimeState(state);
}

void Fulfil::operator()(Fn<&pl_platform_SetCallback_RuntimeStateChange>, Answer& answer,
                        pl_platform_runtime_state_callback callback) const {
    if (!answer.succeeds()) return;
    device().changeCallbacks([&](auto& callbacks) { callbacks.runtimeState = callback; });
}

void Fulfil::operator()(Fn<&pl_platform_ToggleLiveDTV>, Answer& answer, bool on) const {
    if (answer.succeeds()) device().setLiveTelevision(on);
}

void Fulfil::operator()(Fn<&pl_platform_GetLiveDTVStatus>, Answer& answer, uint8_t* on) const {
    answer.put("on", on, [] { return static_cast<uint8_t>(device().liveTelevision()); });
}

void Fulfil::operator()(Fn<&pl_input_SetCallback_KeyPress>, Answer& answer,
                        pl_input_key_callback callback) const {
    if (!answer.succeeds()) return;
    device().changeCallbacks([&](auto& callbacks) { callbacks.keyPress = callback; });
}

void Fulfil::operator()(Fn<&pl_input_SetCallback_KeyRelease>, Answer& answer,
                        pl_input_key_callback callback) const {
    if (!answer.succeeds()) return;
    device().changeCallbacks([&](auto& callbacks) { callbacks.keyRelease = callback; });
}

}  // namespace quiravent::recorder
