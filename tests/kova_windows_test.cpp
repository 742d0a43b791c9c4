#include "tests/kova_driver.h"

#include <tuple>

namespace {

class KovaWindows : public KovaDriver {
protected:
    void SetUp() override {
        KovaDriver::SetUp();
        src.flags = VIDFLAG_PORT_A;
        src.stActive = {704, 480, 0, 0};
        out.stActive = {1280, 1024, 0, 0};
    }

    SrcVideoInfo src{};
    OutVideoInfo out{};
};

TEST_F(KovaWindows, AWholePictureOnPortA) {
    KOVAAPI_SetWindowSrcVideo(&src);
    KOVAAPI_SetHDecimateVideo(&src);
    EXPECT_EQ(Transfers(),
              "kova r 0404 0000\nkova w 0404 0000\nkova r 0404 0000\nkova w 0404 0000\n"
              "kova w 0406 02b8\nkova w 0407 01e0\nkova w 043a 02b8\nkova w 043b 01e0\nkova w 04c4 0001\n");
    KOVAAPI_SetWindowOutVideo(&out);
    EXPECT_EQ(Packed(), "43c:02b8 01e0 432:02b8 01e0 0000 0000 0500 0400 0000 0000 u");
}

TEST_F(KovaWindows, CallersWindowsOnPortB) {
    src.flags = 0;
    const VideoWindow clip{640, 400, 0x1FF, 0x7F}, view{1000, 700, 4, 5}, zoom{320, 200, 6, 7};
    KOVAAPI_SetWindowSrcCLIP(&src, &clip);
    EXPECT_EQ(Packed(), "405:01ff 405:ffff 408:0280 0190 43a:0280 0190 u");
    KOVAAPI_SetWindowOutVIEW(&out, &view);
    KOVAAPI_SetWindowOutZOOM(&out, &zoom);
    EXPECT_EQ(Packed(), "43c:0280 0190 432:0280 0190 0000 0000 03e8 02bc 0004 0005 u "
                        "43c:0280 0190 432:0140 00c8 0006 0007 03e8 02bc 0004 0005 u");
    VideoWindow back{1, 1, 1, 1};
    KOVAAPI_GetWindowHDECI(&back);
    EXPECT_EQ(back, (VideoWindow{640, 400, 0, 0}));
}

TEST_F(KovaWindows, RoundingClipDecimationAndDestination) {
    struct Case {
        std::uint16_t flags, w, h;
        VideoWindow clip, view;
        std::uint16_t dstW, dstH;
        bool decimating;
    };
    constexpr VideoWindow none{};
    constexpr std::uint16_t k8Bit = VIDFLAG_8BIT, kProgressive = VIDFLAG_8BIT | VIDFLAG_PROGRESSIVE;
    for (const Case& c :
         {Case{0, 704, 487, none, none, 696, 480, false}, Case{k8Bit, 704, 480, none, none, 704, 480, false},
          Case{k8Bit, 1024, 480, none, none, 1024, 480, false}, Case{k8Bit, 1032, 480, none, none, 1024, 480, true},
          Case{kProgressive, 1280, 720, none, none, 1280, 720, false},
          Case{kProgressive, 1288, 720, none, none, 1024, 720, true},
          Case{kProgressive, 1920, 1080, none, {1280, 720, 0, 0}, 1024, 1080, true},
          Case{kProgressive, 1280, 720, none, {720, 480, 0, 0}, 720, 720, false},
          Case{0, 1920, 1080, {1025, 99, 0, 0}, none, 1024, 99, true},           // a clip is not rounded
          Case{0, 704, 480, {600, 0, 0, 0}, {0, 100, 0, 0}, 696, 480, false}}) { // not in use
        stKOVADeint.state = DEINT_NR_ON | (c.decimating ? 0 : DEINT_DECIMATING);
        src.flags = c.flags;
        src.stActive = {c.w, c.h, 0, 0};
        src.stClip = c.clip;
        out.stView = c.view;
        KOVAAPI_SetWindowSrcVideo(&src);
        KOVAAPI_SetHDecimateVideo(&src);
        KOVAAPI_SetWindowOutVideo(&out);
        EXPECT_EQ(stKOVADstWIN, (VideoWindow{c.dstW, c.dstH, 0, 0})) << c.w;
        EXPECT_EQ(stKOVADeint.state, DEINT_NR_ON | (c.decimating ? DEINT_DECIMATING : 0)) << c.w;
    }
    EXPECT_EQ(src.stActive, (VideoWindow{696, 480, 0, 0}));
}

TEST_F(KovaWindows, ScalerSetsAreLoadedWhenTheNeedChanges) {
    KOVAPLLClock = 2;
    stKOVADstWIN.h = 481; // half of which is 240 lines
    for (const auto& [viewH, set, journal] : {std::tuple{240, 1, 0x4EC759D0U}, {239, 2, 0x0180C1C0U}}) {
        stKOVAViewWIN.h = static_cast<std::uint16_t>(viewH);
        KOVAAPI_SetMFCFilterCoef(&out);
        EXPECT_EQ(Checksum(Transfers()), journal);
        EXPECT_EQ(KOVAMFCCoef, set);
        EXPECT_EQ(KOVAPLLClock, 2);
        KOVAAPI_SetMFCFilterCoef(&out);
        EXPECT_EQ(Transfers(), "");
    }
}

TEST_F(KovaWindows, CallersScalerTables) {
    MfcTable table{};
    table[0] = {-1, 2};
    table[63] = {3, -4};
    stKOVADstWIN.h = 2; // shrinking: the caller's tables count horizontally only
    KOVAAPI_SetMFCHCFilterCoef(&out, &table);
    const std::string words = Packed();
    EXPECT_EQ(words.substr(0, 29), "590:ffff 0002 0000 0000 0180 ");
    EXPECT_EQ(words.substr(words.size() - 28), "590:0003 fffc 0000 0000 01bf");
    KOVAAPI_SetMFCVCFilterCoef(&out, &table);
    EXPECT_EQ(Packed().substr(0, 28), "590:0800 0000 0000 0000 0380");
    stKOVADstWIN.h = 0;
    KOVAAPI_SetMFCVCFilterCoef(&out, &table);
    EXPECT_EQ(Packed().substr(0, 28), "590:ffff 0002 0000 0000 0380");
    // All four by way of the record.
    out.pMfcHY = out.pMfcVY = &table;
    KOVAAPI_SetMFCFilterCoef(&out);
    const std::string all = Packed();
    for (const char* const strobe : {"0080", "0180", "0280", "0380"}) {
        EXPECT_NE(all.find(std::string(" 590:ffff 0002 0000 0000 ") + strobe), std::string::npos) << strobe;
    }
}

TEST_F(KovaWindows, MemoryPrecision) {
    stKOVADstWIN.w = 768;
    std::uint32_t forced = 0;
    for (out.frmt = 0; out.frmt < VIDOUT_COUNT; ++out.frmt) {
        src.flags = VIDFLAG_PORT_A;
        KOVAAPI_SetMemPrecision(&src, &out);
        forced |= (src.flags & VIDFLAG_8BIT) != 0 ? 1U << out.frmt : 0;
    }
    EXPECT_EQ(forced, 0x1B8300U);
    Transfers();
    src.flags = VIDFLAG_PORT_A;
    stKOVADstWIN.w = 769;
    KOVAAPI_SetMemPrecision(&src, &out);
    EXPECT_EQ(src.flags, VIDFLAG_PORT_A | VIDFLAG_8BIT);
    EXPECT_EQ(Packed(), "455:0004 455:0000 u");
}

TEST_F(KovaWindows, MemoryConfiguration) {
    for (const auto& [mem, expected] : {
             std::pair{MemoryConfig{0, 1, 0}, "012:fffc 022:ffef 022:ffeb 022:ffe8 03c:cfff 454:ffff fffc u"},
             {MemoryConfig{9, 2, 1}, "012:ffff 022:ffef 022:ffe3 022:ffe1 03c:efff 454:ffff fffc u"},
             {MemoryConfig{1, 4, 7}, "012:ffff 022:ffcf 022:ffcb 022:ffcb 03c:efff 454:ffff fffc u"},
         }) {
        FillRange(0x012, 0x455, 0xFFFF);
        KOVAAPI_SetMemory(&mem);
        EXPECT_EQ(Packed(), expected);
    }
}

} // namespace
