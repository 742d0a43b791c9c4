// The effect of a single failed request, for each request of the start-up and of the loop.

#include "app/control_loop.h"
#include "tests/kova_driver.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace {

class Faults : public KovaDriver {
protected:
    /// Runs code on a board as at power-on. The request with the number "failing" fails. Its failure must be reported
    /// once. If the number is 0, no request fails. @return the number of requests
    template <typename Code>
    std::uint32_t Try(std::uint32_t failing, Code code) {
        TearDown();
        SetUp();
        sim::FailRequests(failing, failing != 0 ? 1 : 0);
        const std::string out = Capture(code).out, transfers = Transfers();
        const std::size_t end = transfers.find(" failed");
        const std::size_t start = transfers.rfind('\n', end) + 1;
        failed = end == std::string::npos ? "" : transfers.substr(start, end - start);
        EXPECT_EQ(out.find(" error ") != std::string::npos, failing != 0) << failed;
        EXPECT_EQ(out.find(" error "), out.rfind(" error ")) << failed;
        return static_cast<std::uint32_t>(std::ranges::count(transfers, '\n'));
    }
    std::string failed; // the request that failed, as in the journal

    static std::vector<unsigned> Registers() {
        std::vector<unsigned> all(&sim::KovaRegister(0), &sim::KovaRegister(0x600));
        for (const sim::Page page : {sim::Page::Hdmi1, sim::Page::Hdmi2}) {
            all.insert(all.end(), &sim::TxRegister(page, 0), &sim::TxRegister(page, 0xFF) + 1);
        }
        return all;
    }
    /// The number of registers that differ from these.
    static int Changed(const std::vector<unsigned>& from) {
        return std::transform_reduce(from.begin(), from.end(), Registers().begin(), 0, std::plus{},
                                     std::not_equal_to{});
    }
};

TEST_F(Faults, StartUpSurvivesAnyFailedRequest) {
    const auto startUp = [] { // first fills the records with values that a caller may have left
        stSrcVideoInfo = {.mode = 255, .auxFlags = 255, .ycOffset = 7, .stClip = {1, 2, 3, 4}, .flags = 0xFFFF};
        stOutVideoInfo = {.frmt = 255, .auxFlags = 0xFFFF, .stZoom = {1, 2, 3, 4}, .stView = {1, 2, 3, 4}, .hue = 1};
        CreateKOVAAPIVideoInstance();
    };
    const std::uint32_t requests = Try(0, CreateKOVAAPIVideoInstance);
    const std::vector<unsigned> registers = Registers();
    ASSERT_GT(requests, 1800U);
    for (std::uint32_t failing = requests; failing > 0; --failing) {
        // The device ID is request 1. It is read again until the read succeeds.
        EXPECT_EQ(Try(failing, startUp), requests + (failing == 1 ? 1 : 0)) << failed;
        EXPECT_LE(Changed(registers), 1) << failed;
    }
}

TEST_F(Faults, LoopSurvivesAnyFailedRequest) {
    constexpr unsigned kOn = 136;             // passes until HDMI output is reported
    constexpr unsigned kAgain = kOn + 3 * 32; // passes until HDMI output after the EDID was read again
    constexpr unsigned kPeriod = 992;
    const auto pass = [](unsigned count) {
        while (count-- > 0) {
            KOVAAPI_GetParseIRQ();
            HDMIHandler();
        }
    };
    const auto plug = [&](std::uint32_t failing, unsigned passes) {
        return Try(failing, [&] {
            sim::Plug(sim::kBuiltInEdid);
            sim::ForgetInterrupts();
            sim::TxRegister(sim::Page::Hdmi1, 0x08) = 0x36;
            pass(passes);
        });
    };
    // The loop's state is kept from run to run. The loop repeats its steps every 992 passes (kPeriod). So passes
    // without a sink fill each run up to a whole period, and each run begins at the start of a period.
    const auto unplug = [&](unsigned passes) { Try(0, [&] { pass(kPeriod - passes); }); };
    const std::uint32_t requests = plug(0, kOn);
    ASSERT_GT(requests, 2000U);
    unplug(kOn);
    plug(0, kAgain);
    const std::vector<unsigned> registers = Registers();
    unplug(kAgain);
    std::string wrong;
    for (std::uint32_t failing = 1; failing <= requests; ++failing, unplug(kAgain)) {
        plug(failing, kAgain);
        if (OutputState != OUTPUT_HDMI || (sim::TxRegister(sim::Page::Hdmi1, 0x08) & 1) == 0
            || Changed(registers) > 1) {
            wrong += failed + ": state " + std::to_string(OutputState) + "\n";
        }
    }
    // The CRC has 13 effective bits. One read of the EDID FIFO (f4) can fail so that the wrong EDID has the same CRC as
    // the good EDID. The output then stays DVI until the next hot plug.
    EXPECT_EQ(wrong, "hdmi1 r f4 00: state 5\n");
}

} // namespace
