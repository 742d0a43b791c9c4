#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "tests/board.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace {

class Audio : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        stOutVideoInfo = {};
        Quietly([] { WriteNValue(6144); });
        Journal();
    }
    void TearDown() override {
        stOutVideoInfo = {};
        Board::TearDown();
    }
    /// The output format, and the video PLL of its pixel clock: 27 MHz * m / (p << s).
    static void Output(std::uint8_t frmt, std::uint16_t p, std::uint16_t m, std::uint16_t s) {
        stOutVideoInfo.frmt = frmt;
        sim::KovaRegister(0x2C) = p;
        sim::KovaRegister(0x2E) = m;
        sim::KovaRegister(0x30) = s;
    }
    static std::uint32_t Register24(std::uint8_t reg) {
        std::uint32_t value = 0;
        Quietly([&] { value = reg == 0x03 ? ReadNValue() : ReadCTSValue(); });
        return value;
    }
    /// What SetN writes, as N, channel status code and audio input; and what it reports last.
    struct Set {
        std::uint32_t n;
        unsigned code, input;
        bool operator==(const Set&) const = default;
    };
    static Set SetNow() {
        sim::TxRegister(sim::Page::Hdmi2, 0x21) = 0xEE;
        sim::TxRegister(sim::Page::Hdmi2, 0x14) = 0x10;
        Quietly(SetN);
        return {Register24(0x03), sim::TxRegister(sim::Page::Hdmi2, 0x21), sim::TxRegister(sim::Page::Hdmi2, 0x14)};
    }
};

TEST_F(Audio, SetNFollowsTheRateThatArrives) {
    struct Case {
        std::uint8_t frmt;
        std::uint16_t p, m, s;
        std::uint32_t hertz;
        Set set;
    };
    for (const Case& c : {
             Case{VIDOUT_1280x720p60, 4, 44, 2, 48'000, {6144, 0x02, 0x11}}, // 74.17 MHz has no row
             Case{VIDOUT_720x480p60, 4, 16, 2, 32'000, {4096, 0x03, 0x11}},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 44'100, {17836, 0x00, 0x11}},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 48'000, {11648, 0x02, 0x11}},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 88'200, {35672, 0x08, 0x11}},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 96'000, {23296, 0x0A, 0x11}},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 176'400, {71344, 0x0C, 0x11}},
             Case{VIDOUT_1280x720p50, 4, 44, 2, 192'000, {46592, 0x0E, 0x11}},
             // A PC timing's row does not carry its real clock: no rate is found, audio is switched on all the same.
             Case{VIDOUT_1280x1024p60, 4, 16, 0, 48'000, {46592, 0xEE, 0x11}},
         }) {
        Output(c.frmt, c.p, c.m, c.s);
        sim::SetAudio(c.hertz);
        EXPECT_EQ(SetNow(), c.set) << int{c.frmt} << ' ' << c.hertz;
    }
}

TEST_F(Audio, SetNReportsAndAcknowledges) {
    Output(VIDOUT_720x480p60, 4, 16, 2);
    sim::SetAudio(48'000);
    EXPECT_EQ(Capture(SetN).err, " \n\rHDMI TX: WaitForStableCTS() --> Stable"
                                 " \n\rHDMI TX : CTS Value = 270, N Value = 6144, Fs Value = 480"
                                 " \n\rHDMI TX : Get Audio Sample Rate = 48kHz");
    const std::string journal = Transfers();
    EXPECT_EQ(journal.find("hdmi1 w 71 18\nhdmi2 r 09 78\nhdmi2 r 0a 69\nhdmi2 r 0b 00\n"), 0U); // CTS 27000
    // Five rounds of two reads, one more and N to measure, then N, code and audio.
    EXPECT_EQ(std::count(journal.begin(), journal.end(), '\n'), 1 + 5 * 2 * 3 + 3 + 3 + 3 + 1 + 2);
    EXPECT_NE(
        journal.find("hdmi2 w 03 00\nhdmi2 w 04 18\nhdmi2 w 05 00\nhdmi2 w 21 02\nhdmi2 r 14 00\nhdmi2 w 14 01\n"),
        std::string::npos);
}

TEST_F(Audio, WithoutAStableClockEverythingStays) {
    Output(VIDOUT_720x480p60, 4, 16, 2);
    for (const auto& [hertz, jitter] : {std::pair{48'000U, 3U}, {0U, 0U}, {400'000U, 0U}}) { // the last: CTS 3240
        sim::SetAudio(hertz, jitter);
        Journal();
        EXPECT_EQ(Capture(SetN).err, " \n\rHDMI TX : CTS Time out expired!"
                                     " \n\rHDMI TX: WaitForStableCTS() --> UnStable");
        const std::string journal = Transfers();
        EXPECT_EQ(std::count(journal.begin(), journal.end(), '\n'), 1 + 60);
        EXPECT_EQ(journal.find(" w ", 8), std::string::npos);
    }
}

TEST_F(Audio, TheClockIsStableWhenFiveRoundsInARowAgree) {
    using Cts = std::vector<std::uint32_t>;
    struct Case {
        Cts measurements; // two a round, repeated
        int result, reads;
    };
    for (const Case& c : {
             Case{{5001}, 1, 10},
             Case{{5000}, 0, 20},
             Case{{4000, 6000}, 0, 20},
             Case{{6000, 6002, 6002, 6000}, 1, 10},
             Case{{6000, 6003}, 0, 20},
             Case{{6003, 6000}, 0, 20},
             Case{{6000, 6000, 4000, 4000}, 1, 18}, // a round without a clock neither counts nor starts over
             Case{{6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6009}, 0, 20}, // starts over
             Case{{0xFFFFFF, 0}, 0, 20},
         }) {
        sim::PlayCts(c.measurements);
        Journal();
        Quietly([&] { EXPECT_EQ(WaitForStableCTS(), c.result); });
        const std::string journal = JournalWith("hdmi2 r 09");
        EXPECT_EQ(std::count(journal.begin(), journal.end(), '\n'), c.reads);
    }
}

TEST_F(Audio, TheRateIsClassifiedWithinItsBounds) {
    // CTS 10000 and N 128 * 100 make Fs the pixel clock.
    const auto fs = [](std::uint16_t pixclk) {
        std::uint8_t rate = 0;
        Quietly([&] { rate = GetFs(pixclk); });
        return rate;
    };
    static constexpr std::array<std::uint32_t, 1> kCts{10'000}, kBroken{99}, kFailed{0xFFFFFF};
    sim::PlayCts(kCts);
    Quietly([] { WriteNValue(12'800); });
    for (const auto& [measured, rate] :
         {std::pair{310, 0}, {311, 32},   {329, 32}, {330, 0},    {430, 0},    {431, 44}, {449, 44},
          {450, 0},          {470, 0},    {471, 48}, {489, 48},   {490, 0},    {870, 0},  {871, 88},
          {889, 88},         {890, 0},    {950, 0},  {951, 96},   {969, 96},   {970, 0},  {1700, 0},
          {1701, 176},       {1799, 176}, {1800, 0}, {1801, 192}, {1999, 192}, {2000, 0}}) {
        EXPECT_EQ(fs(static_cast<std::uint16_t>(measured)), rate) << measured;
    }
    sim::PlayCts(kBroken); // broken down since it was found stable
    EXPECT_EQ(fs(480), 0);
    sim::PlayCts(kFailed);
    Quietly([] { WriteNValue(0xFFFFFF); });
    EXPECT_EQ(Capture([] { GetFs(65535); }).err,
              " \n\rHDMI TX : CTS Value = 167772, N Value = 16777215, Fs Value = 51199");
}

TEST_F(Audio, UnknownRatesAndSwitches) {
    EXPECT_EQ(GetFsIndex(50), 0xFF);
    EXPECT_EQ(SearchOptimumNValue(2517, 50), 4576U);
    // N / (128 x rate) is the same for a rate, twice and four times it.
    constexpr std::array<std::uint8_t, 7> kRates{32, 44, 48, 88, 96, 176, 192};
    for (const auto& [clock, n32, n44, n48] :
         {std::tuple{0, 4096U, 6272U, 6144U}, {2517, 4576U, 7007U, 6864U}, {7425, 11648U, 17836U, 11648U}}) {
        const std::array<std::uint32_t, 7> expected{n32, n44, n48, 2 * n44, 2 * n48, 4 * n44, 4 * n48};
        for (std::size_t i = 0; i < kRates.size(); ++i) {
            EXPECT_EQ(GetFsIndex(kRates[i]), i);
            EXPECT_EQ(SearchOptimumNValue(static_cast<std::uint16_t>(clock), kRates[i]), expected[i]) << clock;
        }
    }
    Journal();
    Quietly([] {
        SetI2SFsStatus(50);
        TXSPDIFSelect(2);
        EXPECT_EQ(IsSPDIFSelected(), 1);
        EXPECT_EQ(IsAudioDisabled(), 1);
        TXAudio(2);
        EXPECT_EQ(IsAudioDisabled(), 0);
        TXSPDIFSelect(0);
        EXPECT_EQ(IsSPDIFSelected(), 0);
        TXAudio(0);
    });
    EXPECT_EQ(Writes(), "hdmi2 w 14 02\nhdmi2 w 14 03\nhdmi2 w 14 01\nhdmi2 w 14 00\n");
}

} // namespace
