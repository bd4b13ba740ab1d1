#include "lineup/streams/BitstreamFilter.h"

#include <new>

namespace quiravent::desktop::lineup {

BitstreamFilter::BitstreamFilter(const char* filters, const AVCodecParameters& codec) {
    AVBSFContext* context = nullptr;
    if (av_bsf_list_parse_str(filters, &context) < 0) throw std::bad_alloc();
    m_context.reset(context);
    m_isReady = avcodec_parameters_copy(context->par_in, &codec) >= 0 && av_bsf_init(context) >= 0;
}

std::optional<std::vector<uint8_t>> BitstreamFilter::filter(const AVPacket& packet) {
    const AvPacket moved = makePacket();
    if (!m_isReady || av_packet_ref(moved.get(), &packet) < 0) return std::nullopt;
    if (av_bsf_send_packet(m_context.get(), moved.get()) < 0) return std::nullopt;
    const AvPacket filtered = makePacket();
    if (av_bsf_receive_packet(m_context.get(), filtered.get()) < 0) return std::nullopt;
    return std::vector<uint8_t>(filtered->data, filtered->data + filtered->size);
}

}  // namespace quiravent::desktop::lineup
