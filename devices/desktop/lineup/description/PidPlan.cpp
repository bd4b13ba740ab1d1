#include "lineup/description/PidPlan.h"

namespace quiravent::desktop::lineup {

void PidPlan::claim(Pid pid, const Place& place) {
    if (pid == 0) return;
    const auto [user, isNew] = m_users.emplace(pid, place.path());
    if (!isNew) {
        refuseValue(place, pid,
                    joined("a packet identifier of its own; ", user->second, " has this one"));
    }
}

void PidPlan::fill(Pid& pid, Pid first) {
    if (pid != 0) return;
    pid = first;
    while (!m_users.emplace(pid, "").second) ++pid;
}

}  // namespace quiravent::desktop::lineup
