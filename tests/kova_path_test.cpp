// The video path update as a whole, and the start values of the global variables. The recorded sessions compare every
// transfer of the start-up sequence, which contains an update.

#include "edid/EDIDParse.h"
#include "tests/kova_driver.h"

namespace {

// The values of the global variables at program start, before any test.
const auto kAtStart = std::tuple(
    stKOVASrcWIN, stKOVADstWIN, stKOVAZoomWIN, stKOVAViewWIN, stKOVADeint.state, stKOVADeint.v2tab, stKOVADeint.choices,
    stKOVADeint.nrUse, KOVAMFCCoef, KOVAPLLClock, OutVideoMode, OutVideoFrmt, SrcVideoFrmt, OutputState, OldOutputState,
    RequireConfigInfoFrame, Default656OutEn, DefaultDataEnable, DefaultICLKValue, DefaultDVImode, DefaultICLKEDGE,
    DefaultMCLKIndex, DefaultActiveAspect, DefaultAudioConfig, DefaultAUDInfoFrame, CEAOnFisrtPage,
    gbExtensionBlockExist, gbVendorSpecificBlockExist, gwCECPhysicalAddr, gbMonCap, gbNativeVIC, gbNativeVICtemp);

TEST(StartValues, AreZero) { EXPECT_EQ(kAtStart, decltype(kAtStart){}); }

class KovaPath : public KovaDriver {
protected:
    SrcVideoInfo src{.frmt = VIDSRC_704x480i60, .mode = MUX656_10};
    OutVideoInfo out{.frmt = VIDOUT_1280x1024p60, .mode = RGB444_8};
};

TEST_F(KovaPath, InvalidFormatStopsUpdate) {
    struct Case {
        std::uint8_t srcFrmt, srcMode, outFrmt;
    };
    for (const Case& c : {Case{VIDSRC_COUNT, MUX656_10, 0}, Case{0, 10, 0}, Case{0, RGB444_8, VIDOUT_COUNT}}) {
        src = {.frmt = c.srcFrmt, .mode = c.srcMode};
        out.frmt = c.outFrmt;
        Fill(0);
        Note(KOVAAPI_VideoProcess(&src, &out), "source", c.srcFrmt, "mode", c.srcMode, "output", c.outFrmt);
        // The double-rate update stops at the same step. The state bit of the double rate is set.
        Note(KOVAAPI_HDDBLProcess(&src, &out, 1), "double rate, clock", KOVAPLLClock, "state", stKOVADeint.state);
    }
}

TEST_F(KovaPath, FailedTransfersAreNotReported) {
    sim::FailEvery(1);
    Quietly([this] { EXPECT_EQ(KOVAAPI_HDDBLProcess(&src, &out, 1), KOVA_NO_ERROR); });
    EXPECT_EQ(stKOVADstWIN, (VideoWindow{696, 480}));
}

TEST_F(KovaPath, DoubleRateUpdateAddsItsSteps) {
    const auto note = [this](std::uint8_t on) {
        const std::uint8_t result = KOVAAPI_HDDBLProcess(&src, &out, on);
        log << "source window " << stKOVASrcWIN << ' ';
        Note(result, "double rate", on, "state", stKOVADeint.state, "clock", KOVAPLLClock, "wrote\n   ");
    };
    KOVAAPI_HDDBLProcess(&src, &out, 0); // this loads the scaler set
    Journal();
    note(0);
    note(2);
    src.mode = MUX656_8_B;
    src.stClip = {640, 400, 8, 9};
    note(1);
    src.stClip = {640, 0, 8, 9}; // a clip without a height is not used
    note(1);
}

} // namespace
