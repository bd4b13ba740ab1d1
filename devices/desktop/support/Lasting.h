#pragma once

#include <utility>

namespace quiravent::desktop {

/// A value that is made once and never destroyed: for what threads of the device read, which run
/// on while an exiting process destroys everything else that is static.
template <class Value>
class Lasting {
  public:
    explicit Lasting(Value value) : m_value(std::move(value)) {}
    // Empty on purpose, which is what keeps the member.
    ~Lasting() {}  // NOLINT(modernize-use-equals-default)
    Lasting(const Lasting&) = delete;
    Lasting& operator=(const Lasting&) = delete;

    const Value& operator*() const { return m_value; }

  private:
    union {
        Value m_value;
    };
};

}  // namespace quiravent::desktop
