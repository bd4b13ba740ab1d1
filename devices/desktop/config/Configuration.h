#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "input/KeyMap.h"
#include "support/Log.h"

namespace quiravent::desktop {

/// When a stored value is safe.
enum class Durability {
    process,  ///< once set has returned: against the end of the process, however it comes
    machine,  ///< also against a loss of power; each set waits for the disk
};

/// All settings of the device with their defaults; read once, then never changed. How each is
/// named in the file and in the environment, and what it may be, stands in settings.cpp.
struct Configuration {
    struct Screen {
        std::string driver = "auto";
        std::string capture;  ///< see CapturePattern; empty: none
    } screen;
    struct Storage {
        std::string folder;  ///< empty: the user's data folder, see defaultStorageFolder()
        Durability durability = Durability::process;
    } storage;
    struct Graphics {
        uint64_t videoMemory = 64U << 20;   ///< bytes
        uint64_t scaledImages = 32U << 20;  ///< bytes, beside the video memory
        uint64_t threads = 2;               ///< that draw, if there are as many processors
        std::string kernels = "auto";       ///< one of kernelSets(), or "auto", the fastest
    } graphics;
    struct Network {
        uint64_t timeLimitSeconds = 15;
        uint64_t sizeLimitMiB = 64;
        std::string authorities;  ///< PEM file of who certifies servers; empty: the system's
    } network;
    struct Media {
        uint64_t bandwidthKbit = 8000;  ///< per second, for the choice among variants
        uint64_t cache = 64U << 20;     ///< bytes per player
        uint64_t timeLimitSeconds = 10;
        std::string audioSink = "auto";
        std::string audioFile;  ///< of the sink "wav"
        std::string subtitleFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
        std::string faults;  ///< see parseFaults()
    } media;
    struct Television {
        std::string live;             ///< selector of the device's own television; empty: none
        std::string lineUp;           ///< file with the names of multiplexes; empty: none
        uint64_t replay = 16U << 20;  ///< bytes of the last packets that are kept
        std::string faults;           ///< see parseSignalFaults()
    } television;
    struct Input {
        KeyBindings keyMap;  ///< changes to the bindings of Keys.def
    } input;
    struct Platform {
        /// What the application is told of the device.
        std::map<std::string, std::string> properties{
            {"system.firmware_version", QUIRAVENT_VERSION},
            {"system.manufacturer", "Quiravent"},
            {"system.model", "Desktop"},
            {"system.serial_number", "00000000"},
        };
    } platform;
    struct Control {
        std::string path;  ///< of the control channel's socket; empty: no channel
    } control;
    struct Log {
        log::Level level = log::Level::warning;
    } log;
};

}  // namespace quiravent::desktop
