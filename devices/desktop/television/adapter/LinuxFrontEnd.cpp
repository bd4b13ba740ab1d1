#include "television/adapter/LinuxFrontEnd.h"

#include <fcntl.h>
#include <linux/dvb/dmx.h>
#include <linux/dvb/frontend.h>
#include <sys/ioctl.h>

#include <array>

#include <cerrno>
#include <vector>

#include "support/Text.h"
#include "television/TunerError.h"

namespace quiravent::desktop {

namespace {

// The dish's converter: it shifts the low band by one oscillator, the high one by another.
constexpr uint64_t kLowOscillator = 9750000000;
constexpr uint64_t kHighOscillator = 10600000000;
constexpr uint64_t kFirstOfHighBand = 11700000000;

/// Enough for half a second of the richest multiplex.
constexpr unsigned long kDemuxBytes = 4UL << 20;
/// Stands for all packet identifiers.
constexpr uint16_t kWholeStream = 0x2000;

struct SystemTraits {
    fe_delivery_system_t number;
    bool isSatellite;
};

/// In the order of DeliverySystem.
constexpr std::array<SystemTraits, 6> kSystems{{{SYS_DVBT, false},
                                                {SYS_DVBT2, false},
                                                {SYS_DVBC_ANNEX_A, false},
                                                {SYS_DVBS, true},
                                                {SYS_DVBS2, true},
                                                {SYS_ISDBT, false}}};

/// In the order of Modulation.
constexpr std::array<fe_modulation_t, 7> kModulations = {QPSK,   PSK_8,   QAM_16, QAM_32,
                                                         QAM_64, QAM_128, QAM_256};

class Properties {
  public:
    void add(uint32_t command, uint32_t value) {
        dtv_property property = {};
        property.cmd = command;
        property.u.data = value;
        m_list.push_back(property);
    }
    template <class Value>
    void addIf(uint32_t command, const std::optional<Value>& value) {
        if (value) add(command, *value);
    }

    dtv_properties all() { return {static_cast<uint32_t>(m_list.size()), m_list.data()}; }
    const dtv_property& at(size_t place) const { return m_list.at(place); }

  private:
    std::vector<dtv_property> m_list;
};

void addSatellite(Properties& properties, const Tuning& tuning) {
    constexpr uint64_t kHertz = 1000;
    const bool isHigh = tuning.frequency >= kFirstOfHighBand;
    const uint64_t oscillator = isHigh ? kHighOscillator : kLowOscillator;
    const uint64_t distance = tuning.frequency > oscillator ? tuning.frequency - oscillator
                                                            : oscillator - tuning.frequency;
    const bool isVertical = tuning.polarisation == Polarisation::vertical;
    properties.add(DTV_FREQUENCY, static_cast<uint32_t>(distance / kHertz));
    properties.add(DTV_VOLTAGE, isVertical ? SEC_VOLTAGE_13 : SEC_VOLTAGE_18);
    properties.add(DTV_TONE, isHigh ? SEC_TONE_ON : SEC_TONE_OFF);
}

Properties propertiesOf(const Tuning& tuning) {
    const SystemTraits& system = kSystems.at(static_cast<size_t>(tuning.system));
    Properties properties;
    properties.add(DTV_CLEAR, 0);
    properties.add(DTV_DELIVERY_SYSTEM, system.number);
    if (system.isSatellite) {
        addSatellite(properties, tuning);
    } else {
        properties.add(DTV_FREQUENCY, static_cast<uint32_t>(tuning.frequency));
    }
    if (tuning.modulation) {
        properties.add(DTV_MODULATION, kModulations.at(static_cast<size_t>(*tuning.modulation)));
    }
    properties.addIf(DTV_BANDWIDTH_HZ, tuning.bandwidth);
    properties.addIf(DTV_SYMBOL_RATE, tuning.symbolRate);
    properties.addIf(DTV_STREAM_ID, tuning.streamId);
    properties.add(DTV_INVERSION, INVERSION_AUTO);
    properties.add(DTV_TUNE, 0);
    return properties;
}

/// A measurement in decibels; none when the front end has none, or has it in other units.
std::optional<double> decibels(const dtv_property& property) {
    const dtv_fe_stats& measured = property.u.st;
    if (measured.len == 0 || measured.stat[0].scale != FE_SCALE_DECIBEL) return std::nullopt;
    return static_cast<double>(measured.stat[0].svalue) / 1000;
}

}  // namespace

LinuxFrontEnd::LinuxFrontEnd(unsigned adapter, unsigned frontEnd, SystemCalls& calls)
    : m_adapter(adapter), m_number(frontEnd), m_calls(calls) {}

std::string LinuxFrontEnd::device(const char* kind) const {
    return joined("/dev/dvb/adapter", m_adapter, '/', kind, m_number);
}

void LinuxFrontEnd::tune(const Tuning& tuning) {
    openDevices();
    Properties properties = propertiesOf(tuning);
    dtv_properties all = properties.all();
    if (m_calls.control(m_frontEnd.number(), FE_SET_PROPERTY, &all) < 0) {
        throw TunerError::ofSystem(joined(device("frontend"), " refuses the tuning"), errno,
                                   e_pl_dtv_error_not_supported);
    }
    passWholeStream();
}

void LinuxFrontEnd::openDevices() {
    const auto open = [&](const char* kind, int flags) {
        FileDescriptor descriptor = m_calls.open(device(kind).c_str(), flags | O_NONBLOCK);
        if (descriptor) return descriptor;
        throw TunerError::ofSystem(joined("the television adapter can't be used: ", device(kind)),
                                   errno, e_pl_dtv_error_unavailable);
    };
    // What was open before may be of an adapter that has been unplugged, or keeps it taken.
    m_stream = FileDescriptor();
    m_demux = FileDescriptor();
    m_frontEnd = FileDescriptor();
    m_frontEnd = open("frontend", O_RDWR);
    m_demux = open("demux", O_RDWR);
    m_stream = open("dvr", O_RDONLY);
}

void LinuxFrontEnd::passWholeStream() {
    // This request takes a number in the place of a pointer.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    const auto buffer = reinterpret_cast<void*>(kDemuxBytes);
    // Without the larger buffer there are gaps on a busy machine, and that's all.
    (void)m_calls.control(m_demux.number(), DMX_SET_BUFFER_SIZE, buffer);
    (void)m_calls.control(m_stream.number(), DMX_SET_BUFFER_SIZE, buffer);
    dmx_pes_filter_params filter = {};
    filter.pid = kWholeStream;
    filter.input = DMX_IN_FRONTEND;
    filter.output = DMX_OUT_TS_TAP;
    filter.pes_type = DMX_PES_OTHER;
    filter.flags = DMX_IMMEDIATE_START;
    if (m_calls.control(m_demux.number(), DMX_SET_PES_FILTER, &filter) < 0) {
        throw TunerError::ofSystem(joined(device("demux"), " doesn't pass the whole stream"), errno,
                                   e_pl_dtv_error_not_supported);
    }
}

SignalQuality LinuxFrontEnd::quality() {
    SignalQuality quality;
    if (!m_frontEnd) return quality;
    fe_status status = FE_NONE;
    if (m_calls.control(m_frontEnd.number(), FE_READ_STATUS, &status) == 0) {
        quality.isLocked = (status & FE_HAS_LOCK) != 0;
    }
    Properties wanted;
    wanted.add(DTV_STAT_SIGNAL_STRENGTH, 0);
    wanted.add(DTV_STAT_CNR, 0);
    dtv_properties all = wanted.all();
    if (m_calls.control(m_frontEnd.number(), FE_GET_PROPERTY, &all) == 0) {
        quality.strength = decibels(wanted.at(0));
        quality.ratio = decibels(wanted.at(1));
    }
    return quality;
}

}  // namespace quiravent::desktop
