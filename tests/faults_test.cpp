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
        std::string requests, failed; // as in the journal without values; the one that failed, with its value
        std::size_t messages = 0;
    };

    template <typename Code>
    Run Try(std::uint32_t failing, Code code) {
        TearDown();
        SetUp();
        sim::FailRequests(failing, failing != 0 ? 1 : 0);
        Run run;
        const std::string out = Capture(code).out;
        for (std::size_t at = 0; (at = out.find(" error ", at)) != std::string::npos; ++at) {
            ++run.messages;
        }
        std::istringstream journal(Transfers());
        for (std::string line; std::getline(journal, line);) {
            if (line.ends_with(" failed")) {
                run.failed = line;
            }
            // Chip, direction, register.
            run.requests.append(line, 0, line.find(' ', line.find(' ', line.find(' ') + 1) + 1)) += '\n';
        }
        return run;
    }

    static std::uint32_t Count(const std::string& requests) {
        return static_cast<std::uint32_t>(std::ranges::count(requests, '\n'));
    }
};

TEST_F(Faults, AnyRequestOfTheStartUpMayFailAndNothingElseChanges) {
    const auto registers = [] { return std::vector(&sim::KovaRegister(0), &sim::KovaRegister(0x600)); };
    const Run good = Try(0, CreateKOVAAPIVideoInstance);
    const std::vector<std::uint16_t> goodRegisters = registers();
    ASSERT_GT(Count(good.requests), 1800U);
    for (std::uint32_t failing = 1; failing <= Count(good.requests); ++failing) {
        const Run run = Try(failing, CreateKOVAAPIVideoInstance);
        // The device ID, which comes first, is asked for until it comes.
        const std::string expected = (failing == 1 ? "kova r 0004\n" : "") + good.requests;
        EXPECT_TRUE(run.requests == expected) << run.failed;
        EXPECT_EQ(run.messages, 1U) << run.failed;
        const std::vector<std::uint16_t> now = registers();
        EXPECT_LE(
            std::inner_product(now.begin(), now.end(), goodRegisters.begin(), 0, std::plus{}, std::not_equal_to{}), 1)
            << run.failed;
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
    const std::uint32_t requests = Count(plug(0, kOn).requests);
    ASSERT_GT(requests, 2000U);
    unplug(kOn);
    std::string others;
    for (std::uint32_t failing = 1; failing <= requests; ++failing, unplug(kAgain)) {
        const Run run = plug(failing, kAgain);
        EXPECT_EQ(run.messages, 1U) << run.failed;
        if (OutputState != OUTPUT_HDMI || (sim::TxRegister(sim::Page::Hdmi1, 0x08) & 1) == 0) {
            others += run.failed + ": state " + std::to_string(OutputState) + "\n";
        }
    }
    // The check value has 13 effective bits, and this garbled parse has that of the good one: DVI until the next plug.
    EXPECT_EQ(others, "hdmi1 r f4 00 failed: state 5\n");
}

} // namespace
