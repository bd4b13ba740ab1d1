#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <utility>

#include "resources/Location.h"
#include "support/Text.h"
#include "television/LineUp.h"
#include "television/SelectionOptions.h"
#include "television/TuneRequest.h"
#include "television/TunerError.h"
#include "television/adapter/AdapterSource.h"
#include "television/adapter/LinuxFrontEnd.h"

namespace quiravent::desktop {

namespace {

constexpr std::string_view kAdapter = "adapter";
constexpr std::string_view kUdp = "udp://";
constexpr std::string_view kRtp = "rtp://";
constexpr const char* kAllowed =
    "a path, file://PATH, udp://ADDRESS:PORT, rtp://ADDRESS:PORT, adapter:NUMBER, or a name of the "
    "line-up";

/// What scripts say where they have no option.
constexpr const char* kNoOption = "undefined";

bool startsWith(const std::string& text, std::string_view start) {
    return text.compare(0, start.size(), start) == 0;
}

template <class Number>
std::optional<Number> numberOf(std::string_view text) {
    Number number = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = error == std::errc{} && rest == text.data() + text.size();
    return isNumber ? std::optional(number) : std::nullopt;
}

FileRequest fileRequest(const std::string& path, SelectionOptions& options) {
    FileRequest request;
    request.path = path;
    const auto loop = options.takeChoice("loop", {"no", "yes"});
    if (loop) request.loops = *loop != 0;
    const auto rate = options.takeNumber("bitrate", 1000, 1000000000);
    if (rate) request.bitRate = static_cast<double>(*rate);
    return request;
}

/// Takes "ADDRESS:PORT" apart, where the address may be empty, or of IPv6 and then in brackets.
void readEndPoint(const std::string& selector, std::string_view endPoint, NetworkRequest& request) {
    // The address of a group is often written as that of a sender who isn't named.
    if (!endPoint.empty() && endPoint.front() == '@') endPoint.remove_prefix(1);
    const size_t colon = endPoint.rfind(':');
    const auto port = colon == std::string_view::npos
                          ? std::nullopt
                          : numberOf<uint16_t>(endPoint.substr(colon + 1));
    if (!port || *port == 0) {
        TunerError::refuse(
            joined(inQuotes(selector), " has no port; allowed: :1 to :65535 at its end"));
    }
    std::string_view address = endPoint.substr(0, colon);
    if (address.size() > 2 && address.front() == '[' && address.back() == ']') {
        address = address.substr(1, address.size() - 2);
    }
    request.port = *port;
    request.address = address == "localhost" ? "127.0.0.1" : std::string(address);
    if (!isNumericAddress(request.address)) {
        TunerError::refuse(
            joined(inQuotes(selector), ": ", inQuotes(request.address),
                   " is no address; allowed: one in numbers, of this machine or of a group"));
    }
}

NetworkRequest networkRequest(const std::string& selector, size_t scheme,
                              SelectionOptions& options) {
    std::string_view endPoint = std::string_view(selector).substr(scheme);
    const size_t query = endPoint.find('?');
    if (query != std::string_view::npos) {
        options.add(std::string(endPoint.substr(query + 1)));
        endPoint = endPoint.substr(0, query);
    }
    if (!endPoint.empty() && endPoint.back() == '/') endPoint.remove_suffix(1);
    NetworkRequest request;
    readEndPoint(selector, endPoint, request);
    request.interface = options.takeText("interface").value_or("");
    request.sender = options.takeText("sender").value_or("");
    if (!isNumericAddress(request.sender)) {
        TunerError::refuse(joined("the option sender is ", inQuotes(request.sender),
                                  "; allowed: an address in numbers"));
    }
    return request;
}

Tuning tuningFrom(SelectionOptions& options) {
    Tuning tuning;
    const auto system =
        options.takeChoice("system", {"dvb-t", "dvb-t2", "dvb-c", "dvb-s", "dvb-s2", "isdb-t"});
    const auto frequency = options.takeNumber("frequency", 1000000, 30000000000);
    if (!system || !frequency) {
        TunerError::refuse("an adapter needs the options system and frequency, the latter in Hz");
    }
    tuning.system = static_cast<DeliverySystem>(*system);
    tuning.frequency = *frequency;
    const auto number = [&](const char* name, uint64_t least, uint64_t most) {
        const auto value = options.takeNumber(name, least, most);
        return value ? std::optional(static_cast<uint32_t>(*value)) : std::nullopt;
    };
    tuning.bandwidth = number("bandwidth", 1000000, 50000000);
    tuning.symbolRate = number("symbolrate", 100000, 100000000);
    tuning.streamId = number("stream", 0, 255);
    const auto modulation = options.takeChoice(
        "modulation", {"qpsk", "8psk", "16qam", "32qam", "64qam", "128qam", "256qam"});
    if (modulation) tuning.modulation = static_cast<Modulation>(*modulation);
    const auto polarisation = options.takeChoice("polarisation", {"horizontal", "vertical"});
    if (polarisation) tuning.polarisation = static_cast<Polarisation>(*polarisation);
    return tuning;
}

/// Of "adapter", "adapter:1" or "adapter:1/0".
AdapterRequest adapterRequest(const std::string& selector, SelectionOptions& options) {
    AdapterRequest request;
    if (selector.size() > kAdapter.size()) {
        const std::string_view numbers = std::string_view(selector).substr(kAdapter.size() + 1);
        const size_t slash = numbers.find('/');
        const auto adapter = numberOf<unsigned>(numbers.substr(0, slash));
        const auto frontEnd = slash == std::string_view::npos
                                  ? std::optional(0U)
                                  : numberOf<unsigned>(numbers.substr(slash + 1));
        constexpr unsigned kMost = 255;
        if (!adapter || !frontEnd || *adapter > kMost || *frontEnd > kMost) {
            TunerError::refuse(joined(inQuotes(selector),
                                      " is no adapter; allowed: adapter:NUMBER or "
                                      "adapter:NUMBER/FRONTEND, each up to ",
                                      kMost));
        }
        request.adapter = *adapter;
        request.frontEnd = *frontEnd;
    }
    request.tuning = tuningFrom(options);
    return request;
}

bool isAdapter(const std::string& selector) {
    return selector == kAdapter || startsWith(selector, std::string(kAdapter) + ':');
}

TuneRequest directRequest(const std::string& selector, SelectionOptions& options) {
    TuneRequest request;
    if (isAdapter(selector)) {
        request.source = adapterRequest(selector, options);
    } else if (startsWith(selector, kUdp) || startsWith(selector, kRtp)) {
        request.source = networkRequest(selector, kUdp.size(), options);
    } else {
        const auto location = parseLocation(selector);
        if (!location) TunerError::refuse(joined(location.reason(), "; allowed: ", kAllowed));
        if (location->kind != Location::Kind::file) {
            throw TunerError(e_pl_dtv_error_not_supported,
                             joined(inQuotes(selector),
                                    " can't be a source of television; allowed: ", kAllowed));
        }
        request.source = fileRequest(location->target, options);
    }
    const auto program = options.takeNumber("program", 1, 0xFFFF);
    if (program) request.program = static_cast<uint16_t>(*program);
    options.expectEmpty();
    return request;
}

/// Whether a selector is neither a URL nor an adapter.
bool isPlain(const std::string& selector) {
    return selector.find("://") == std::string::npos && !startsWith(selector, "file:/") &&
           !isAdapter(selector);
}

/// Whether a plain selector that isn't in the line-up can be meant as a path.
bool looksLikePath(const std::string& selector) {
    return selector.find_first_of("/.:") != std::string::npos;
}

}  // namespace

TuneRequest parseSelection(const std::string& selector, const std::string& option,
                           const std::string& lineUp) {
    if (selector.empty()) TunerError::refuse(joined("the selector is empty; allowed: ", kAllowed));
    std::optional<LineUpEntry> entry;
    if (isPlain(selector) && !lineUp.empty()) entry = findInLineUp(lineUp, selector);
    if (isPlain(selector) && !entry && !looksLikePath(selector)) {
        throw TunerError(
            e_pl_dtv_error_service_not_found,
            joined(inQuotes(selector), " is not in the line-up, and no path; allowed: ", kAllowed));
    }
    SelectionOptions options = entry ? entry->options : SelectionOptions();
    if (option != kNoOption) options.add(option);
    if (!entry) return directRequest(selector, options);
    if (!isPlain(entry->source)) return directRequest(entry->source, options);
    const auto folder = std::filesystem::absolute(lineUp).parent_path();
    return directRequest((folder / entry->source).string(), options);
}

std::unique_ptr<TransportSource> makeSource(const TuneRequest& request) {
    if (const auto* const file = std::get_if<FileRequest>(&request.source)) {
        return std::make_unique<FileSource>(*file);
    }
    if (const auto* const network = std::get_if<NetworkRequest>(&request.source)) {
        return std::make_unique<NetworkSource>(*network);
    }
    const auto& adapter = std::get<AdapterRequest>(request.source);
    return std::make_unique<AdapterSource>(
        std::make_unique<LinuxFrontEnd>(adapter.adapter, adapter.frontEnd), adapter.tuning);
}

}  // namespace quiravent::desktop
