#include "FakeDevice.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace quiravent::recorder {

using Lock = std::lock_guard<std::mutex>;

FakeDevice& FakeDevice::instance() {
    static FakeDevice& device = *std::make_unique<FakeDevice>().release();
    return device;
}

uint32_t FakeDevice::addCanvas(uint32_t width, uint32_t height) {
    const Lock lock(m_mutex);
    m_canvases[++m_lastCanvas] = {width, height, {255, 255, 255, 255}, {0, 0, width, height}};
    return m_lastCanvas;
}

void FakeDevice::removeCanvas(uint32_t handle) {
    const Lock lock(m_mutex);
    m_canvases.erase(handle);
}

std::optional<FakeDevice::Canvas> FakeDevice::canvas(uint32_t handle) const {
    const Lock lock(m_mutex);
    const auto found = m_canvases.find(handle);
    return found == m_canvases.end() ? std::nullopt : std::optional<Canvas>(found->second);
}

uint32_t FakeDevice::nextFont() {
    const Lock lock(m_mutex);
    return ++m_lastFont;
}

uint32_t FakeDevice::nextPlayer() {
    const Lock lock(m_mutex);
    return ++m_lastPlayer;
}

uint32_t FakeDevice::openStore(const std::string& context) {
    const Lock lock(m_mutex);
    m_storeContexts.push_back(context);
    return static_cast<uint32_t>(m_storeContexts.size());
}

FakeDevice::Store FakeDevice::store(uint32_t handle) const {
    const Lock lock(m_mutex);
    if (handle == 0 || handle > m_storeContexts.size()) return {};
    const auto found = m_stores.find(m_storeContexts[handle - 1]);
    return found == m_stores.end() ? Store() : found->second;
}

void FakeDevice::setInStore(uint32_t handle, const std::string& key, const std::string& value) {
    const Lock lock(m_mutex);
    if (handle == 0 || handle > m_storeContexts.size()) return;
    m_stores[m_storeContexts[handle - 1]][key] = value;
}

e_pl_platform_runtime_state FakeDevice::runtimeState() const {
    const Lock lock(m_mutex);
    return m_runtimeState;
}

void FakeDevice::setRuntimeState(e_pl_platform_runtime_state state) {
    const Lock lock(m_mutex);
    m_runtimeState = state;
}

bool FakeDevice::liveTelevision() const {
    const Lock lock(m_mutex);
    return m_liveTelevision;
}

void FakeDevice::setLiveTelevision(bool on) {
    const Lock lock(m_mutex);
    m_liveTelevision = on;
}

FakeDevice::Callbacks FakeDevice::callbacks() const {
    const Lock lock(m_mutex);
    return m_callbacks;
}

s_pl_platform_properties FakeDevice::keepProperties(const std::vector<std::string>& keys,
                                                    const std::vector<std::string>& values) {
    const auto pointer = [](const std::string& text) { return text.c_str(); };
    auto kept = std::make_unique<Properties>();
    kept->keys = keys;
    kept->values = values;
    std::transform(kept->keys.begin(), kept->keys.end(), std::back_inserter(kept->keyPointers),
                   pointer);
    std::transform(kept->values.begin(), kept->values.end(),
                   std::back_inserter(kept->valuePointers), pointer);
    const Lock lock(m_mutex);
    m_properties.push_back(std::move(kept));
    Properties& properties = *m_properties.back();
    return {static_cast<uint32_t>(keys.size()), properties.keyPointers.data(),
            properties.valuePointers.data()};
}

}  // namespace quiravent::recorder
