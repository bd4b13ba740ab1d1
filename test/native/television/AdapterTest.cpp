// Television adapters, without one: the kernel is played by the test.

#include <gtest/gtest.h>
#include <linux/dvb/dmx.h>
#include <linux/dvb/frontend.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <memory>

#include "television/TestStream.h"
#include "television/TuneRequest.h"
#include "television/TunerError.h"
#include "television/adapter/AdapterSource.h"
#include "television/adapter/LinuxFrontEnd.h"

namespace quiravent::desktop {
namespace {

using test::Bytes;

/// A kernel with one adapter, whose stream the test writes.
class Kernel : public SystemCalls {
  public:
    Kernel() {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        m_reading = FileDescriptor(ends[0]);
        m_writing = FileDescriptor(ends[1]);
    }

    FileDescriptor open(const char* path, int) override {
        opened.emplace_back(path);
        if (refusal == 0) return FileDescriptor(::dup(m_reading.number()));
        errno = refusal;
        return FileDescriptor();
    }

    int control(int, unsigned long request, void* argument) override {
        if (request == FE_SET_PROPERTY) {
            const auto* const all = static_cast<const dtv_properties*>(argument);
            for (const dtv_property* one = all->props; one != all->props + all->num; ++one) {
                properties[one->cmd] = one->u.data;
                hasTuned = one->cmd == DTV_TUNE;
            }
        } else if (request == DMX_SET_PES_FILTER) {
            filter = *static_cast<const dmx_pes_filter_params*>(argument);
        } else if (request == FE_READ_STATUS) {
            *static_cast<fe_status*>(argument) = static_cast<fe_status>(FE_HAS_LOCK | FE_HAS_SYNC);
        } else if (request == FE_GET_PROPERTY) {
            dtv_fe_stats& strength = static_cast<dtv_properties*>(argument)->props[0].u.st;
            strength.len = 1;
            strength.stat[0].scale = FE_SCALE_DECIBEL;
            strength.stat[0].svalue = -53500;
        }
        return 0;
    }

    void send(const Bytes& bytes) const {
        EXPECT_EQ(::write(m_writing.number(), bytes.data(), bytes.size()),
                  static_cast<ssize_t>(bytes.size()));
    }
    void unplug() { m_writing = FileDescriptor(); }

    int refusal = 0;
    std::vector<std::string> opened;
    std::map<uint32_t, uint32_t> properties;
    bool hasTuned = false;  ///< and that was the last property
    dmx_pes_filter_params filter{};

  private:
    FileDescriptor m_reading;
    FileDescriptor m_writing;
};

Tuning tuningOf(const std::string& option) {
    return std::get<AdapterRequest>(parseSelection("adapter:1/2", option, "").source).tuning;
}

AdapterSource sourceOver(Kernel& kernel, const std::string& option) {
    return {std::make_unique<LinuxFrontEnd>(1, 2, kernel), tuningOf(option)};
}

TEST(Adapter, IsTunedToWhatIsAskedFor) {
    struct Case {
        const char* option;
        uint32_t system;
        uint32_t frequency;
        std::map<uint32_t, uint32_t> others;
    };
    const Case cases[] = {
        {"system=ISDB-T frequency=479142857 bandwidth=6000000",
         SYS_ISDBT,
         479142857,
         {{DTV_BANDWIDTH_HZ, 6000000}}},
        {"system=dvb-t2,frequency=602000000,bandwidth=8000000,stream=1",
         SYS_DVBT2,
         602000000,
         {{DTV_BANDWIDTH_HZ, 8000000}, {DTV_STREAM_ID, 1}}},
        {"system=dvb-c&frequency=410000000&symbolrate=6900000&modulation=256qam",
         SYS_DVBC_ANNEX_A,
         410000000,
         {{DTV_SYMBOL_RATE, 6900000}, {DTV_MODULATION, QAM_256}}},
        {"system=dvb-s2 frequency=11954000000 symbolrate=27500000 polarisation=vertical",
         SYS_DVBS2,
         1354000,
         {{DTV_SYMBOL_RATE, 27500000}, {DTV_VOLTAGE, SEC_VOLTAGE_13}, {DTV_TONE, SEC_TONE_ON}}},
        {"system=dvb-s frequency=10744000000 symbolrate=22000000 polarisation=horizontal",
         SYS_DVBS,
         994000,
         {{DTV_SYMBOL_RATE, 22000000}, {DTV_VOLTAGE, SEC_VOLTAGE_18}, {DTV_TONE, SEC_TONE_OFF}}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.option);
        Kernel kernel;
        AdapterSource source = sourceOver(kernel, one.option);
        source.open();
        EXPECT_TRUE(kernel.hasTuned);
        auto told = kernel.properties;
        for (const uint32_t always : {DTV_CLEAR, DTV_INVERSION, DTV_TUNE})
            EXPECT_EQ(told.erase(always), 1U);
        auto expected = one.others;
        expected.insert({{DTV_DELIVERY_SYSTEM, one.system}, {DTV_FREQUENCY, one.frequency}});
        EXPECT_EQ(told, expected);
    }
}

TEST(Adapter, GivesTheWholeStream) {
    Kernel kernel;
    AdapterSource source = sourceOver(kernel, "system=isdb-t frequency=479142857");
    source.open();
    const std::vector<std::string> devices{"/dev/dvb/adapter1/frontend2",
                                           "/dev/dvb/adapter1/demux2", "/dev/dvb/adapter1/dvr2"};
    EXPECT_EQ(kernel.opened, devices);
    EXPECT_EQ(kernel.filter.pid, 0x2000);
    EXPECT_EQ(kernel.filter.output, DMX_OUT_TS_TAP);
    Bytes stream = test::readMultiplex("mux.ts");
    stream.resize(size_t{100} * TransportPacket::kSize);
    kernel.send(stream);
    test::Taker taker;
    source.read(taker, 77);
    EXPECT_EQ(taker.arrivals, std::vector<int64_t>(100, 77));
    EXPECT_TRUE(taker.stream == stream);
    const auto quality = source.quality();
    EXPECT_TRUE(quality->isLocked);
    EXPECT_DOUBLE_EQ(quality->strength.value_or(0), -53.5);
    EXPECT_FALSE(quality->ratio);
    kernel.unplug();
    EXPECT_THROW(source.read(taker, 78), TunerError);
    source.open();
    EXPECT_EQ(kernel.opened.size(), 2 * devices.size()) << "it may have been plugged in again";
}

TEST(Adapter, TellsWhyItCanNotBeUsed) {
    for (const auto& [refusal, code] : {std::pair{EBUSY, e_pl_dtv_error_resource_unavailable},
                                        std::pair{EACCES, e_pl_dtv_error_not_allowed},
                                        std::pair{ENODEV, e_pl_dtv_error_operation_unavailable},
                                        std::pair{ENOENT, e_pl_dtv_error_unavailable}}) {
        Kernel kernel;
        kernel.refusal = refusal;
        AdapterSource source = sourceOver(kernel, "system=isdb-t frequency=479142857");
        try {
            source.open();
            ADD_FAILURE() << refusal;
        } catch (const TunerError& error) {
            EXPECT_EQ(error.code(), code);
        }
        kernel.refusal = 0;
        EXPECT_NO_THROW(source.open());
    }
}

}  // namespace
}  // namespace quiravent::desktop
