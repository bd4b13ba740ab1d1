#pragma once

#include <map>
#include <string>

#include "porting/pl_api.h"

// Stores of small values that outlive the process, one for each context (an application's name).
// Keys and values may hold any bytes, NUL included, and may be empty. All functions are called on
// the script thread, which they block for as long as they take.

/// Opens the store of a context, and makes it if there is none. The context may be any text, also
/// an empty one or one that is no file name. There is no closing: *handle is good for the life of
/// the process. Handles of one context share its values.
PL_API int32_t pl_persistent_GetPersistent(unsigned int* handle, std::string context);

/// Reads a value. For a key that isn't there, value is left as it is, and the status is an error.
PL_API int32_t pl_persistent_GetValue(unsigned int handle, std::string key, std::string& value);

/// Writes a value; the empty one is a value like any other. When the function returns with success
/// the value survives the end of the process, however that ends.
PL_API int32_t pl_persistent_SetValue(unsigned int handle, std::string key, std::string value);

/// Adds all keys and values of the store to the map, which is given empty.
PL_API int32_t pl_persistent_GetAllValues(unsigned int handle,
                                          std::map<std::string, std::string>& values);
