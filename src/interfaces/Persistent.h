#pragma once

#include <cstdint>
#include <map>
#include <string>

/// An open store of key and value texts. The device has no operation that closes one, so it stays
/// open for the life of the process. Calls block for as long as the device takes.
class Persistent {
  public:
    explicit Persistent(uint32_t handle) : m_handle(handle) {}

    /// Leaves the value alone where the device does: for a missing key, say.
    void Get(const std::string& key, std::string& value) const;
    void Set(const std::string& key, const std::string& value) const;
    void GetAll(std::map<std::string, std::string>& values) const;

  private:
    uint32_t m_handle;
};
