#include "kova/scaler_tables.h"
#include "tests/kova_driver.h"

namespace {

class KovaWindows : public KovaDriver {
protected:
    void SetUp() override {
        KovaDriver::SetUp();
        src.flags = VIDFLAG_PORT_A;
        src.stActive = {704, 480, 0, 0};
        out.frmt = VIDOUT_1280x1024p60;
        out.stActive = {1280, 1024, 0, 0};
    }

    SrcVideoInfo src{};
    OutVideoInfo out{};
};

TEST_F(KovaWindows, AWholePictureOnPortA) {
    EXPECT_EQ(KOVAAPI_SetWindowSrcVideo(&src), KOVA_NO_ERROR);
    EXPECT_EQ(Transfers(),
              "kova r 0404 0000\nkova w 0404 0000\nkova r 0404 0000\nkova w 0404 0000\n"
              "kova w 0406 02b8\nkova w 0407 01e0\nkova w 043a 02b8\nkova w 043b 01e0\nkova w 04c4 0001\n");
    EXPECT_EQ(KOVAAPI_SetHDecimateVideo(&src), KOVA_NO_ERROR);
    EXPECT_EQ(Transfers(), "");
    EXPECT_EQ(KOVAAPI_SetWindowOutVideo(&out), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "43c:02b8 43d:01e0 432:02b8 433:01e0 434:0000 435:0000 436:0500 437:0400 438:0000 439:0000 u");
}

TEST_F(KovaWindows, CallersWindowsOnPortB) {
    src.flags = 0;
    const VideoWindow clip{640, 400, 0x1FF, 0x7F};
    const VideoWindow view{1000, 700, 4, 5};
    const VideoWindow zoom{320, 200, 6, 7};
    EXPECT_EQ(KOVAAPI_SetWindowSrcCLIP(&src, &clip), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "405:01ff 405:ffff 408:0280 409:0190 43a:0280 43b:0190 u");
    EXPECT_EQ(src.stClip, clip);
    EXPECT_EQ(stKOVASrcWIN, (VideoWindow{640, 400, 0, 0}));
    EXPECT_EQ(KOVAAPI_SetWindowOutVIEW(&out, &view), KOVA_NO_ERROR);
    EXPECT_EQ(KOVAAPI_SetWindowOutZOOM(&out, &zoom), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "43c:0280 43d:0190 432:0280 433:0190 434:0000 435:0000 436:03e8 437:02bc 438:0004 439:0005 u "
                       "43c:0280 43d:0190 432:0140 433:00c8 434:0006 435:0007 436:03e8 437:02bc 438:0004 439:0005 u");
    VideoWindow back{1, 1, 1, 1};
    EXPECT_EQ(KOVAAPI_GetWindowHDECI(&back), KOVA_NO_ERROR);
    EXPECT_EQ(back, (VideoWindow{640, 400, 0, 0}));
}

TEST_F(KovaWindows, RoundingClipDecimationAndDestination) {
    struct Case {
        std::uint16_t flags;
        VideoWindow active, clip, view;
        VideoWindow expectedActive, expectedDst;
        bool decimating;
    };
    constexpr std::uint16_t k8Bit = VIDFLAG_8BIT;
    constexpr std::uint16_t kProgressive = VIDFLAG_PROGRESSIVE;
    const VideoWindow none{};
    for (const Case& c : {
             Case{0, {704, 487, 0, 0}, none, none, {696, 480, 0, 0}, {696, 480, 0, 0}, false},
             Case{k8Bit, {704, 480, 0, 0}, none, none, {704, 480, 0, 0}, {704, 480, 0, 0}, false},
             Case{k8Bit, {1024, 480, 0, 0}, none, none, {1024, 480, 0, 0}, {1024, 480, 0, 0}, false},
             Case{k8Bit, {1032, 480, 0, 0}, none, none, {1032, 480, 0, 0}, {1024, 480, 0, 0}, true},
             Case{k8Bit | kProgressive, {1280, 720, 0, 0}, none, none, {1280, 720, 0, 0}, {1280, 720, 0, 0}, false},
             Case{k8Bit | kProgressive, {1288, 720, 0, 0}, none, none, {1288, 720, 0, 0}, {1024, 720, 0, 0}, true},
             Case{k8Bit | kProgressive,
                  {1920, 1080, 0, 0},
                  none,
                  {1280, 720, 0, 0},
                  {1920, 1080, 0, 0},
                  {1024, 1080, 0, 0},
                  true},
             Case{k8Bit | kProgressive,
                  {1280, 720, 0, 0},
                  none,
                  {720, 480, 0, 0},
                  {1280, 720, 0, 0},
                  {720, 720, 0, 0},
                  false},
             Case{0,
                  {1920, 1080, 0, 0},
                  {1025, 99, 0, 0},
                  none,
                  {1920, 1080, 0, 0},
                  {1024, 99, 0, 0},
                  true}, // a clip is not rounded
             Case{0,
                  {704, 480, 0, 0},
                  {600, 0, 0, 0},
                  {0, 100, 0, 0},
                  {696, 480, 0, 0},
                  {696, 480, 0, 0},
                  false}, // windows not in use
         }) {
        stKOVADeint.state = DEINT_NR_ON | (c.decimating ? 0 : DEINT_DECIMATING);
        src.flags = c.flags;
        src.stActive = c.active;
        src.stClip = c.clip;
        out.stView = c.view;
        KOVAAPI_SetWindowSrcVideo(&src);
        KOVAAPI_SetHDecimateVideo(&src);
        KOVAAPI_SetWindowOutVideo(&out);
        EXPECT_EQ(src.stActive, c.expectedActive);
        EXPECT_EQ(stKOVADstWIN, c.expectedDst) << c.active.w;
        EXPECT_EQ(stKOVADeint.state, DEINT_NR_ON | (c.decimating ? DEINT_DECIMATING : 0)) << c.active.w;
    }
}

TEST_F(KovaWindows, ScalerSetsAreLoadedWhenTheNeedChanges) {
    KOVAPLLClock = 2;
    stKOVADstWIN.h = 481;
    stKOVAViewWIN.h = 240; // half of 481 lines is 240
    EXPECT_EQ(KOVAAPI_SetMFCFilterCoef(&out), KOVA_NO_ERROR);
    EXPECT_EQ(Checksum(Transfers()), 0x4EC759D0);
    EXPECT_EQ(KOVAAPI_SetMFCFilterCoef(&out), KOVA_NO_ERROR);
    EXPECT_EQ(Transfers(), "");
    stKOVAViewWIN.h = 239;
    EXPECT_EQ(KOVAAPI_SetMFCFilterCoef(&out), KOVA_NO_ERROR);
    EXPECT_EQ(Checksum(Transfers()), 0x0180C1C0);
    EXPECT_EQ(KOVAMFCCoef, 2);
    EXPECT_EQ(KOVAPLLClock, 2);
    // Set 1 holds the spline, set 2 the bilinear table: both kernels of both pass a flat picture with gain 1.
    for (const MfcTable& table : {KOVA_MFCFilter_Spline_1_00, KOVA_MFCFilter_Bilinear}) {
        for (std::size_t p = 1; p < 32; ++p) {
            for (const std::size_t half : {0U, 32U}) {
                const auto &near = table.at(half + p), &far = table.at(half + 32 - p);
                EXPECT_NEAR(near[0] + near[1] + far[0] + far[1], 2048, 1) << half + p;
            }
        }
    }
}

TEST_F(KovaWindows, CallersScalerTables) {
    MfcTable table{};
    table[0] = {-1, 2};
    table[63] = {3, -4};
    struct Case {
        std::uint8_t (*set)(OutVideoInfo*, const MfcTable*);
        const MfcTable* OutVideoInfo::*kept;
        const char *first, *last, *shrinking;
    };
    for (const Case& c : {
             Case{KOVAAPI_SetMFCHYFilterCoef, &OutVideoInfo::pMfcHY, "594:0080 590", "594:00bf", "590:ffff 591:0002"},
             Case{KOVAAPI_SetMFCHCFilterCoef, &OutVideoInfo::pMfcHC, "594:0180 590", "594:01bf", "590:ffff 591:0002"},
             Case{KOVAAPI_SetMFCVYFilterCoef, &OutVideoInfo::pMfcVY, "594:0280 590", "594:02bf", "590:0800 591:0000"},
             Case{KOVAAPI_SetMFCVCFilterCoef, &OutVideoInfo::pMfcVC, "594:0380 590", "594:03bf", "590:0800 591:0000"},
         }) {
        stKOVADstWIN.h = 0;
        EXPECT_EQ(c.set(&out, &table), KOVA_NO_ERROR);
        EXPECT_EQ(out.*c.kept, &table);
        const std::string words = Short();
        EXPECT_EQ(words.substr(0, 48), std::string("590:ffff 591:0002 592:0000 593:0000 ") + c.first);
        EXPECT_EQ(words.substr(64 * 45 - 45), std::string("590:0003 591:fffc 592:0000 593:0000 ") + c.last);
        stKOVADstWIN.h = 2;
        c.set(&out, &table);
        EXPECT_EQ(Short().substr(0, 17), c.shrinking);
    }
}

TEST_F(KovaWindows, MemoryPrecision) {
    stKOVADstWIN.w = 768;
    std::uint32_t forced = 0;
    for (out.frmt = 0; out.frmt < VIDOUT_COUNT; ++out.frmt) {
        src.flags = VIDFLAG_PORT_A;
        EXPECT_EQ(KOVAAPI_SetMemPrecision(&src, &out), KOVA_NO_ERROR);
        forced |= (src.flags & VIDFLAG_8BIT) != 0 ? 1U << out.frmt : 0;
    }
    EXPECT_EQ(forced, 0x1B8300U);
    Transfers();

    out.frmt = VIDOUT_1600x1200p60;
    src.flags = VIDFLAG_PORT_A;
    stKOVADstWIN.w = 769;
    EXPECT_EQ(KOVAAPI_SetMemPrecision(&src, &out), KOVA_NO_ERROR);
    EXPECT_EQ(src.flags, VIDFLAG_PORT_A | VIDFLAG_8BIT);
    EXPECT_EQ(Transfers(),
              "kova r 0455 0004\nkova w 0455 0004\nkova r 0455 0004\nkova w 0455 0000\nkova w 04c4 0001\n");
}

TEST_F(KovaWindows, MemoryConfiguration) {
    struct Case {
        MemoryConfig mem;
        const char* expected;
    };
    for (const Case& c : {
             Case{{0, 1, 0}, "012:fffc 022:ffef 022:ffeb 022:ffe8 03c:cfff 454:ffff 455:fffc u"},
             Case{{9, 2, 1}, "012:ffff 022:ffef 022:ffe3 022:ffe1 03c:efff 454:ffff 455:fffc u"},
             Case{{1, 4, 7}, "012:ffff 022:ffcf 022:ffcb 022:ffcb 03c:efff 454:ffff 455:fffc u"},
         }) {
        for (const int addr : {0x012, 0x022, 0x03C, 0x454, 0x455}) {
            sim::KovaRegister(static_cast<std::uint16_t>(addr)) = 0xFFFF;
        }
        EXPECT_EQ(KOVAAPI_SetMemory(&c.mem), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.expected);
    }
}

} // namespace
