#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "porting/pl_platform.h"

/// The platform's services: runtime state, properties, leaving, live television. Script thread,
/// but for what is said of the callback and the channel.
class PlatformServices {
  public:
    /// One of "paused", "running", "low_profile", "overlay", "suspended", "advertising"; "unknown"
    /// for any other code. Any thread.
    static std::string RuntimeState_Code2Str(e_pl_platform_runtime_state code);

    static void GetRuntimeState(std::string* state);
    /// \return whether the text is one of the six, not whether the device obeyed
    static bool SetRuntimeState(const std::string& state);

    /// The first time, and as long as the platform's list is empty every time: fetches the
    /// properties, registers for state changes, and starts the service selector channel.
    static std::map<std::string, std::string> InitProperties();

    /// Waits until the channel's thread has ended, for which a byte must reach its pipe.
    static void Exit();
    /// \return whether the device agreed
    static bool Restart();
    static void ToggleLiveDTV(bool on);
    static bool GetLiveDTVStatus();
    static void SetReferenceDate(uint32_t timestamp);

    /// Defined by the porting layer and bound at its first call. The module loads without it, and
    /// a call then ends the process with the loader's error.
    static void EnableDTVEvents();

  private:
    static std::map<std::string, std::string> s_properties;
};
