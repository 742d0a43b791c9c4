// What a single failed request does, for every request that there is.

#include "app/control_loop.h"
#include "hdmitx/hdmitx.h"
#include "tests/kova_driver.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace {

class Faults : public KovaDriver {
protected:
    /// What a piece of code did on a board that is as after power-on, where the request of this number fails; 0: none.
    struct Run {
        std::string requests, failed; // as in the journal, without values; the one that failed, with its value
        bool oneMessage = false;
    };

    template <typename Code>
    Run Try(std::uint32_t failing, Code code) {
        TearDown();
        SetUp();
        sim::FailRequests(failing, failing != 0 ? 1 : 0);
        Run run;
        const std::string out = Capture(code).out;
        run.oneMessage = out.find(" error ") != std::string::npos && out.find(" error ") == out.rfind(" error ");
        std::istringstream journal(Transfers());
        for (std::string line; std::getline(journal, line);) {
            run.failed = line.ends_with(" failed") ? line : run.failed;
            run.requests += line.substr(0, std::size("kova r 0123") - 1) + '\n';
        }
        return run;
    }
    static std::uint32_t Count(const Run& run) {
        return static_cast<std::uint32_t>(std::ranges::count(run.requests, '\n'));
    }

    static std::vector<unsigned> Registers() {
        std::vector<unsigned> all(&sim::KovaRegister(0), &sim::KovaRegister(0x600));
        for (const sim::Page page : {sim::Page::Hdmi1, sim::Page::Hdmi2}) {
            all.insert(all.end(), &sim::TxRegister(page, 0), &sim::TxRegister(page, 0xFF) + 1);
        }
        return all;
    }
    /// How many registers differ from these.
    static int Changed(const std::vector<unsigned>& from) {
        return std::transform_reduce(from.begin(), from.end(), Registers().begin(), 0, std::plus{},
                                     std::not_equal_to{});
    }
};

TEST_F(Faults, AnyRequestOfTheStartUpMayFailAndNothingElseChanges) {
    const auto startUp = [] { // whatever a caller has changed before
        stSrcVideoInfo = {.mode = 255, .auxFlags = 255, .ycOffset = 7, .stClip = {1, 2, 3, 4}, .flags = 0xFFFF};
        stOutVideoInfo = {.frmt = 255, .auxFlags = 0xFFFF, .stZoom = {1, 2, 3, 4}, .stView = {1, 2, 3, 4}, .hue = 1};
        CreateKOVAAPIVideoInstance();
    };
    const Run good = Try(0, CreateKOVAAPIVideoInstance);
    const std::vector<unsigned> registers = Registers();
    ASSERT_GT(Count(good), 1800U);
    for (std::uint32_t failing = Count(good); failing > 0; --failing) {
        const Run run = Try(failing, startUp);
        // The device ID is asked for until it comes.
        EXPECT_TRUE(run.requests == (failing == 1 ? "kova r 0004\n" : "") + good.requests) << run.failed;
        EXPECT_TRUE(run.oneMessage) << run.failed;
        EXPECT_LE(Changed(registers), 1) << run.failed;
    }
}

TEST_F(Faults, AnyRequestOfTheLoopMayFailAndTheOutputComesOn) {
    constexpr unsigned kOn = 136;             // passes until the line of the HDMI output
    constexpr unsigned kAgain = kOn + 3 * 32; // and until the EDID has been read anew
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
    // The loop's state outlives a run, so each begins with a period, after passes without a sink.
    const auto unplug = [&](unsigned passes) { Try(0, [&] { pass(kPeriod - passes); }); };
    const std::uint32_t requests = Count(plug(0, kOn));
    ASSERT_GT(requests, 2000U);
    unplug(kOn);
    plug(0, kAgain);
    const std::vector<unsigned> registers = Registers();
    unplug(kAgain);
    std::string others;
    for (std::uint32_t failing = 1; failing <= requests; ++failing, unplug(kAgain)) {
        const Run run = plug(failing, kAgain);
        EXPECT_TRUE(run.oneMessage) << run.failed;
        if (OutputState != OUTPUT_HDMI || (sim::TxRegister(sim::Page::Hdmi1, 0x08) & 1) == 0
            || Changed(registers) > 1) {
            others += run.failed + ": state " + std::to_string(OutputState) + "\n";
        }
    }
    // The check value has 13 effective bits, and this garbled parse has that of the good one: DVI until the next plug.
    EXPECT_EQ(others, "hdmi1 r f4 00 failed: state 5\n");
}

} // namespace
