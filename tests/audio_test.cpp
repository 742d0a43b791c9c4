#include "tests/board.h"

#include <algorithm>
#include <vector>

namespace {

class Audio : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        Quietly([] { WriteNValue(6144); });
    }
    /// Sets the output format, and sets the video PLL to a pixel clock of 27 MHz * m / (p << s).
    static void Output(std::uint8_t frmt, std::uint16_t p, std::uint16_t m, std::uint16_t s) {
        stOutVideoInfo.frmt = frmt;
        sim::KovaRegister(0x2C) = p;
        sim::KovaRegister(0x2E) = m;
        sim::KovaRegister(0x30) = s;
    }
};

TEST_F(Audio, SetNFollowsMeasuredRate) {
    struct Case {
        std::uint8_t frmt;
        std::uint16_t p, m, s;
        std::uint32_t hertz, jitter = 0;
    };
    for (const Case& c : {
             Case{VIDOUT_1280x720p60, 4, 44, 2, 48'000}, // no row of the N table has this timing's 74.17 MHz
             Case{VIDOUT_720x480p60, 4, 16, 2, 32'000},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 44'100},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 48'000},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 88'200},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 96'000},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 176'400},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 192'000},
             // The video mode table does not have the real pixel clock of a PC timing. No rate is found, but audio is
             // switched on.
             Case{VIDOUT_1280x1024p60, 4, 16, 0, 48'000},
             // Without a stable clock nothing changes.
             Case{VIDOUT_720x480p60, 4, 16, 2, 48'000, 3},
             Case{VIDOUT_720x480p60, 4, 16, 2, 0},
             Case{VIDOUT_720x480p60, 4, 16, 2, 400'000},
         }) {
        Output(c.frmt, c.p, c.m, c.s);
        sim::SetAudio(c.hertz, c.jitter);
        sim::TxRegister(sim::Page::Hdmi2, 0x14) = 0x10;
        Log("format " + std::to_string(c.frmt) + ", " + std::to_string(c.hertz) + " Hz", SetN,
            log.str().empty() ? "" : " w ");
    }
}

TEST_F(Audio, ClockIsStableAfterFiveEqualRounds) {
    using Cts = std::vector<std::uint32_t>; // two measurements for each round, repeated
    for (const Cts& measurements :
         {Cts{5001}, Cts{5000}, Cts{4000, 6000}, Cts{6000, 6002, 6002, 6000}, Cts{6000, 6003}, Cts{6003, 6000},
          Cts{6000, 6000, 4000, 4000}, // a CTS up to 5000 means no clock; the count of equal rounds is kept
          Cts{6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6009}, // the last round sets the count to 0
          Cts{0xFFFFFF, 0}}) {
        sim::PlayCts(measurements);
        Journal();
        std::uint8_t stable = 0xFF;
        Quietly([&] { stable = WaitForStableCTS(); });
        const std::string journal = JournalWith("hdmi2 r 09");
        log << measurements.front() << ' ' << measurements.back() << ": stable " << int{stable} << " after "
            << std::count(journal.begin(), journal.end(), '\n') << " measurements\n";
    }
}

TEST_F(Audio, RateIsFoundWithinItsBounds) {
    // With CTS 10000 and N 128 * 100 the sample rate equals the pixel clock.
    static constexpr std::array<std::uint32_t, 1> kCts{10'000}, kTooSmall{99}, kFailed{0xFFFFFF};
    sim::PlayCts(kCts);
    Quietly([&] {
        WriteNValue(12'800);
        unsigned rate = 0;
        for (std::uint16_t fs = 0; fs < 2100; ++fs) {
            if (const std::uint8_t now = GetFs(fs); now != rate) {
                rate = now;
                log << fs << ':' << rate << '\n';
            }
        }
    });
    sim::PlayCts(kTooSmall); // the CTS can fall after it was found stable
    Quietly([] { EXPECT_EQ(GetFs(480), 0); });
    sim::PlayCts(kFailed);
    Quietly([] { WriteNValue(0xFFFFFF); });
    log << Capture([] { GetFs(65535); }).err << '\n';
}

} // namespace
