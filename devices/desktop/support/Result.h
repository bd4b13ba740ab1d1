#pragma once

#include <string>
#include <utility>
#include <variant>

namespace quiravent::desktop {

/// Why something could not be done: one line for a log or an error text, without a full stop.
struct Failure {
    std::string reason;
};

/// A value, or the reason why there is none. Functions return either with a plain `return`.
template <typename T>
class [[nodiscard]] Result {
  public:
    Result(T value) : m_outcome(std::move(value)) {}
    Result(Failure failure) : m_outcome(std::move(failure)) {}

    explicit operator bool() const { return std::holds_alternative<T>(m_outcome); }

    /// Only for a result that holds a value.
    T& operator*() { return *std::get_if<T>(&m_outcome); }
    const T& operator*() const { return *std::get_if<T>(&m_outcome); }
    T* operator->() { return std::get_if<T>(&m_outcome); }
    const T* operator->() const { return std::get_if<T>(&m_outcome); }

    /// Only for a result that holds none.
    const std::string& reason() const { return std::get_if<Failure>(&m_outcome)->reason; }

  private:
    std::variant<T, Failure> m_outcome;
};

}  // namespace quiravent::desktop
