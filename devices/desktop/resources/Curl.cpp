#include "resources/Curl.h"

#include "support/DeviceError.h"

namespace quiravent::desktop {

// Kept for the life of the process: the counterpart of global_init isn't safe while other threads
// run.
Curl::Curl()
    : m_library(QUIRAVENT_CURL_LIBRARY)
#define CURL_USED(name) , name(m_library.require<decltype(name)>("curl_" #name))
#include "resources/curl_functions.def"
#undef CURL_USED
{
    const CURLcode code = global_init(CURL_GLOBAL_DEFAULT);
    if (code != CURLE_OK) throw DeviceError(e_pl_status_unavailable, easy_strerror(code));
}

const Curl& Curl::instance() {
    static const Curl curl;
    return curl;
}

}  // namespace quiravent::desktop
