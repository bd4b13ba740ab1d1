#pragma once

#include <map>
#include <string>
#include <vector>

#include "porting/pl_platform.h"

namespace quiravent::desktop {

/// The platform's properties in the form in which the application gets them.
class Properties {
  public:
    explicit Properties(std::map<std::string, std::string> properties);
    Properties(const Properties&) = delete;
    Properties& operator=(const Properties&) = delete;

    /// Points into this object, which keeps them as they are.
    s_pl_platform_properties list();

  private:
    const std::map<std::string, std::string> m_properties;
    std::vector<const char*> m_keys;
    std::vector<const char*> m_values;
};

}  // namespace quiravent::desktop
