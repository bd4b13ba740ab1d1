#include "HttpFetch.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <memory>
#include <new>

#include "resources/Curl.h"
#include "resources/LimitText.h"
#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

struct CleanUp {
    void operator()(CURL* handle) const { curl().easy_cleanup(handle); }
};
using Easy = std::unique_ptr<CURL, CleanUp>;

Result<Easy> makeEasy() {
    constexpr const char* kFailure = "the HTTP client can't be used";
    try {
        Easy easy(curl().easy_init());
        if (!easy) return Failure{kFailure};
        return easy;
    } catch (const DeviceError& error) {
        return Failure{joined(kFailure, ": ", error.what())};
    }
}

struct Transfer {
    explicit Transfer(size_t limit) : maxBytes(limit) {}

    const size_t maxBytes;
    Bytes body;
    bool tooLarge = false;
    std::array<char, CURL_ERROR_SIZE> errorText{};
};

/// Any other result than `count` ends the transfer.
size_t receive(char* data, size_t, size_t count, void* user) {
    auto& transfer = *static_cast<Transfer*>(user);
    if (count > transfer.maxBytes - transfer.body.size()) {
        transfer.tooLarge = true;
        return 0;
    }
    try {
        transfer.body.insert(transfer.body.end(), data, data + count);
    } catch (const std::bad_alloc&) {
        transfer.tooLarge = true;
        return 0;
    }
    return count;
}

template <typename Value>
void setOption(const Easy& easy, CURLoption option, Value value) {
    curl().easy_setopt(easy.get(), option, value);
}

void setUp(const Easy& easy, const std::string& url, const ResourceLimits& limits,
           Transfer& transfer) {
    const auto milliseconds = std::clamp<long long>(limits.timeout.count(), 1, INT_MAX);
    setOption(easy, CURLOPT_URL, url.c_str());
    setOption(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    setOption(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    setOption(easy, CURLOPT_FOLLOWLOCATION, 1L);
    setOption(easy, CURLOPT_MAXREDIRS, static_cast<long>(std::min(limits.maxRedirects, 1000U)));
    setOption(easy, CURLOPT_FAILONERROR, 1L);
    // Refuses a body of a declared size at once; one of unknown size is measured as it comes.
    setOption(easy, CURLOPT_MAXFILESIZE_LARGE,
              static_cast<curl_off_t>(std::min<size_t>(limits.maxBytes, INT64_MAX)));
    setOption(easy, CURLOPT_USERAGENT, "quiravent");
    if (!limits.authorities.empty()) setOption(easy, CURLOPT_CAINFO, limits.authorities.c_str());
    setOption(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(milliseconds));
    // Its name look-up would otherwise be timed by a signal, which belongs to the process.
    setOption(easy, CURLOPT_NOSIGNAL, 1L);
    setOption(easy, CURLOPT_ERRORBUFFER, transfer.errorText.data());
    setOption(easy, CURLOPT_WRITEFUNCTION, &receive);
    setOption(easy, CURLOPT_WRITEDATA, static_cast<void*>(&transfer));
}

Failure reasonFor(const Easy& easy, CURLcode code, const ResourceLimits& limits,
                  const Transfer& transfer) {
    if (transfer.tooLarge || code == CURLE_FILESIZE_EXCEEDED) return largerThan(limits.maxBytes);
    if (code == CURLE_OPERATION_TIMEDOUT)
        return {"not received within " + std::to_string(limits.timeout.count()) + " ms"};
    if (code == CURLE_TOO_MANY_REDIRECTS)
        return {"more than " + std::to_string(limits.maxRedirects) + " redirects"};
    if (code == CURLE_HTTP_RETURNED_ERROR) {
        long status = 0;
        curl().easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
        return {"the server answered with status " + std::to_string(status)};
    }
    const std::string detail = transfer.errorText.data();
    return {detail.empty() ? curl().easy_strerror(code) : detail};
}

}  // namespace

Result<Bytes> fetchHttp(const std::string& url, const ResourceLimits& limits) {
    const Result<Easy> made = makeEasy();
    if (!made) return Failure{made.reason()};
    const Easy& easy = *made;
    Transfer transfer(limits.maxBytes);
    setUp(easy, url, limits, transfer);
    const CURLcode code = curl().easy_perform(easy.get());
    if (code != CURLE_OK) return reasonFor(easy, code, limits, transfer);
    return std::move(transfer.body);
}

}  // namespace quiravent::desktop
