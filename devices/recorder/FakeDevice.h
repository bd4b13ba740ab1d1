#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "porting/pl_functions.h"

namespace quiravent::recorder {

/// What the recorder remembers as a device: canvases with what was set on them, stores, the runtime
/// state, and the callbacks. Handles rise from 1 for each kind. May be used by any thread.
class FakeDevice {
  public:
    static constexpr uint32_t kScreenWidth = 1280;
    static constexpr uint32_t kScreenHeight = 720;

    struct Canvas {
        uint32_t width;
        uint32_t height;
        s_pl_gfx_color color;
        s_pl_gfx_rect clip;
    };
    struct Callbacks {
        pl_input_key_callback keyPress = nullptr;
        pl_input_key_callback keyRelease = nullptr;
        pl_dtv_action_callback dtv = nullptr;
        pl_platform_runtime_state_callback runtimeState = nullptr;
        std::map<uint32_t, pl_media_event_callback> media;  ///< by player
        std::map<uint32_t, pl_media_event_callback> ad;     ///< by player
    };
    using Store = std::map<std::string, std::string>;

    /// Never destroyed, since device threads may outlive main.
    static FakeDevice& instance();

    uint32_t addCanvas(uint32_t width, uint32_t height);
    void removeCanvas(uint32_t handle);
    std::optional<Canvas> canvas(uint32_t handle) const;

    /// Changes a canvas, if there is one of that handle.
    template <class Change>
    void changeCanvas(uint32_t handle, Change change) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_canvases.find(handle);
        if (found != m_canvases.end()) change(found->second);
    }

    uint32_t nextFont();
    uint32_t nextPlayer();

    /// A new handle of the context's store.
    uint32_t openStore(const std::string& context);

    /// A copy of the handle's store; empty for an unknown handle.
    Store store(uint32_t handle) const;
    void setInStore(uint32_t handle, const std::string& key, const std::string& value);

    e_pl_platform_runtime_state runtimeState() const;
    void setRuntimeState(e_pl_platform_runtime_state state);

    bool liveTelevision() const;
    void setLiveTelevision(bool on);

    Callbacks callbacks() const;

    template <class Change>
    void changeCallbacks(Change change) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        change(m_callbacks);
    }

    /// Keeps a list of properties for the rest of the process, since the module is given pointers.
    s_pl_platform_properties keepProperties(const std::vector<std::string>& keys,
                                            const std::vector<std::string>& values);

  private:
    struct Properties {
        std::vector<std::string> keys;
        std::vector<std::string> values;
        std::vector<const char*> keyPointers;
        std::vector<const char*> valuePointers;
    };

    mutable std::mutex m_mutex;
    std::map<uint32_t, Canvas> m_canvases;
    uint32_t m_lastCanvas = 0;
    uint32_t m_lastFont = 0;
    uint32_t m_lastPlayer = 0;
    std::vector<std::string> m_storeContexts;  ///< the store with handle n is that of entry n - 1
    std::map<std::string, Store> m_stores;
    e_pl_platform_runtime_state m_runtimeState = e_pl_platform_runtime_state_running;
    bool m_liveTelevision = false;
    Callbacks m_callbacks;
    std::vector<std::unique_ptr<Properties>> m_properties;
};

inline FakeDevice& device() { return FakeDevice::instance(); }

}  // namespace quiravent::recorder
