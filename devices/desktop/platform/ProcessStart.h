#pragma once

#include <string>
#include <vector>

namespace quiravent::desktop {

/// How this process was started, taken when the device starts, so that it can be started so again
/// whatever it has made of its title, folder and environment by then.
class ProcessStart {
  public:
    ProcessStart();

    /// Replaces the program by the same one from its beginning. Open files, but for the standard
    /// ones, and blocked signals don't go with it. Returns, by throwing DeviceError, only when that
    /// can't be done; then all is as it was.
    [[noreturn]] void repeat() const;

  private:
    std::vector<std::string> m_arguments;
    std::vector<std::string> m_environment;
    std::string m_folder;
};

}  // namespace quiravent::desktop
