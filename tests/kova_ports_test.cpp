#include "kova/api.h"
#include "tests/kova_driver.h"

namespace {

// What a mode puts into the records and the chip: attributes, input sync type, output format register.
struct Mode {
    unsigned mode, flags, syncType, outFormat;
};

// clang-format off
constexpr std::array<Mode, 10> kModes{{
    {RGB444_8,  4, 0x0000, 0x104}, {YUV444_8,  5, 0x0000, 0x044}, {EMB422_8,   7, 0x1020, 0x06D},
    {SEP422_8,  7, 0x1000, 0x045}, {EMB422_10, 3, 0x1020, 0x069}, {SEP422_10,  3, 0x1000, 0x041},
    {MUX656_8,  7, 0x2010, 0x06E}, {MUX656_10, 3, 0x2010, 0x06A},
    {MUX656_8_B, 7, 0x2010, 0},    {MUX656_10_B, 3, 0x2010, 0},
}};
// clang-format on

// ---- Input ----

class KovaInputPort : public KovaDriver {
protected:
    static constexpr ClockDelay kDelay{7, 3};
    SrcVideoInfo src{};
};

TEST_F(KovaInputPort, EverySettingOnEachPort) {
    struct Case {
        std::uint16_t fill;
        std::uint8_t frmt, mode;
        bool all; // every option, or none
        const char* writes;
    };
    // clang-format off
    for (const Case& c : {
             Case{0x0000, VIDSRC_1280x720p60, MUX656_8, true,
                  "402:0010 402:2010 402:2011 401:6720 4b0:0008 404:9005 "
                  "402:2051 401:6722 401:672a 400:2800 400:2808 u 044:001f"},
             Case{0xFFFF, VIDSRC_720x576i50, RGB444_8, false,
                  "402:ffcf 402:cfcf 402:cfc8 401:360f 4b0:ffff 404:0000 "
                  "402:cf88 401:360d 401:3605 400:c7ff 400:c7f7 u"},
             Case{0x0000, VIDSRC_720x480p60, MUX656_8_B, true,
                  "402:0010 402:2010 402:2110 401:35a0 4b0:0000 405:9005 "
                  "402:2110 401:35a1 401:35a5 400:0500 400:0504 u 046:001f"},
             Case{0xFFFF, VIDSRC_704x480i60, MUX656_10_B, false,
                  "402:ffdf 402:efdf 402:e8df 401:35af 4b0:fff7 405:0000 "
                  "402:a8df 401:35ae 401:35ae 400:f8ff 400:f8fb u"},
         }) {
        // clang-format on
        src = {.frmt = c.frmt, .mode = c.mode};
        if (c.all) {
            src.auxFlags = 0x0F;
            src.ycOffset = 5;
            src.pClockDelay = &kDelay;
            src.stClip = {0, 0, 5, 200};
        }
        Fill(c.fill);
        EXPECT_EQ(KOVAAPI_SetSrcPortMode(&src), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.writes);
    }
}

TEST_F(KovaInputPort, ModesAndFormatsFillTheRecord) {
    for (const Mode& mode : kModes) {
        for (std::uint8_t frmt = 0; frmt < VIDSRC_COUNT; ++frmt) {
            src = {.frmt = frmt, .mode = std::uint8_t(mode.mode), .flags = 0xFFFF, .stActive = {1, 1, 7, 8}};
            EXPECT_EQ(KOVAAPI_SetSrcPortMode(&src), KOVA_NO_ERROR);
            const SrcVideoRow& row = defKOVASrcVideo[frmt];
            EXPECT_EQ(src.flags, mode.flags | row.flags | (mode.mode < MUX656_8_B ? 0x8000U : 0U)
                                     | (frmt >= 4 && frmt <= 7 ? 0x4000U : 0U));
            EXPECT_EQ(src.hTotal, row.hTotal);
            EXPECT_EQ(src.stActive, (VideoWindow{row.width, row.height, 7, 8}));
            EXPECT_EQ(sim::KovaRegister(0x402) & 0x3030, mode.syncType);
        }
    }
}

TEST_F(KovaInputPort, AFormatOrModeOutOfRangeChangesNothing) {
    for (const auto& [frmt, mode] : {std::pair{12, 0}, {255, 0}, {0, 10}, {0, 255}}) {
        src = {.frmt = std::uint8_t(frmt), .mode = std::uint8_t(mode), .hTotal = 1, .flags = 2, .stActive = {3, 4}};
        EXPECT_EQ(KOVAAPI_SetSrcPortMode(&src), KOVA_INVALID_FORMAT);
        EXPECT_EQ(std::tuple(src.hTotal, src.flags, src.stActive), std::tuple(1, 2, VideoWindow{3, 4}));
    }
    EXPECT_EQ(Journal(), "");
}

TEST_F(KovaInputPort, SingleSettersOnThePortOfTheRecord) {
    const auto set = [this](std::uint8_t on) {
        std::string flags;
        for (const auto setter : {KOVAAPI_SetSrcCompHsync, KOVAAPI_SetSrcHighTopFieldID, KOVAAPI_SetSrcInputFieldID,
                                  KOVAAPI_SetSrcCbCrSwap}) {
            EXPECT_EQ(setter(&src, on), KOVA_NO_ERROR);
            flags += std::to_string(src.auxFlags) + ' ';
        }
        return flags + Short();
    };
    for (const bool onA : {true, false}) {
        src = {.flags = std::uint16_t(onA ? VIDFLAG_PORT_A : 0)};
        Fill(0);
        EXPECT_EQ(set(2),
                  onA ? "1 3 7 15 402:0040 u 401:0002 u 401:000a u 400:0008 u" : "0 2 2 10 401:0001 u 400:0004 u");
        Fill(0xFFFF);
        src.auxFlags = 0x1F;
        EXPECT_EQ(set(0), onA ? "30 28 24 16 402:ffbf u 401:fffd u 401:fff5 u 400:fff7 u"
                              : "31 29 29 21 401:fffe u 400:fffb u");
        Fill(0);
        KOVAAPI_SetSrcYCOffset(&src, 7);
        KOVAAPI_SetSrcPosition(&src, 5, 200);
        KOVAAPI_SetSrcClockDelay(&src, &kDelay);
        EXPECT_EQ(Short(), onA ? "400:3800 u 404:9005 u 044:001f" : "400:0700 u 405:9005 u 046:001f");
        EXPECT_EQ(std::tuple(src.ycOffset, src.stClip, src.pClockDelay),
                  std::tuple(7, VideoWindow{0, 0, 5, 200}, &kDelay));
    }
    EXPECT_EQ(KOVAAPI_SetSrcClockDelay(&src, nullptr), KOVA_NO_ERROR);
    EXPECT_EQ(src.pClockDelay, nullptr);
    KOVAAPI_SetInDataMapMode(3);
    EXPECT_EQ(Short(), "400:c700 u");
}

// ---- Output ----

class KovaOutputPort : public KovaDriver {
protected:
    OutVideoInfo out{};

    static std::string DacWrites(const DacData& data) {
        std::string text;
        for (unsigned i = 0; i < data.size(); ++i) {
            std::array<char, 32> pair{};
            std::snprintf(pair.data(), pair.size(), "588:%04x 589:%04x ", unsigned{data[i]}, i | 0x80);
            text += pair.data();
        }
        return text;
    }
};

TEST_F(KovaOutputPort, EverythingOfAnInterlacedYCbCrOutput) {
    constexpr std::array<ClockDelay, 5> kDelays{{{1, 1}, {1, 2}, {2, 3}, {255, 0}, {0, 1}}};
    out = {.frmt = VIDOUT_1920x1080i60, .mode = EMB422_10, .auxFlags = 0x822F};
    out.pOutVCLK = &kDelays[0];
    out.pOutVCLKB = &kDelays[1];
    out.pIntVCLK = &kDelays[2];
    out.pIntVCLK2x = &kDelays[3];
    out.pIntDACCLK = &kDelays[4];
    EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), KOVA_NO_ERROR);
    const std::string dac = DacWrites(defKOVADACData[VIDOUT_1920x1080i60]);
    EXPECT_EQ(
        Short(),
        "4a2:0009 4a2:0069 4a3:0007 " + dac
            + "484:0014 485:000a 486:023d 488:0898 489:00c1 48a:0841 48b:002d 48c:0001 48d:0465 48e:0015 48f:0231 "
              "490:0006 491:0001 492:0248 493:0464 494:0238 495:0233 496:044d "
              "020:0001 02c:0004 02e:002c 030:0002 020:0000 020:0002 032:0002 034:000a 020:0000 "
              "01c:0000 445:0002 445:a602 040:0070 040:0075 497:0001 498:004d 4b4:0020 4b4:0030 "
              "4a2:0079 4a3:0017 4b4:0030 4b4:00b0 4b4:00f0 4b4:00f8 4b4:00fc u "
              "024:0005 024:0065 018:000b 026:03fc 028:0001");
}

// A narrow multiplexed output runs at twice the pixel clock.
TEST_F(KovaOutputPort, ModesAndFormatsFillTheRecord) {
    for (const Mode& mode : std::span(kModes).first(8)) {
        for (std::uint8_t frmt = 0; frmt < VIDOUT_COUNT; ++frmt) {
            SCOPED_TRACE(testing::Message() << int{frmt} << " mode " << mode.mode);
            const OutVideoRow& row = defKOVAOutVideo[frmt];
            const bool hd = frmt >= 4 && frmt <= 9;
            const bool twice = mode.mode >= MUX656_8 && row.width < 1024;
            SyncTiming sync = defKOVAOutSync[frmt];
            if (twice) {
                sync[3] = std::uint16_t(2 * sync[3]);
                for (const std::size_t word : {4U, 5U, 6U}) {
                    sync[word] = std::uint16_t(2 * sync[word] - 1);
                }
                sync[20] = std::uint16_t(sync[20] - 1);
            }
            out = {.frmt = frmt, .mode = std::uint8_t(mode.mode), .flags = 0xFFFF, .stActive = {1, 1, 7, 8}};
            EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), KOVA_NO_ERROR);
            EXPECT_EQ(out.flags, mode.flags | row.flags | (hd ? 0x4000U : 0U));
            EXPECT_EQ(out.stActive, (VideoWindow{std::uint16_t(row.width * (twice ? 2 : 1)), row.height, 7, 8}));
            EXPECT_EQ(std::tuple(out.sync, out.dac, out.tmds),
                      std::tuple(sync, defKOVADACData[frmt], defKOVAOutTMDS[frmt]));
            EXPECT_EQ(sim::KovaRegister(0x4A2), mode.outFormat & 0x3EF);
            EXPECT_EQ(sim::KovaRegister(0x4A3), (hd ? 2 : 0) | (mode.mode != RGB444_8 ? 5 : 0));
            EXPECT_EQ(sim::KovaRegister(0x488), sync[3]);
            EXPECT_EQ(sim::KovaRegister(0x030), sync[20]);
        }
    }
}

TEST_F(KovaOutputPort, AFormatOrModeOutOfRangeChangesNothing) {
    for (const auto& [frmt, mode] : {std::pair{24, 0}, {255, 0}, {0, 8}, {0, 255}}) {
        out = {.frmt = std::uint8_t(frmt), .mode = std::uint8_t(mode), .flags = 2, .stActive = {3, 4}};
        EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), KOVA_INVALID_FORMAT);
        EXPECT_EQ(std::tuple(out.flags, out.stActive), std::tuple(2, VideoWindow{3, 4}));
    }
    EXPECT_EQ(Journal(), "");
}

TEST_F(KovaOutputPort, Options) {
    const auto set = [this](std::uint8_t on) {
        std::string flags;
        for (const auto setter : {KOVAAPI_SetDIGCbCrSwap, KOVAAPI_SetDACPbPrSwap, KOVAAPI_SetOutHActInvert,
                                  KOVAAPI_SetOutVActInvert, KOVAAPI_SetOutHSyncHAct, KOVAAPI_SetOutVSyncVAct}) {
            EXPECT_EQ(setter(&out, on), KOVA_NO_ERROR);
            flags += std::to_string(out.auxFlags) + ' ';
        }
        return flags + Short();
    };
    EXPECT_EQ(set(0x80), "32768 33280 33288 33292 33294 33295 "
                         "4a2:0010 u 4a3:0010 u 4b4:0080 u 4b4:00c0 u 4b4:00c8 u 4b4:00cc u");
    Fill(0xFFFF);
    EXPECT_EQ(set(0), "527 15 7 3 1 0 4a2:ffef u 4a3:ffef u 4b4:ff7f u 4b4:ff3f u 4b4:ff37 u 4b4:ff33 u");
    for (const auto& [mode, flags, writes] :
         {std::tuple{0, 0xFFEF, "4b4:fcff u"}, {1, 0xFFDF, "4b4:fdff u"}, {2, 0xFFCF, "4b4:feff u"}}) {
        out.auxFlags = 0xFFFF;
        Fill(0xFFFF);
        KOVAAPI_SetDEOutMode(&out, std::uint8_t(mode));
        EXPECT_EQ(out.auxFlags, flags);
        EXPECT_EQ(Short(), writes);
        KOVAAPI_SetOutVideoAUX(&out); // finds the mode in the record again
        EXPECT_EQ(sim::KovaRegister(0x4B4) >> 8 & 3, mode);
        Journal();
    }
    out.auxFlags = 0x0030; // both bits: mode 1
    KOVAAPI_SetOutVideoAUX(&out);
    EXPECT_EQ(sim::KovaRegister(0x4B4) >> 8 & 3, 1);
}

TEST_F(KovaOutputPort, ClockDelays) {
    constexpr ClockDelay kDelay{1, 2};
    for (const auto& [set, kept, writes] : {std::tuple{&KOVAAPI_SetOutVCLKDelay, &OutVideoInfo::pOutVCLK, "024:0006"},
                                            {&KOVAAPI_SetOutVCLKBDelay, &OutVideoInfo::pOutVCLKB, "024:0066"},
                                            {&KOVAAPI_SetIntVCLKDelay, &OutVideoInfo::pIntVCLK, "018:0006"},
                                            {&KOVAAPI_SetIntVCLK2xDelay, &OutVideoInfo::pIntVCLK2x, "026:0006"},
                                            {&KOVAAPI_SetIntDACCLKDelay, &OutVideoInfo::pIntDACCLK, "028:0006"}}) {
        EXPECT_EQ(set(&out, &kDelay), KOVA_NO_ERROR);
        EXPECT_EQ(out.*kept, &kDelay);
        EXPECT_EQ(set(&out, nullptr), KOVA_NO_ERROR);
        EXPECT_EQ(out.*kept, nullptr);
        EXPECT_EQ(Short(), writes);
    }
}

TEST_F(KovaOutputPort, ClockSourcesAndResets) {
    for (const auto& [source, writes] : {std::pair{0, "03a:0000 02a:0000 018:0004 070:0000 070:0001"},
                                         {1, "03a:0000 02a:0001 018:0004 070:0000 070:0001"},
                                         {2, "03a:0000 02a:0002 018:0004 070:0000 070:0001"},
                                         {3, "03a:0001 02a:0001 018:0004 070:0000 070:0001"},
                                         {4, "03a:0000 02a:0004 018:0004 070:0000 070:0001"}}) {
        EXPECT_EQ(KOVAAPI_SetVCLKPLLSource(std::uint16_t(source)), KOVA_NO_ERROR);
        EXPECT_EQ(KOVAPLLClock, source);
        EXPECT_EQ(Short(), writes);
    }
    KOVAAPI_HardReset();
    KOVAAPI_ResetOutSync(100);
    EXPECT_EQ(Short(), "072:0000 072:0001 499:0000 499:1064 u");
}

TEST_F(KovaOutputPort, DriversAndPinsAreSwitchedOffByTheirBits) {
    for (const auto& [enable, which, on, off] :
         {std::tuple{&KOVAAPI_EnableClockDrive, 15, "03c:f000 03c:b000", "03c:0fff 03c:4fff"},
          {&KOVAAPI_EnableClockDrive, 3, "03c:fff7", "03c:0008"},
          {&KOVAAPI_EnableClockDrive, 14, "03c:bfff", "03c:4000"},
          {&KOVAAPI_EnableOutPortPin, 5, "01e:ffe1", "01e:001e"},
          {&KOVAAPI_EnableOutPortPin, 2, "01e:fffb", "01e:0004"}}) {
        Fill(0xFFFF);
        EXPECT_EQ(enable(std::uint8_t(which), 7), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), on);
        Fill(0);
        EXPECT_EQ(enable(std::uint8_t(which), 0), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), off);
        EXPECT_EQ(enable(16, 0), KOVA_I2C_ERROR);
        EXPECT_EQ(enable(255, 0), KOVA_I2C_ERROR);
    }
    KOVAAPI_EnableDACPortOut(0);
    KOVAAPI_EnableDACPortOut(2);
    EXPECT_EQ(Transfers(), "kova r 001e 0004\nkova w 001e 0005\nkova r 001e 0005\nkova w 001e 0004\n");
}

} // namespace
