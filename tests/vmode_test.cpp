#include "hdmitx/vmtables.h"
#include "tests/board.h"

#include <sstream>

namespace {

TEST(VModeTables, RowsAndTheFormatsThatTheyServe) {
    std::ostringstream text;
    for (unsigned row = 0; row < 256; row = row == VModeTables.size() ? 255 : row + 1) {
        const auto index = static_cast<std::uint8_t>(row);
        const VModeRow& r = VModeRowAt(index);
        text << "row " << row << (IsCeaRow(index) ? " TV" : " PC") << " clock " << GetPixelClock(index) << ':';
        for (const unsigned value :
             {unsigned{r.Vic},          unsigned{r.WideVic},       unsigned{r.SubMode},     unsigned{r.PixClk},
              unsigned{r.SyncFlags},    unsigned{r.VFreq},         unsigned{r.HTotal},      unsigned{r.VTotal},
              unsigned{r.DeDelay},      unsigned{r.DeTop},         unsigned{r.HActive},     unsigned{r.VActive},
              unsigned{r.Aspect},       unsigned{r.EmbSyncAdjust}, unsigned{r.HSyncWidth},  unsigned{r.VSyncWidth},
              unsigned{r.VBackPorch},   unsigned{r.HBackPorch},    unsigned{r.HFrontPorch}, unsigned{r.VFrontPorch},
              unsigned{r.Field2Offset}, unsigned{r.PixRepeat}}) {
            text << ' ' << value;
        }
        text << '\n';
    }
    for (unsigned frmt = 0; frmt < 256; frmt = frmt == 24 ? 255 : frmt + 1) {
        text << "format " << frmt << " row " << unsigned{KovaFrmt2VMIndex(static_cast<std::uint8_t>(frmt))} << '\n';
    }
    ExpectGolden("vmode.txt", text.str());
}

} // namespace
