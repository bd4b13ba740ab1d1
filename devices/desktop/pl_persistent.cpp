#include "porting/pl_persistent.h"

#include "boundary.h"

using quiravent::desktop::answer;
using quiravent::desktop::Device;
using quiravent::desktop::Required;

int32_t pl_persistent_GetPersistent(unsigned int* handle, std::string context) {
    return answer(__func__, Required(handle), [&](Device& device) {
        *handle = device.persistence().open(context);
        return e_pl_status_ok;
    });
}

int32_t pl_persistent_GetValue(unsigned int handle, std::string key, std::string& value) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.persistence().get(handle, key, value); });
}

int32_t pl_persistent_SetValue(unsigned int handle, std::string key, std::string value) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.persistence().set(handle, key, value); });
}

int32_t pl_persistent_GetAllValues(unsigned int handle,
                                   std::map<std::string, std::string>& values) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.persistence().getAll(handle, values); });
}
