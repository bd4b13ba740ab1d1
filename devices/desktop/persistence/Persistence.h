#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "config/Configuration.h"
#include "persistence/ValueStore.h"
#include "porting/pl_status.h"
#include "support/HandleTable.h"

namespace quiravent::desktop {

/// The stores of all contexts, known by handles. The file is opened when the first store is.
/// Thread-safe. Errors are thrown as DeviceError.
class Persistence {
  public:
    /// folder: gives the folder of the file, or throws; called when the file is opened.
    Persistence(std::function<std::string()> folder, Durability durability);

    /// The handle of a context's store, the same for each call. When the file can't be opened the
    /// next call tries again.
    uint32_t open(const std::string& context);

    /// e_pl_status_not_found, with value left alone, for a key that isn't there.
    e_pl_status get(uint32_t handle, const std::string& key, std::string& value);
    e_pl_status set(uint32_t handle, const std::string& key, const std::string& value);
    e_pl_status getAll(uint32_t handle, std::map<std::string, std::string>& values);

    /// Closes the file in good order; every later call is refused.
    void close();

  private:
    /// Calls use(store, context) with the lock held.
    template <class Use>
    e_pl_status withStore(uint32_t handle, Use use);

    const std::function<std::string()> m_folder;
    const Durability m_durability;

    std::mutex m_mutex;  ///< guards what follows, the use of the store included
    bool m_closed = false;
    std::unique_ptr<ValueStore> m_store;
    std::map<std::string, uint32_t> m_handles;
    HandleTable<const std::string, HandleKind::store> m_contexts;
};

}  // namespace quiravent::desktop
