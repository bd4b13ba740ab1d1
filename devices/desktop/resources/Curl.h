#pragma once

#include <curl/curl.h>

#include "support/SharedLibrary.h"

namespace quiravent::desktop {

/// libcurl, opened when something is fetched, not linked: it brings some thirty libraries into the
/// process, TLS among them. Each member is the function of that name with curl_ before it; its
/// headers tell what it does.
class Curl {
  public:
    /// Opened and initialised once, by whoever comes first; any thread. Throws DeviceError with the
    /// reason where it can't be.
    static const Curl& instance();

    Curl(const Curl&) = delete;
    Curl& operator=(const Curl&) = delete;

  private:
    Curl();

    const SharedLibrary m_library;

  public:
#define CURL_USED(name) decltype(&curl_##name) const name;
#include "resources/curl_functions.def"
#undef CURL_USED
};

inline const Curl& curl() { return Curl::instance(); }

}  // namespace quiravent::desktop
