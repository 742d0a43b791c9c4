// The format tables against the standards.

#include "kova/formats.h"
#include "tests/board.h"

#include <sstream>

namespace {

// CEA-861 for the television formats, VESA DMT for the others (640x480p60 from 25.18 instead of 25.175 MHz, as near as
// the PLL gets). Pulse and back porch in pixels and lines.
struct Standard {
    unsigned width, height, milliHertz; // fields a second of an interlaced format
    unsigned hPulse, hBack, vPulse, vBack;
    const char* polarity; // H, V; "i": interlaced
};

// clang-format off
constexpr std::array<Standard, VIDOUT_COUNT> kStandards{{
    { 720,  480, 59'940,  62,  57, 3, 15, "--i"}, { 720,  576, 50'000,  63,  69, 3, 19, "--i"},
    { 720,  480, 59'940,  62,  60, 6, 30, "--" }, { 720,  576, 50'000,  64,  68, 5, 39, "--" },
    {1280,  720, 60'000,  40, 220, 5, 20, "++" }, {1280,  720, 50'000,  40, 220, 5, 20, "++" },
    {1920, 1080, 60'000,  44, 148, 5, 15, "++i"}, {1920, 1080, 50'000,  44, 148, 5, 15, "++i"},
    {1920, 1080, 60'000,  44, 148, 5, 36, "++" }, {1920, 1080, 50'000,  44, 148, 5, 36, "++" },
    { 640,  480, 59'959,  96,  48, 2, 33, "--" }, { 640,  480, 75'000,  64, 120, 3, 16, "--" },
    { 800,  600, 60'317, 128,  88, 4, 23, "++" }, { 800,  600, 75'000,  80, 160, 3, 21, "++" },
    {1024,  768, 60'004, 136, 160, 6, 29, "--" }, {1024,  768, 75'029,  96, 176, 3, 28, "++" },
    {1280, 1024, 60'020, 112, 248, 3, 38, "++" }, {1280, 1024, 75'025, 144, 248, 3, 38, "++" },
    {1360,  768, 60'015, 112, 256, 6, 18, "++" }, {1440,  900, 59'887, 152, 232, 6, 25, "-+" },
    {1680, 1050, 59'954, 176, 280, 6, 30, "-+" }, {1600, 1200, 60'000, 192, 304, 3, 46, "++" },
    {1680, 1050, 59'883,  32,  80, 6, 21, "+-" }, {1920, 1080, 59'934,  32,  80, 5, 23, "+-" },
}};
// clang-format on

double PixelClock(const SyncTiming& sync) {
    return 27e6 * sync[SYNC_PLL_M] / (sync[SYNC_PLL_P] * double(1U << sync[SYNC_PLL_S]));
}

TEST(KovaFormats, OutputTimingsAreTheStandards) {
    for (std::size_t frmt = 0; frmt < VIDOUT_COUNT; ++frmt) {
        SCOPED_TRACE(frmt);
        const Standard& standard = kStandards[frmt];
        const OutVideoRow& row = defKOVAOutVideo[frmt];
        const SyncTiming& sync = defKOVAOutSync[frmt];
        const std::string polarity = standard.polarity;
        const bool interlaced = polarity.size() == 3;
        const unsigned fields = interlaced ? 2 : 1;

        EXPECT_EQ(row.width, standard.width);
        EXPECT_EQ(row.height, standard.height);
        EXPECT_EQ(row.flags,
                  0x0100 + (interlaced ? 0 : 8) + (polarity[1] == '+' ? 0x10 : 0) + (polarity[0] == '+' ? 0x20 : 0));

        const double frames = PixelClock(sync) / (sync[SYNC_H_TOTAL] * sync[SYNC_V_TOTAL]);
        EXPECT_NEAR(frames * fields * 1000, standard.milliHertz, 1.0);
        EXPECT_EQ(sync[SYNC_H_SYNC_START], 1);
        EXPECT_EQ(sync[SYNC_H_SYNC_END] - sync[SYNC_H_SYNC_START], standard.hPulse);
        EXPECT_EQ(sync[SYNC_H_ACTIVE_START] - sync[SYNC_H_SYNC_END], standard.hBack);
        EXPECT_EQ(sync[SYNC_H_ACTIVE_END] - sync[SYNC_H_ACTIVE_START], standard.width);
        EXPECT_LE(sync[SYNC_H_ACTIVE_END], sync[SYNC_H_TOTAL]);
        EXPECT_EQ(sync[SYNC_V_SYNC_END] - sync[SYNC_V_SYNC_START], standard.vPulse);
        EXPECT_EQ(sync[SYNC_V_ACTIVE_START] - sync[SYNC_V_SYNC_END], standard.vBack);
        EXPECT_EQ(sync[SYNC_V_ACTIVE_END] - sync[SYNC_V_ACTIVE_START], standard.height / fields);
        EXPECT_LE(sync[SYNC_V_ACTIVE_END], sync[SYNC_V_TOTAL]);
        EXPECT_EQ(sync[SYNC_SETUP], 20);
        EXPECT_EQ(sync[SYNC_SETUP + 1], 10);
        // The fast formats need the stronger TMDS drive.
        EXPECT_EQ(defKOVAOutTMDS[frmt], PixelClock(sync) > 60e6 ? (TmdsDrive{7, 5}) : (TmdsDrive{4, 8}));
    }
}

TEST(KovaFormats, DacDataKeepTheirRows) {
    std::ostringstream rows;
    for (const DacData& row : defKOVADACData) {
        for (const std::uint16_t word : row) {
            rows << std::hex << word << ' ';
        }
        rows << '\n';
    }
    ExpectGolden("kova-dac.txt", rows.str());
}

} // namespace
