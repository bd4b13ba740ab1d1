#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quiravent::desktop {

/// JSON whose members keep their order.
using OrderedJson = nlohmann::ordered_json;

/// One request of the control channel. What is wrong with it is thrown as DeviceError.
class Request {
  public:
    /// The object that a line holds.
    static OrderedJson parse(std::string_view line);

    explicit Request(OrderedJson object) : m_object(std::move(object)) {}

    /// "id", which the answer repeats; none when there is none.
    std::optional<OrderedJson> id() const;

    std::string command() const;

    /// Refuses parameters that the command hasn't.
    void expectOnly(const std::vector<std::string>& parameters) const;

    bool has(const char* parameter) const { return m_object.contains(parameter); }

    // The value of a parameter.
    std::string text(const char* parameter) const;
    int32_t key(const char* parameter) const;
    bool flag(const char* parameter) const;
    uint64_t number(const char* parameter, uint64_t most) const;
    /// Of one that needn't be there.
    uint64_t number(const char* parameter, uint64_t most, uint64_t otherwise) const;
    double real(const char* parameter, double least, double most) const;
    size_t choice(const char* parameter, const std::vector<std::string>& choices) const;

  private:
    const OrderedJson& value(const char* parameter, const std::string& allowed) const;

    OrderedJson m_object;
};

}  // namespace quiravent::desktop
