#include "Persistent.h"

#include "porting/pl_persistent.h"

void Persistent::Get(const std::string& key, std::string& value) const {
    if (m_handle != 0) (void)pl_persistent_GetValue(m_handle, key, value);
}

void Persistent::Set(const std::string& key, const std::string& value) const {
    if (m_handle != 0) (void)pl_persistent_SetValue(m_handle, key, value);
}

void Persistent::GetAll(std::map<std::string, std::string>& values) const {
    if (m_handle != 0) (void)pl_persistent_GetAllValues(m_handle, values);
}
