#pragma once

#include <map>
#include <optional>
#include <string>

#include "config/Configuration.h"
#include "persistence/Database.h"

namespace quiravent::desktop {

/// Values by context and key, in one file of a folder, which several processes may use at once.
/// Contexts, keys and values are any bytes. Each change is whole or not there, whatever happens
/// while it is made. For one thread at a time. Errors are thrown as DeviceError.
class ValueStore {
  public:
    static constexpr const char* kFileName = "values.sqlite";

    /// Makes folder (for the user alone) and file where they are missing.
    ValueStore(const std::string& folder, Durability durability);

    std::optional<std::string> get(const std::string& context, const std::string& key);
    void set(const std::string& context, const std::string& key, const std::string& value);
    std::map<std::string, std::string> getAll(const std::string& context);

  private:
    Database m_database;
    Statement m_get;
    Statement m_set;
    Statement m_getAll;
};

}  // namespace quiravent::desktop
