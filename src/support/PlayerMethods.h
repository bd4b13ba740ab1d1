#pragma once

#include <cstring>
#include <memory>

#include "Arguments.h"
#include "PlayerWorker.h"
#include "Results.h"
#include "SaturatingCast.h"
#include "porting/pl_media.h"

namespace quiravent {

/// How many records the module hands the device room for, and the most that it reads back.
inline constexpr unsigned kRecords = 10;

/// What the script methods of both kinds of player do alike.
template <class Player, class Worker>
struct PlayerMethods {
    template <int32_t (Player::*operation)()>
    static void Call(Player* player, const Info&) {
        (void)(player->*operation)();
    }

    /// Closes the worker made last for this kind of player, which need not be this player's.
    static void Unload(Player* player, const Info&) {
        const std::shared_ptr<Worker> worker = Worker::Slot().Get();
        if (!worker) EndByNullRead();
        worker->close();
        (void)player->Unload();
    }

    static void GetTime(Player* player, const Info& info) {
        unsigned now = 0;
        unsigned begin = 0;
        unsigned end = 0;
        (void)player->GetTime(&now, &begin, &end);
        ReturnUnsigned<Property::now, Property::begin, Property::end>(info, now, begin, end);
    }

    /// The script's volume is a whole number: a fraction is cut off before it is multiplied.
    static void SetVolume(Player* player, const Info& info) {
        if (!info[0]->IsNumber()) return;
        const auto whole = SaturatingCast<int32_t>(ReadDouble(info[0]));
        const uint32_t volume = static_cast<uint32_t>(whole) * 100U;
        (void)player->SetVolume(static_cast<int>(volume & 255U));
    }

    static void RegisterListener(Player* player, const Info& info) {
        const auto worker = std::make_shared<Worker>(Listeners(info[0], info[1], info[2]), player);
        Worker::Slot().Take(worker);
        worker->Queue();
    }

    /// Calls back with each buffered range as a script object, and gives their number.
    template <class Use>
    static unsigned ForEachBufferedTime(Player* player, Use use) {
        s_pl_media_timeref times[kRecords] = {};
        s_pl_media_timeref* first = times;
        unsigned count = kRecords;
        (void)player->GetBufferedTimes(&first, &count);
        if (count > kRecords) count = kRecords;
        for (unsigned index = 0; index < count; ++index) {
            use(index, MakeUnsigned({{Property::begin, times[index].begin},
                                     {Property::end, times[index].end}}));
        }
        return count;
    }
};

}  // namespace quiravent
