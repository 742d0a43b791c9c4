// The video path update and the start-up sequence as a whole.

#include "app/shell.h"
#include "tests/kova_driver.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

class KovaPath : public KovaDriver {
protected:
    SrcVideoInfo src{.frmt = VIDSRC_704x480i60, .mode = MUX656_10};
    OutVideoInfo out{.frmt = VIDOUT_1280x1024p60, .mode = RGB444_8};
};

// ---- Start-up ----

class KovaInit : public KovaDriver {
protected:
    static Printed Execute(const char* line) {
        std::strcpy(input_command.data(), line);
        return Capture(CommandProcess);
    }

    /// The number of transfers since the last call.
    static long Count() {
        const std::string transfers = Transfers();
        return std::ranges::count(transfers, '\n');
    }

    // What the sequence costs, and the part of it that is the loading of the scaler.
    static constexpr long kSequence = 1834;
    static constexpr long kScalerLoad = 1296;
};

TEST_F(KovaInit, EveryTransferOfTheSequence) {
    Execute("init");
    // Without the pause that comes before every transfer.
    std::string sequence = Journal();
    for (std::size_t at = 0; (at = sequence.find("pause 100\n", at)) != std::string::npos;) {
        sequence.erase(at, std::strlen("pause 100\n"));
    }
    ExpectGolden("init.journal", sequence);

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
    EXPECT_EQ(Count(), kSequence);
    const std::vector<std::uint16_t> first = registers();
    // What a caller has changed meanwhile is gone again.
    stSrcVideoInfo = {.mode = 255, .auxFlags = 255, .ycOffset = 7, .stClip = {1, 2, 3, 4}, .flags = 0xFFFF};
    stOutVideoInfo = {.frmt = 255, .auxFlags = 0xFFFF, .stZoom = {1, 2, 3, 4}, .stView = {1, 2, 3, 4}, .hue = 1};
    Execute("init");
    EXPECT_EQ(Count(), kSequence - kScalerLoad);
    EXPECT_EQ(registers(), first);
}

TEST_F(KovaInit, TheLineCommand) {
    for (const char* const line : {"init now", "init r kova 10"}) {
        const Printed printed = Execute(line);
        EXPECT_TRUE(printed.out.starts_with("CreateKOVAAPIVideoInstance Started!! \nnID=83 \nok \n")) << line;
        EXPECT_EQ(printed.out.find("REG"), std::string::npos);
        EXPECT_GE(Count(), kSequence - kScalerLoad);
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
    EXPECT_EQ(Count(), kSequence + 2);
    sim::FailRequests(2, 10'000);
    EXPECT_TRUE(Execute("init").out.ends_with("KOVA_310_READ_HDTX_SLV1  read  error \n"));
    EXPECT_EQ(Count(), kSequence - kScalerLoad);
}

TEST_F(KovaInit, WithoutADeviceIdNothingIsTouched) {
    sim::FailEvery(1);
    const Printed printed = Execute("init");
    EXPECT_EQ(std::ranges::count(printed.out, '\n'), 1 + 2 * 100'000 + 1);
    EXPECT_TRUE(printed.out.ends_with("nID=ffff \nThe video processor did not show its device ID 83 in 100000 reads: "
                                      "start-up given up, nothing was changed.\n"));
    const std::string journal = Transfers();
    EXPECT_EQ(std::ranges::count(journal, '\n'), 100'000);
    EXPECT_EQ(journal.find(" w "), std::string::npos);
    // The console goes on.
    sim::FailEvery(0);
    EXPECT_EQ(Execute("r kova 4").out, "\n\nREG = Addr=[0x0004], ReadData=[0x0083]\n");
}

// ---- Video path update ----

TEST_F(KovaPath, AFormatOutOfRangeStopsTheUpdateWhereItIsFound) {
    struct Case {
        std::uint8_t srcFrmt, srcMode, outFrmt;
    };
    for (const Case& c : {Case{VIDSRC_COUNT, MUX656_10, 0}, Case{0, 10, 0}, Case{0, RGB444_8, VIDOUT_COUNT}}) {
        src = {.frmt = c.srcFrmt, .mode = c.srcMode};
        out.frmt = c.outFrmt;
        Fill(0);
        Note(KOVAAPI_VideoProcess(&src, &out), "source", c.srcFrmt, "mode", c.srcMode, "output", c.outFrmt);
        // The double rate stops with it, with its bit set.
        Note(KOVAAPI_HDDBLProcess(&src, &out, 1), "double rate, clock", KOVAPLLClock, "state", stKOVADeint.state);
    }
    ExpectGolden("kova-path-formats.txt", record.str());
}

TEST_F(KovaPath, DecisionsOfAnUpdate) {
    struct Case {
        std::uint8_t srcFrmt, srcMode, outFrmt;
        VideoWindow clip, view;
    };
    KOVAAPI_LoadDeintData();
    // clang-format off
    for (const Case& c : {
             Case{VIDSRC_704x480i60,   MUX656_10,  VIDOUT_1280x1024p60, {},               {}},
             Case{VIDSRC_704x480i60,   MUX656_10,  VIDOUT_720x480p60,   {},               {}},
             Case{VIDSRC_1920x1080i60, EMB422_10,  VIDOUT_1280x720p60,  {},               {}},
             Case{VIDSRC_1920x1080i60, EMB422_10,  VIDOUT_720x480p60,   {},               {}},
             Case{VIDSRC_1280x720p60,  SEP422_8,   VIDOUT_1920x1080p60, {},               {}},
             Case{VIDSRC_1280x720p60,  SEP422_10,  VIDOUT_1280x720p60,  {900, 700, 1, 1}, {}},
             Case{VIDSRC_1280x1024p60, RGB444_8,   VIDOUT_1280x1024p60, {},               {1280, 500}},
             Case{VIDSRC_720x576i50,   MUX656_8_B, VIDOUT_720x576p50,   {},               {720, 288}},
             Case{VIDSRC_720x576i50,   MUX656_8_B, VIDOUT_720x576p50,   {},               {720, 287}},
         }) {
        // clang-format on
        src = {.frmt = c.srcFrmt, .mode = c.srcMode, .stClip = c.clip};
        out = {.frmt = c.outFrmt, .stView = c.view};
        EXPECT_EQ(KOVAAPI_VideoProcess(&src, &out), KOVA_NO_ERROR);
        record << "source " << unsigned{c.srcFrmt} << " to " << unsigned{c.outFrmt} << ": destination " << stKOVADstWIN
               << " state " << unsigned{stKOVADeint.state} << " scaler set " << unsigned{KOVAMFCCoef} << " flags "
               << src.flags << " 455:" << sim::KovaRegister(0x455) << " 42a:" << sim::KovaRegister(0x42A) << '\n';
        // Again with the same records: the same writes, but for the scaler set, which is loaded.
        Journal();
        const SrcVideoInfo before = src;
        const VideoWindow destination = stKOVADstWIN;
        EXPECT_EQ(KOVAAPI_VideoProcess(&src, &out), KOVA_NO_ERROR);
        EXPECT_EQ(JournalWith(" w 0590"), "");
        EXPECT_EQ(std::tuple(src.flags, src.stActive, stKOVADstWIN),
                  std::tuple(before.flags, before.stActive, destination));
    }
    ExpectGolden("kova-path-decisions.txt", record.str());
}

TEST_F(KovaPath, TheDoubleRateVariantWrapsTheUpdate) {
    const auto note = [this](std::uint8_t on) {
        const std::uint8_t result = KOVAAPI_HDDBLProcess(&src, &out, on);
        record << "source window " << stKOVASrcWIN << ' ';
        Note(result, "double rate", on, "state", stKOVADeint.state, "clock", KOVAPLLClock, "wrote\n   ");
    };
    KOVAAPI_HDDBLProcess(&src, &out, 0); // the scaler set is loaded from here on
    Journal();
    note(0);
    note(2);
    src.mode = MUX656_8_B;
    src.stClip = {640, 400, 8, 9};
    note(1);
    src.stClip = {640, 0, 8, 9}; // not in use
    note(1);
    ExpectGolden("kova-path-double-rate.txt", record.str());
}

} // namespace
