#include "control/playerCommands.h"

#include <algorithm>
#include <array>
#include <utility>

#include "support/Clock.h"
#include "support/DeviceError.h"
#include "support/Lasting.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

constexpr std::array<const char*, kTrackKinds> kKinds{"video", "audio", "subtitle"};

int64_t milliseconds(int64_t microseconds) { return microseconds / kMillisecond; }

OrderedJson shownRanges(const std::vector<TimeRange>& ranges) {
    auto list = OrderedJson::array();
    for (const TimeRange& range : ranges) {
        list.push_back({{"begin", milliseconds(range.begin)}, {"end", milliseconds(range.end)}});
    }
    return list;
}

OrderedJson shownTracks(const PlayerReport& report, size_t kind) {
    auto list = OrderedJson::array();
    for (const TrackRef& track : report.tracks) {
        if (static_cast<size_t>(track->kind) != kind) continue;
        list.push_back({{"id", track->id},
                        {"language", track->language},
                        {"selected", report.selected.at(kind) == track->id}});
    }
    return list;
}

const std::string& stateOf(const WatchedPlayer& player) {
    return playerStateNames().at(static_cast<size_t>(player.report.state));
}

OrderedJson shown(const WatchedPlayer& player) {
    const PlayerReport& report = player.report;
    OrderedJson object{{"player", player.number},
                       {"kind", player.kind},
                       {"url", player.location},
                       {"state", stateOf(player)}};
    if (report.state == PlayerReport::State::failed) {
        object["error"] = static_cast<int>(report.error);
        object["reason"] = describe(report.error);
    }
    object["time"] = {{"begin", milliseconds(report.begin)},
                      {"now", milliseconds(report.now)},
                      {"end", milliseconds(report.end)}};
    const bool hasPicture = player.shownPosition != PlaneOutput::kNoPicture;
    object["picture"] =
        hasPicture ? OrderedJson(milliseconds(player.shownPosition)) : OrderedJson(nullptr);
    object["speed"] = report.speed;
    object["volume"] = report.volume;
    const Rect& bounds = report.bounds;
    object["bounds"] = {
        {"x", bounds.x}, {"y", bounds.y}, {"w", bounds.width}, {"h", bounds.height}};
    object["buffered"] = shownRanges(report.buffered);
    for (size_t kind = 0; kind < kKinds.size(); ++kind) {
        object["tracks"][kKinds.at(kind)] = shownTracks(report, kind);
    }
    return object;
}

/// What a player has come to: the picture that is seen, or without pictures what is heard.
int64_t reached(const WatchedPlayer& player) {
    const bool hasPicture = player.shownPosition != PlaneOutput::kNoPicture;
    return milliseconds(hasPicture ? player.shownPosition : player.report.now);
}

/// What is waited for.
struct Goal {
    uint64_t player;    ///< 0: any
    std::string state;  ///< empty: any
    int64_t position;

    bool isMetBy(const WatchedPlayer& one) const {
        return (player == 0 || player == one.number) && (state.empty() || state == stateOf(one)) &&
               reached(one) >= position;
    }

    std::string text() const {
        return joined(player == 0 ? "no player" : joined("player ", player, " isn't"), " ",
                      state.empty() ? "there" : state, " at ", position, " ms or later");
    }
};

std::string shownAll(const std::vector<WatchedPlayer>& players) {
    std::string text;
    for (const WatchedPlayer& one : players) {
        text += joined(text.empty() ? "" : ", ", "player ", one.number, " is ", stateOf(one),
                       " at ", reached(one), " ms");
    }
    return text.empty() ? "there is none" : text;
}

Goal goalOf(const Request& request) {
    const auto& names = playerStateNames();
    const bool isOfState = request.has("state");
    return {request.number("player", UINT32_MAX, 0),
            isOfState ? names.at(request.choice("state", names)) : "",
            static_cast<int64_t>(request.number("position", UINT32_MAX, 0))};
}

OrderedJson shown(const std::vector<Fault>& faults) {
    auto list = OrderedJson::array();
    for (size_t index = 0; index < faults.size(); ++index) {
        const Fault& fault = faults[index];
        OrderedJson object{{"fault", index + 1},
                           {"kind", nameOf(fault.kind)},
                           {"from", fault.fromSecond},
                           {"to", fault.toSecond}};
        if (fault.kind == Fault::Kind::slow) object["bytesPerSecond"] = fault.bytesPerSecond;
        object["on"] = fault.enabled;
        list.push_back(object);
    }
    return list;
}

OrderedJson shown(const std::vector<LivePlayers::Watched>& players) {
    auto list = OrderedJson::array();
    for (const LivePlayers::Watched& one : players) {
        list.push_back({{"player", one.number},
                        {"captions", one.captions.number},
                        {"lines", one.captions.lines},
                        {"pictures", one.captions.pictures}});
    }
    return list;
}

bool isSeen(const std::string& text, const std::vector<LivePlayers::Watched>& players) {
    return std::any_of(players.begin(), players.end(), [&](const LivePlayers::Watched& one) {
        const std::vector<std::string>& lines = one.captions.lines;
        return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.find(text) != std::string::npos;
        });
    });
}

}  // namespace

Work players(const Request&, ControlSession& session) {
    auto list = OrderedJson::array();
    for (const WatchedPlayer& player : session.target.players.watch()) {
        list.push_back(shown(player));
    }
    return finished({{"players", list}});
}

Work waitPlayer(const Request& request, ControlSession& session) {
    // Pictures come every 20 ms or more rarely, and nobody tells of them.
    constexpr int64_t kInterval = 5 * kMillisecond;
    const Goal goal = goalOf(request);
    const uint64_t timeout = request.number("timeout", kMaxTimeout, 5000);
    const int64_t deadline = clock::now() + static_cast<int64_t>(timeout) * kMillisecond;
    PlayerService& service = session.target.players;
    return [&service, goal, timeout, deadline](int64_t now) -> Progress {
        const std::vector<WatchedPlayer> watched = service.watch();
        const auto found =
            std::find_if(watched.begin(), watched.end(),
                         [&](const WatchedPlayer& one) { return goal.isMetBy(one); });
        if (found != watched.end()) return {OrderedJson{{"player", shown(*found)}}};
        if (now < deadline) return {std::nullopt, std::min(deadline, now + kInterval)};
        throw DeviceError(e_pl_status_unavailable,
                          joined(goal.text(), " after ", timeout, " ms; ", shownAll(watched)));
    };
}

Work haltPlayer(const Request& request, ControlSession& session) {
    static const Lasting<std::vector<std::string>> kWays({"suspend", "abort"});
    const uint64_t number = request.number("player", UINT32_MAX);
    const bool isAbort = (*kWays).at(request.choice("how", *kWays)) == "abort";
    PlayerService& service = session.target.players;
    const e_pl_status status = service.halt(number, isAbort ? &Player::abort : &Player::suspend);
    if (status == e_pl_status_ok) return finished(OrderedJson::object());
    throw DeviceError(
        status, joined("player ", number, " can't be halted so: ", shownAll(service.watch())));
}

Work captions(const Request& request, ControlSession& session) {
    constexpr int64_t kInterval = 5 * kMillisecond;
    LivePlayers& service = session.target.livePlayers;
    const std::string text = request.has("text") ? request.text("text") : "";
    const uint64_t timeout = request.number("timeout", kMaxTimeout, 5000);
    const int64_t deadline = clock::now() + static_cast<int64_t>(timeout) * kMillisecond;
    return [=, &service](int64_t now) -> Progress {
        const std::vector<LivePlayers::Watched> players = service.watch();
        if (text.empty() || isSeen(text, players))
            return {OrderedJson{{"players", shown(players)}}};
        if (now < deadline) return {std::nullopt, std::min(deadline, now + kInterval)};
        throw DeviceError(e_pl_status_unavailable,
                          joined("no caption with \"", text, "\" was seen within ", timeout,
                                 " ms; last: ", shown(players).dump()));
    };
}

Work faults(const Request& request, ControlSession& session) {
    FaultList& faults = session.target.players.faults();
    if (request.has("fault") || request.has("on")) {
        const uint64_t number = request.number("fault", UINT32_MAX);
        if (!faults.setEnabled(number - 1, request.flag("on"))) {
            throw DeviceError(e_pl_status_not_found,
                              joined("there is no fault ", number, "; media.faults has ",
                                     faults.list().size(), ", counted from 1"));
        }
    }
    return finished({{"faults", shown(faults.list())}});
}

}  // namespace quiravent::desktop
