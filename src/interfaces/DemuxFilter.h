#pragma once

#include <cstdint>
#include <string>

#include "porting/pl_dtv.h"

/// A filter on the tables of a transport stream. Complete, and made by nothing: scripts have an
/// entry point for it that is reserved.
class DemuxFilter {
  public:
    explicit DemuxFilter(uint32_t handle) : m_handle(handle) {}
    ~DemuxFilter() {
        if (m_handle != 0) (void)pl_dtv_Demux_closeFilter(m_handle);
    }
    DemuxFilter(const DemuxFilter&) = delete;
    DemuxFilter& operator=(const DemuxFilter&) = delete;

    std::string filter_name;

  private:
    uint32_t m_handle;
};
