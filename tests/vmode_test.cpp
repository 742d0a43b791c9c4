#include "hdmitx/vmode.h"
#include "tests/board.h"

namespace {

// The table was checked when it was written. This sum changes if any field changes.
TEST(VModeTables, EveryFieldIsUnchanged) {
    std::uint32_t sum = 0;
    for (const VModeRow& r : VModeTables) {
        for (const unsigned value :
             {unsigned{r.Vic},          unsigned{r.WideVic},       unsigned{r.SubMode},     unsigned{r.PixClk},
              unsigned{r.SyncFlags},    unsigned{r.VFreq},         unsigned{r.HTotal},      unsigned{r.VTotal},
              unsigned{r.DeDelay},      unsigned{r.DeTop},         unsigned{r.HActive},     unsigned{r.VActive},
              unsigned{r.Aspect},       unsigned{r.EmbSyncAdjust}, unsigned{r.HSyncWidth},  unsigned{r.VSyncWidth},
              unsigned{r.VBackPorch},   unsigned{r.HBackPorch},    unsigned{r.HFrontPorch}, unsigned{r.VFrontPorch},
              unsigned{r.Field2Offset}, unsigned{r.PixRepeat}}) {
            sum = (sum ^ value) * 16777619U; // the FNV-1 hash, of words
        }
    }
    EXPECT_EQ(sum, 3261677283U);
}

TEST(VModeTables, EveryFormatHasItsRow) {
    std::string rows;
    for (std::uint8_t frmt = 0; frmt <= VIDOUT_COUNT; ++frmt) {
        const std::uint8_t row = KovaFrmt2VMIndex(frmt);
        rows += std::to_string(row) + (hdmitx::IsCeaRow(row) ? " " : "PC ");
        EXPECT_EQ(GetPixelClock(row), hdmitx::VModeRowAt(row).PixClk);
    }
    EXPECT_EQ(rows,
              "4 15 1 12 2 13 3 14 11 24 34PC 37PC 43PC 45PC 51PC 53PC 58PC 60PC 78PC 78PC 78PC 78PC 78PC 78PC 78PC ");
    EXPECT_TRUE(!hdmitx::IsCeaRow(0) && hdmitx::IsCeaRow(27) && !hdmitx::IsCeaRow(28));
    EXPECT_EQ(GetPixelClock(82) + hdmitx::VModeRowAt(255).HTotal, 0);
}

} // namespace
