#pragma once

#include <cstdint>
#include <initializer_list>
#include <utility>

#include "Entry.h"
#include "PropertyNames.h"

/// Result objects: plain new objects whose properties are set in the order given.
namespace quiravent {

/// An object of signed 32-bit values.
void ReturnIntegers(const Info& info, std::initializer_list<std::pair<Property, int32_t>> values);

/// An object of unsigned 32-bit values.
void ReturnUnsigned(const Info& info, std::initializer_list<std::pair<Property, uint32_t>> values);

}  // namespace quiravent
