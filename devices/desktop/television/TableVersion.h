#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "television/Section.h"

namespace quiravent::desktop {

/// Which sections of one table have been seen. Tables are sent again and again.
class TableVersion {
  public:
    enum class News {
        none,      ///< seen already
        section,   ///< one more of the same table
        newTable,  ///< the first of another version: what was known of the table is over
    };

    News add(const Section& section) {
        const bool isSameTable = m_version == section.version && m_extension == section.extension;
        if (!isSameTable) m_checksums.clear();
        m_version = section.version;
        m_extension = section.extension;
        m_lastNumber = section.lastNumber;
        const auto found = m_checksums.find(section.number);
        if (found != m_checksums.end() && found->second == section.checksum) return News::none;
        // A section that changes without a new version is taken like a new one.
        m_checksums[section.number] = section.checksum;
        return isSameTable ? News::section : News::newTable;
    }

    bool isComplete() const { return m_version && m_checksums.size() == size_t{m_lastNumber} + 1; }

  private:
    std::optional<uint8_t> m_version;
    uint16_t m_extension = 0;
    uint8_t m_lastNumber = 0;
    std::map<uint8_t, uint32_t> m_checksums;  ///< by number of the section
};

}  // namespace quiravent::desktop
