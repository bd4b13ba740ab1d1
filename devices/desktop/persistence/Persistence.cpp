#include "persistence/Persistence.h"

#include <utility>

#include "support/DeviceError.h"

namespace quiravent::desktop {

Persistence::Persistence(std::function<std::string()> folder, Durability durability)
    : m_folder(std::move(folder)), m_durability(durability) {}

uint32_t Persistence::open(const std::string& context) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_closed) throw DeviceError(e_pl_status_wrong_state, "the stores are closed");
    if (!m_store) m_store = std::make_unique<ValueStore>(m_folder(), m_durability);
    uint32_t& handle = m_handles[context];
    if (handle == 0) handle = m_contexts.insert(std::make_shared<const std::string>(context));
    if (handle == 0) throw DeviceError(e_pl_status_no_memory, "too many stores are open");
    return handle;
}

template <class Use>
e_pl_status Persistence::withStore(uint32_t handle, Use use) {
    const auto context = m_contexts.find(handle);
    if (!context) return e_pl_status_invalid_handle;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_store) return e_pl_status_wrong_state;
    return use(*m_store, *context);
}

e_pl_status Persistence::get(uint32_t handle, const std::string& key, std::string& value) {
    return withStore(handle, [&](ValueStore& store, const std::string& context) {
        auto found = store.get(context, key);
        if (!found) return e_pl_status_not_found;
        value = std::move(*found);
        return e_pl_status_ok;
    });
}

e_pl_status Persistence::set(uint32_t handle, const std::string& key, const std::string& value) {
    return withStore(handle, [&](ValueStore& store, const std::string& context) {
        store.set(context, key, value);
        return e_pl_status_ok;
    });
}

e_pl_status Persistence::getAll(uint32_t handle, std::map<std::string, std::string>& values) {
    return withStore(handle, [&](ValueStore& store, const std::string& context) {
        values = store.getAll(context);
        return e_pl_status_ok;
    });
}

void Persistence::close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    m_store.reset();
}

}  // namespace quiravent::desktop
