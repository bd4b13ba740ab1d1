#pragma once

#include <string>

class Persistent;

/// Opens stores.
class DataServices {
  public:
    /// \return null when the device refuses; owned by the caller
    static Persistent* GetPersistent(const std::string& context);
};
