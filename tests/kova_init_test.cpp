// The video path update and the start-up sequence as a whole.

#include "app/shell.h"
#include "kova/api.h"
#include "tests/kova_driver.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>
#include <vector>

namespace {

std::vector<std::string> LinesOf(std::istream& text) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

class KovaPath : public KovaDriver {
protected:
    SrcVideoInfo src{.frmt = VIDSRC_704x480i60, .mode = MUX656_10};
    OutVideoInfo out{.frmt = VIDOUT_1280x1024p60, .mode = RGB444_8};
};

// ---- Start-up ----

class KovaInit : public KovaDriver {
protected:
    /// The journal without the pause that comes before every video processor transfer.
    static std::vector<std::string> Sequence() {
        std::istringstream journal(Journal());
        std::vector<std::string> lines = LinesOf(journal);
        std::erase(lines, "pause 100");
        return lines;
    }

    static Printed Execute(const char* line) {
        std::strcpy(input_command.data(), line);
        return Capture(CommandProcess);
    }

    // What the sequence costs, the pause of 100 ms included; and the part of it that is the loading of the scaler.
    static constexpr std::size_t kSequence = 1834 + 1;
    static constexpr std::size_t kScalerLoad = 1296;
};

TEST_F(KovaInit, EveryTransferOfTheSequence) {
    std::ifstream file(KOVA_TEST_DATA "/init.journal");
    const std::vector<std::string> expected = LinesOf(file);
    ASSERT_EQ(expected.size(), kSequence);
    Execute("init");
    const std::vector<std::string> sequence = Sequence();
    for (std::size_t i = 0; i < std::min(expected.size(), sequence.size()); ++i) {
        ASSERT_EQ(sequence[i], expected[i]) << "line " << i + 1;
    }
    EXPECT_EQ(sequence.size(), expected.size());

    const OutVideoInfo& made = stOutVideoInfo;
    EXPECT_EQ(std::tuple(stSrcVideoInfo.flags, stSrcVideoInfo.hTotal, stSrcVideoInfo.stActive),
              std::tuple(0x8007, 858, VideoWindow{696, 480}));
    EXPECT_EQ(std::tuple(made.flags, made.stActive), std::tuple(0x013C, VideoWindow{1280, 1024}));
    EXPECT_EQ(
        std::tuple(made.brightness, made.contrast, made.saturation, made.hue, made.offsetG, made.offsetB, made.offsetR),
        std::tuple(128, 128, 128, 128, 128, 128, 128));
}

TEST_F(KovaInit, AnotherRunLeavesTheSameBoardAndRecords) {
    const auto registers = [] { return std::vector(&sim::KovaRegister(0), &sim::KovaRegister(0x600)); };
    Execute("init");
    EXPECT_EQ(Sequence().size(), kSequence);
    const std::vector<std::uint16_t> first = registers();
    // What a caller has changed meanwhile is gone again.
    stSrcVideoInfo = {.mode = 255, .auxFlags = 255, .ycOffset = 7, .stClip = {1, 2, 3, 4}, .flags = 0xFFFF};
    stOutVideoInfo = {.frmt = 255, .auxFlags = 0xFFFF, .stZoom = {1, 2, 3, 4}, .stView = {1, 2, 3, 4}, .hue = 1};
    Execute("init");
    EXPECT_EQ(Sequence().size(), kSequence - kScalerLoad);
    EXPECT_EQ(registers(), first);
}

TEST_F(KovaInit, TheLineCommand) {
    for (const char* const line : {"init now", "init r kova 10"}) {
        const Printed printed = Execute(line);
        EXPECT_TRUE(printed.out.starts_with("CreateKOVAAPIVideoInstance Started!! \nnID=83 \nok \n")) << line;
        EXPECT_EQ(printed.out.find("REG"), std::string::npos);
        EXPECT_GE(Sequence().size(), kSequence - kScalerLoad);
    }
    for (const char* const line : {"INIT", "init2", " init"}) {
        EXPECT_EQ(Execute(line).out, "");
    }
    EXPECT_EQ(Journal(), "");
}

TEST_F(KovaInit, WaitsForTheDeviceIdAndThenNoFailureStopsIt) {
    sim::FailRequests(1, 2);
    EXPECT_TRUE(Execute("init").out.starts_with("CreateKOVAAPIVideoInstance Started!! \n"
                                                "kova read error \nnID=ffff \nkova read error \nnID=ffff \n"
                                                "nID=83 \nok \n"));
    EXPECT_EQ(Sequence().size(), kSequence + 2);
    sim::FailRequests(2, 10'000);
    EXPECT_TRUE(Execute("init").out.ends_with("KOVA_310_READ_HDTX_SLV1  read  error \n"));
    EXPECT_EQ(Sequence().size(), kSequence - kScalerLoad);
}

TEST_F(KovaInit, WithoutADeviceIdNothingIsTouched) {
    sim::FailEvery(1);
    const Printed printed = Execute("init");
    EXPECT_EQ(std::count(printed.out.begin(), printed.out.end(), '\n'), 1 + 2 * 100'000 + 1);
    EXPECT_TRUE(printed.out.ends_with("nID=ffff \nThe video processor did not show its device ID 83 in 100000 reads: "
                                      "start-up given up, nothing was changed.\n"));
    const std::vector<std::string> sequence = Sequence();
    EXPECT_EQ(std::count(sequence.begin(), sequence.end(), "kova r 0004 0000 failed"), 100'000);
    EXPECT_EQ(sequence.size(), 100'000U);
    // The console goes on.
    sim::FailEvery(0);
    EXPECT_EQ(Execute("r kova 4").out, "\n\nREG = Addr=[0x0004], ReadData=[0x0083]\n");
}

// ---- Video path update ----

TEST_F(KovaPath, AFormatOutOfRangeStopsTheUpdateWhereItIsFound) {
    constexpr const char* kPreset = "43c:02d0 43d:01e0 u";
    src.frmt = VIDSRC_COUNT;
    EXPECT_EQ(KOVAAPI_VideoProcess(&src, &out), KOVA_I2C_ERROR);
    EXPECT_EQ(Journal(), "");
    src = {.frmt = VIDSRC_704x480i60, .mode = 10};
    EXPECT_EQ(KOVAAPI_VideoProcess(&src, &out), KOVA_I2C_ERROR);
    EXPECT_EQ(Short(), kPreset);
    src = {.frmt = VIDSRC_704x480i60, .mode = RGB444_8};
    out.frmt = VIDOUT_COUNT;
    EXPECT_EQ(KOVAAPI_VideoProcess(&src, &out), KOVA_I2C_ERROR);
    EXPECT_EQ(Short(), kPreset
                           + std::string(" 402:0000 402:0000 402:0000 401:35a0 4b0:0008 404:0000 "
                                         "402:0000 401:35a0 401:35a0 400:0000 400:0000 u"));
}

TEST_F(KovaPath, DecisionsOfAnUpdate) {
    struct Case {
        std::uint8_t srcFrmt, srcMode, outFrmt;
        VideoWindow clip, view;
        VideoWindow dst;
        unsigned forced; // DeintState::state without noise reduction
        unsigned coef;   // scaler set
        bool eightBit;
        unsigned frontNr; // register 0x42A
    };
    constexpr unsigned kHd = DEINT_HD_FORCED;
    KOVAAPI_LoadDeintData();
    constexpr unsigned kDeci = DEINT_DECIMATING;
    constexpr unsigned kV2Tab = DEINT_V2TAB_FORCED;
    // clang-format off
    for (const Case& c : {
             // source, output, clip, view, destination, state, scaler set, 8 bits, front NR
             Case{VIDSRC_704x480i60,   MUX656_10,  VIDOUT_1280x1024p60, {}, {}, {696, 480}, 0, 1, true, 0},
             Case{VIDSRC_704x480i60,   MUX656_10,  VIDOUT_720x480p60, {}, {}, {696, 480}, 0, 1, false, 0},
             Case{VIDSRC_1920x1080i60, EMB422_10,  VIDOUT_1280x720p60, {}, {}, {1024, 1080}, kDeci, 1, true, 9},
             Case{VIDSRC_1920x1080i60, EMB422_10,  VIDOUT_720x480p60, {}, {}, {720, 1080}, kDeci | kV2Tab, 2, false, 9},
             Case{VIDSRC_1280x720p60,  SEP422_8,   VIDOUT_1920x1080p60, {}, {}, {1280, 720}, kHd, 1, true, 0},
             Case{VIDSRC_1280x720p60,  SEP422_10,  VIDOUT_1280x720p60, {900, 700, 1, 1}, {}, {900, 700}, 0, 1, true, 0},
             Case{VIDSRC_1280x1024p60, RGB444_8,   VIDOUT_1280x1024p60, {}, {1280, 500}, {1280, 1024}, kHd, 2, true, 0},
             Case{VIDSRC_720x576i50,   MUX656_8_B, VIDOUT_720x576p50, {}, {720, 288}, {720, 576}, 0, 1, true, 0},
             Case{VIDSRC_720x576i50,   MUX656_8_B, VIDOUT_720x576p50, {}, {720, 287}, {720, 576}, kV2Tab, 2, true, 0},
         }) {
        // clang-format on
        SCOPED_TRACE(testing::Message() << int{c.srcFrmt} << " to " << int{c.outFrmt});
        src = {.frmt = c.srcFrmt, .mode = c.srcMode, .stClip = c.clip};
        out = {.frmt = c.outFrmt, .stView = c.view};
        EXPECT_EQ(KOVAAPI_VideoProcess(&src, &out), KOVA_NO_ERROR);
        EXPECT_EQ(stKOVADstWIN, c.dst);
        EXPECT_EQ(stKOVADeint.state & ~DEINT_NR_ON, c.forced);
        EXPECT_EQ((stKOVADeint.state & DEINT_NR_ON) != 0, (c.forced & (kHd | DEINT_DECIMATING)) == 0);
        EXPECT_EQ(KOVAMFCCoef, c.coef);
        EXPECT_EQ((src.flags & VIDFLAG_8BIT) != 0, c.eightBit);
        EXPECT_EQ(sim::KovaRegister(0x455) >> 2 & 1, c.eightBit ? 0 : 1);
        EXPECT_EQ(sim::KovaRegister(0x42A), c.frontNr);
        // Again with the same records: the same writes, but for the scaler set, which is loaded.
        Journal();
        const SrcVideoInfo before = src;
        EXPECT_EQ(KOVAAPI_VideoProcess(&src, &out), KOVA_NO_ERROR);
        EXPECT_EQ(JournalWith(" w 0590"), "");
        EXPECT_EQ(std::tuple(src.flags, src.stActive, stKOVADstWIN), std::tuple(before.flags, before.stActive, c.dst));
    }
}

TEST_F(KovaPath, TheDoubleRateVariantWrapsTheUpdate) {
    const auto process = [this](std::uint8_t on) {
        Journal();
        EXPECT_EQ(KOVAAPI_HDDBLProcess(&src, &out, on), KOVA_NO_ERROR);
        return Short();
    };
    const std::string clock1 = "03a:0000 02a:0001 018:0004 070:0000 070:0001 ";
    const std::string ending = "43c:02d0 43d:01e0 u ";
    process(0); // the scaler set is loaded from here on
    const std::string off = process(0);
    EXPECT_TRUE(off.starts_with(clock1 + "500:7000 402:2010 u " + ending)) << off;
    EXPECT_TRUE(off.ends_with("518:0168 u 499:0000 499:1064 u")) << off;
    EXPECT_EQ(stKOVADeint.state & DEINT_HD_DOUBLE, 0);
    EXPECT_EQ(stKOVASrcWIN, (VideoWindow{696, 480, 0, 0}));

    const std::string onA = process(2);
    EXPECT_EQ(onA.size(), off.size()
                              + std::strlen("020:0001 03a:0000 02a:0002 018:0004 070:0000 070:0001 432:02b8 "
                                            "43c:02b8 529:0800 u 498:004f 499:0000 499:1064 u "));
    EXPECT_TRUE(onA.starts_with(clock1 + "500:b000 402:a010 u " + ending)) << onA;
    EXPECT_TRUE(onA.ends_with("499:1064 u 020:0001 03a:0000 02a:0002 018:0004 070:0000 070:0001 432:02b8 43c:02b8 "
                              "529:0800 u 498:004f 499:0000 499:1064 u"))
        << onA;
    EXPECT_EQ(stKOVADeint.state & (DEINT_HD_DOUBLE | DEINT_HD_FORCED), DEINT_HD_DOUBLE | DEINT_HD_FORCED);
    EXPECT_EQ(KOVAPLLClock, 2);

    src.mode = MUX656_8_B;
    src.stClip = {640, 400, 8, 9};
    EXPECT_NE(process(1).find("020:0001 03a:0000 02a:0000 018:0004 070:0000 070:0001 432:0280 43c:0280 "),
              std::string::npos);
    EXPECT_EQ(stKOVASrcWIN, src.stClip);
    EXPECT_EQ(KOVAPLLClock, 0);

    // A failing update ends it, with the bit set.
    src.frmt = VIDSRC_COUNT;
    EXPECT_EQ(KOVAAPI_HDDBLProcess(&src, &out, 1), KOVA_I2C_ERROR);
    EXPECT_EQ(KOVAPLLClock, 1);
}

} // namespace
