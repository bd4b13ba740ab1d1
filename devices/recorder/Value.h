#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace quiravent::recorder {

struct Value;

using List = std::vector<Value>;

/// Named values, in the order in which they were added.
using Record = std::vector<std::pair<std::string, Value>>;

/// What crosses between the C interface and the tests' scripts: null, a boolean, a number, a text
/// of any bytes, a list or a record.
struct __attribute__((visibility("default"))) Value
    : std::variant<std::nullptr_t, bool, double, std::string, List, Record> {
    using variant::variant;

    /// The number or 0; the text or an empty one; the elements or none.
    double number() const;
    const std::string& text() const;
    const List& list() const;

    /// The value of that name if this is a record that has it, else null.
    const Value* find(const std::string& name) const;
};

/// The value of that name, or null.
const Value* find(const Record& record, const std::string& name);

/// The number of that name, or the fallback; as a wrapping conversion, so that -1 is all ones.
uint32_t wordOr(const Value& record, const std::string& name, uint32_t fallback);

}  // namespace quiravent::recorder
