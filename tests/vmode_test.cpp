#include "hdmitx/vmtables.h"
#include "kova/formats.h"

#include <gtest/gtest.h>

namespace {

// Every digit of the table, by FNV-1a over the fields in their order, low byte first.
TEST(VModeTables, HasEveryDigit) {
    std::uint32_t hash = 2166136261;
    const auto feed = [&hash](unsigned value) {
        for (const unsigned byte : {value & 0xFF, value >> 8}) {
            hash = (hash ^ byte) * 16777619;
        }
    };
    for (const VModeRow& r : VModeTables) {
        for (const unsigned value :
             {unsigned{r.Vic},          unsigned{r.WideVic},       unsigned{r.SubMode},     unsigned{r.PixClk},
              unsigned{r.SyncFlags},    unsigned{r.VFreq},         unsigned{r.HTotal},      unsigned{r.VTotal},
              unsigned{r.DeDelay},      unsigned{r.DeTop},         unsigned{r.HActive},     unsigned{r.VActive},
              unsigned{r.Aspect},       unsigned{r.EmbSyncAdjust}, unsigned{r.HSyncWidth},  unsigned{r.VSyncWidth},
              unsigned{r.VBackPorch},   unsigned{r.HBackPorch},    unsigned{r.HFrontPorch}, unsigned{r.VFrontPorch},
              unsigned{r.Field2Offset}, unsigned{r.PixRepeat}}) {
            feed(value);
        }
    }
    EXPECT_EQ(hash, 0x8DD9D062);
}

TEST(VModeTables, EachOutputFormatHasTheRowOfItsPicture) {
    for (std::uint8_t frmt = 0; frmt < 18; ++frmt) {
        const std::uint8_t index = KovaFrmt2VMIndex(frmt);
        const VModeRow& row = VModeTables[index];
        const auto& out = defKOVAOutVideo[frmt];
        EXPECT_EQ(row.HActive, frmt == VIDOUT_720x576i50 ? 1440 : out.width) << int{frmt}; // sent with repeated pixels
        EXPECT_EQ(row.VActive, out.height) << int{frmt};
        EXPECT_EQ((row.SyncFlags & VMODE_INTERLACED) == 0, (out.flags & VIDFLAG_PROGRESSIVE) != 0) << int{frmt};
        EXPECT_EQ(IsCeaRow(index), frmt <= VIDOUT_1920x1080p50) << int{frmt};
        const bool slow = frmt == VIDOUT_720x576i50 || frmt == VIDOUT_720x576p50 || frmt == VIDOUT_1280x720p50
                          || frmt == VIDOUT_1920x1080i50 || frmt == VIDOUT_1920x1080p50;
        const bool fast = frmt == VIDOUT_640x480p75 || frmt == VIDOUT_800x600p75 || frmt == VIDOUT_1024x768p75
                          || frmt == VIDOUT_1280x1024p75;
        EXPECT_NEAR(row.VFreq, slow ? 5000 : fast ? 7500 : 6000, 35) << int{frmt};
    }
    for (const unsigned frmt : {18U, 23U, 24U, 255U}) {
        EXPECT_EQ(KovaFrmt2VMIndex(static_cast<std::uint8_t>(frmt)), 78);
    }
}

TEST(VModeTables, PixelClocksAreThoseOfTheRow) {
    EXPECT_EQ(GetPixelClock(0), 2517);
    EXPECT_EQ(GetPixelClock(11), 14835);
    EXPECT_EQ(GetPixelClock(51), 2700); // not the timing's real clock
    EXPECT_EQ(GetPixelClock(78), 0);
    EXPECT_EQ(GetPixelClock(82), 0);
    EXPECT_EQ(GetPixelClock(255), 0);
}

} // namespace
