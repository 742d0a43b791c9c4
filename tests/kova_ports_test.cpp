#include "kova/api.h"
#include "tests/kova_driver.h"

namespace {

// ---- Input ----

class KovaInputPort : public KovaDriver {
protected:
    static constexpr ClockDelay kDelay{7, 3};
    SrcVideoInfo src{};
};

TEST_F(KovaInputPort, EverySettingOnEachPort) {
    struct Case {
        std::uint16_t fill;
        SrcVideoInfo src;
        const char* writes;
    };
    const SrcVideoInfo all{.auxFlags = 0x0F, .ycOffset = 5, .pClockDelay = &kDelay, .stClip = {0, 0, 5, 200}};
    SrcVideoInfo allOnA = all;
    allOnA.frmt = VIDSRC_1280x720p60;
    allOnA.mode = MUX656_8;
    SrcVideoInfo allOnB = all;
    allOnB.frmt = VIDSRC_720x480p60;
    allOnB.mode = MUX656_8_B;
    for (Case c : {
             Case{0x0000, allOnA,
                  "402:0010 402:2010 402:2011 401:6720 4b0:0008 404:9005 "
                  "402:2051 401:6722 401:672a 400:2800 400:2808 u 044:001f"},
             Case{0xFFFF,
                  {.frmt = VIDSRC_720x576i50, .mode = RGB444_8},
                  "402:ffcf 402:cfcf 402:cfc8 401:360f 4b0:ffff 404:0000 "
                  "402:cf88 401:360d 401:3605 400:c7ff 400:c7f7 u"},
             Case{0x0000, allOnB,
                  "402:0010 402:2010 402:2110 401:35a0 4b0:0000 405:9005 "
                  "402:2110 401:35a1 401:35a5 400:0500 400:0504 u 046:001f"},
             Case{0xFFFF,
                  {.frmt = VIDSRC_704x480i60, .mode = MUX656_10_B},
                  "402:ffdf 402:efdf 402:e8df 401:35af 4b0:fff7 405:0000 "
                  "402:a8df 401:35ae 401:35ae 400:f8ff 400:f8fb u"},
         }) {
        Fill(c.fill);
        EXPECT_EQ(KOVAAPI_SetSrcPortMode(&c.src), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.writes);
    }
}

TEST_F(KovaInputPort, ModesAndFormatsFillTheRecord) {
    struct Case {
        unsigned mode, flags, syncType1, syncType2;
    };
    for (const Case& c : {Case{RGB444_8, 0x800C, 0, 0},
                          {YUV444_8, 0x800D, 0, 0},
                          {EMB422_8, 0x800F, 2, 1},
                          {SEP422_8, 0x800F, 0, 1},
                          {EMB422_10, 0x800B, 2, 1},
                          {SEP422_10, 0x800B, 0, 1},
                          {MUX656_8, 0x800F, 1, 2},
                          {MUX656_10, 0x800B, 1, 2},
                          {MUX656_8_B, 0x000F, 1, 2},
                          {MUX656_10_B, 0x000B, 1, 2}}) {
        SCOPED_TRACE(c.mode);
        src = {.frmt = VIDSRC_720x480p60, .mode = std::uint8_t(c.mode), .flags = 0xFFFF, .stActive = {1, 1, 7, 8}};
        EXPECT_EQ(KOVAAPI_SetSrcPortMode(&src), KOVA_NO_ERROR);
        EXPECT_EQ(src.flags, c.flags);
        EXPECT_EQ(src.hTotal, 858);
        EXPECT_EQ(src.stActive, (VideoWindow{720, 480, 7, 8}));
        EXPECT_EQ(sim::KovaRegister(0x402) & 0x3030, c.syncType2 << 12 | c.syncType1 << 4);
    }
    for (std::uint8_t frmt = 0; frmt < VIDSRC_COUNT; ++frmt) {
        src.frmt = frmt;
        src.mode = EMB422_8;
        EXPECT_EQ(KOVAAPI_SetSrcPortMode(&src), KOVA_NO_ERROR);
        EXPECT_EQ(src.flags, 0x8007 | defKOVASrcVideo[frmt].flags | (frmt >= 4 && frmt <= 7 ? 0x4000 : 0));
    }
}

TEST_F(KovaInputPort, AFormatOrModeOutOfRangeChangesNothing) {
    for (const auto& [frmt, mode] : {std::pair{12, 0}, {255, 0}, {0, 10}, {0, 255}}) {
        src = {.frmt = std::uint8_t(frmt), .mode = std::uint8_t(mode), .hTotal = 1, .flags = 2, .stActive = {3, 4}};
        EXPECT_EQ(KOVAAPI_SetSrcPortMode(&src), KOVA_INVALID_FORMAT);
        EXPECT_EQ(std::pair(src.hTotal, src.flags), std::pair(std::uint16_t{1}, std::uint16_t{2}));
        EXPECT_EQ(src.stActive, (VideoWindow{3, 4, 0, 0}));
    }
    EXPECT_EQ(Journal(), "");
}

TEST_F(KovaInputPort, OptionsGoToThePortOfTheRecord) {
    struct Case {
        std::uint8_t (*set)(SrcVideoInfo*, std::uint8_t);
        unsigned bit;
        const char *onA, *offA, *onB, *offB;
    };
    for (const Case& c : {
             Case{KOVAAPI_SetSrcCompHsync, 1, "402:0040 u", "402:ffbf u", "", ""},
             Case{KOVAAPI_SetSrcHighTopFieldID, 2, "401:0002 u", "401:fffd u", "401:0001 u", "401:fffe u"},
             Case{KOVAAPI_SetSrcInputFieldID, 4, "401:0008 u", "401:fff7 u", "", ""},
             Case{KOVAAPI_SetSrcCbCrSwap, 8, "400:0008 u", "400:fff7 u", "400:0004 u", "400:fffb u"},
         }) {
        SCOPED_TRACE(c.bit);
        for (const bool onPortA : {true, false}) {
            src.flags = onPortA ? VIDFLAG_PORT_A : 0;
            const char* const on = onPortA ? c.onA : c.onB;
            src.auxFlags = 0;
            Fill(0);
            EXPECT_EQ(c.set(&src, 2), KOVA_NO_ERROR);
            EXPECT_EQ(src.auxFlags, *on != '\0' ? c.bit : 0U);
            EXPECT_EQ(Short(), on);
            src.auxFlags = 0xFF;
            Fill(0xFFFF);
            EXPECT_EQ(c.set(&src, 0), KOVA_NO_ERROR);
            EXPECT_EQ(src.auxFlags, *on != '\0' ? 0xFFU - c.bit : 0xFFU);
            EXPECT_EQ(Short(), onPortA ? c.offA : c.offB);
        }
    }
}

TEST_F(KovaInputPort, ValuesAreKeptInTheRecord) {
    for (const bool onPortA : {true, false}) {
        src = {.flags = std::uint16_t(onPortA ? VIDFLAG_PORT_A : 0)};
        Fill(0);
        KOVAAPI_SetSrcYCOffset(&src, 7);
        KOVAAPI_SetSrcPosition(&src, 5, 200);
        KOVAAPI_SetSrcClockDelay(&src, &kDelay);
        EXPECT_EQ(Short(), onPortA ? "400:3800 u 404:9005 u 044:001f" : "400:0700 u 405:9005 u 046:001f");
        EXPECT_EQ(src.ycOffset, 7);
        EXPECT_EQ(src.stClip, (VideoWindow{0, 0, 5, 200}));
        EXPECT_EQ(src.pClockDelay, &kDelay);
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
    out = {.frmt = VIDOUT_1920x1080i60,
           .mode = EMB422_10,
           .auxFlags = 0x822F,
           .pOutVCLK = &kDelays[0],
           .pOutVCLKB = &kDelays[1],
           .pIntVCLK = &kDelays[2],
           .pIntVCLK2x = &kDelays[3],
           .pIntDACCLK = &kDelays[4]};
    EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), KOVA_NO_ERROR);
    EXPECT_EQ(
        Short(),
        "4a2:0009 4a2:0069 4a3:0007 " + DacWrites(defKOVADACData[VIDOUT_1920x1080i60])
            + "484:0014 485:000a 486:023d 488:0898 489:00c1 48a:0841 48b:002d 48c:0001 48d:0465 48e:0015 48f:0231 "
              "490:0006 491:0001 492:0248 493:0464 494:0238 495:0233 496:044d "
              "020:0001 02c:0004 02e:002c 030:0002 020:0000 020:0002 032:0002 034:000a 020:0000 "
              "01c:0000 445:0002 445:a602 040:0070 040:0075 497:0001 498:004d 4b4:0020 4b4:0030 "
              "4a2:0079 4a3:0017 4b4:0030 4b4:00b0 4b4:00f0 4b4:00f8 4b4:00fc u "
              "024:0005 024:0065 018:000b 026:03fc 028:0001");
    EXPECT_EQ(out.flags, 0x4133);
    EXPECT_EQ(out.stActive, (VideoWindow{1920, 1080, 0, 0}));
}

TEST_F(KovaOutputPort, ModesAndFormatsFillTheRecord) {
    struct Case {
        unsigned mode, flags, digital, dac;
    };
    for (const Case& c : {Case{RGB444_8, 0x013C, 0x104, 0},
                          {YUV444_8, 0x013D, 0x044, 5},
                          {EMB422_8, 0x013F, 0x06D, 5},
                          {SEP422_8, 0x013F, 0x045, 5},
                          {EMB422_10, 0x013B, 0x069, 5},
                          {SEP422_10, 0x013B, 0x041, 5},
                          {MUX656_8, 0x013F, 0x06E, 5},
                          {MUX656_10, 0x013B, 0x06A, 5}}) {
        SCOPED_TRACE(c.mode);
        for (const bool hd : {false, true}) {
            out = {.frmt = hd ? VIDOUT_1280x720p60 : VIDOUT_1280x1024p60, .mode = std::uint8_t(c.mode)};
            EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), KOVA_NO_ERROR);
            EXPECT_EQ(out.flags, c.flags | (hd ? 0x4000U : 0U));
            EXPECT_EQ(sim::KovaRegister(0x4A2), (c.digital & 0xF) | (c.digital & 0x3E0));
            EXPECT_EQ(sim::KovaRegister(0x4A3), c.dac | (hd ? 2U : 0U));
        }
    }
    for (std::uint8_t frmt = 0; frmt < VIDOUT_COUNT; ++frmt) {
        out = {.frmt = frmt};
        EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), KOVA_NO_ERROR);
        EXPECT_EQ(out.flags, 0x0004 | defKOVAOutVideo[frmt].flags | (frmt >= 4 && frmt <= 9 ? 0x4000 : 0));
        EXPECT_EQ(out.stActive, (VideoWindow{defKOVAOutVideo[frmt].width, defKOVAOutVideo[frmt].height, 0, 0}));
        EXPECT_EQ(out.sync, defKOVAOutSync[frmt]);
        EXPECT_EQ(out.dac, defKOVADACData[frmt]);
        EXPECT_EQ(out.tmds, defKOVAOutTMDS[frmt]);
    }
}

TEST_F(KovaOutputPort, ANarrowMultiplexedOutputRunsAtTwiceThePixelClock) {
    for (std::uint8_t frmt = 0; frmt < VIDOUT_COUNT; ++frmt) {
        for (const std::uint8_t mode : {SEP422_10, MUX656_8, MUX656_10}) {
            SCOPED_TRACE(testing::Message() << int{frmt} << " mode " << int{mode});
            const SyncTiming& table = defKOVAOutSync[frmt];
            SyncTiming expected = table;
            const bool twice =
                mode != SEP422_10
                && (frmt <= VIDOUT_720x576p50 || (frmt >= VIDOUT_640x480p60 && frmt <= VIDOUT_800x600p75));
            if (twice) {
                expected[3] = std::uint16_t(2 * table[3]);
                for (const std::size_t word : {4U, 5U, 6U}) {
                    expected[word] = std::uint16_t(2 * table[word] - 1);
                }
                expected[20] = std::uint16_t(table[20] - 1);
            }
            out = {.frmt = frmt, .mode = mode};
            EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), KOVA_NO_ERROR);
            EXPECT_EQ(out.sync, expected);
            EXPECT_EQ(out.stActive.w, defKOVAOutVideo[frmt].width * (twice ? 2 : 1));
            EXPECT_EQ(sim::KovaRegister(0x488), expected[3]);
            EXPECT_EQ(sim::KovaRegister(0x030), expected[20]);
        }
    }
}

TEST_F(KovaOutputPort, AFormatOrModeOutOfRangeChangesNothing) {
    for (const auto& [frmt, mode] : {std::pair{24, 0}, {255, 0}, {0, 8}, {0, 255}}) {
        out = {.frmt = std::uint8_t(frmt), .mode = std::uint8_t(mode), .flags = 2, .stActive = {3, 4}};
        EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), KOVA_INVALID_FORMAT);
        EXPECT_EQ(out.flags, 2);
        EXPECT_EQ(out.stActive, (VideoWindow{3, 4, 0, 0}));
    }
    EXPECT_EQ(Journal(), "");
}

TEST_F(KovaOutputPort, Options) {
    struct Case {
        std::uint8_t (*set)(OutVideoInfo*, std::uint8_t);
        unsigned bit;
        const char *on, *off;
    };
    for (const Case& c : {
             Case{KOVAAPI_SetDIGCbCrSwap, 0x8000, "4a2:0010 u", "4a2:ffef u"},
             Case{KOVAAPI_SetDACPbPrSwap, 0x0200, "4a3:0010 u", "4a3:ffef u"},
             Case{KOVAAPI_SetOutHActInvert, 0x0008, "4b4:0080 u", "4b4:ff7f u"},
             Case{KOVAAPI_SetOutVActInvert, 0x0004, "4b4:0040 u", "4b4:ffbf u"},
             Case{KOVAAPI_SetOutHSyncHAct, 0x0002, "4b4:0008 u", "4b4:fff7 u"},
             Case{KOVAAPI_SetOutVSyncVAct, 0x0001, "4b4:0004 u", "4b4:fffb u"},
         }) {
        out.auxFlags = 0;
        Fill(0);
        EXPECT_EQ(c.set(&out, 0x80), KOVA_NO_ERROR);
        EXPECT_EQ(out.auxFlags, c.bit);
        EXPECT_EQ(Short(), c.on);
        out.auxFlags = 0xFFFF;
        Fill(0xFFFF);
        EXPECT_EQ(c.set(&out, 0), KOVA_NO_ERROR);
        EXPECT_EQ(out.auxFlags, 0xFFFF - c.bit);
        EXPECT_EQ(Short(), c.off);
    }
}

TEST_F(KovaOutputPort, DataEnableModes) {
    for (const auto& [mode, flags, writes] :
         {std::tuple{0, 0xFFEF, "4b4:fcff u"}, {1, 0xFFDF, "4b4:fdff u"}, {2, 0xFFCF, "4b4:feff u"}}) {
        out.auxFlags = 0xFFFF;
        Fill(0xFFFF);
        EXPECT_EQ(KOVAAPI_SetDEOutMode(&out, std::uint8_t(mode)), KOVA_NO_ERROR);
        EXPECT_EQ(out.auxFlags, flags);
        EXPECT_EQ(Short(), writes);
        // The whole output finds the mode in the record again; with both bits it is mode 1.
        KOVAAPI_SetOutVideoAUX(&out);
        EXPECT_EQ(sim::KovaRegister(0x4B4) >> 8 & 3, mode);
        Journal();
    }
    out.auxFlags = 0x0030;
    KOVAAPI_SetOutVideoAUX(&out);
    EXPECT_EQ(sim::KovaRegister(0x4B4) >> 8 & 3, 1);
}

TEST_F(KovaOutputPort, ClockDelays) {
    constexpr ClockDelay kDelay{1, 2};
    struct Case {
        std::uint8_t (*set)(OutVideoInfo*, const ClockDelay*);
        const ClockDelay* OutVideoInfo::*kept;
        const char* writes;
    };
    for (const Case& c : {
             Case{KOVAAPI_SetOutVCLKDelay, &OutVideoInfo::pOutVCLK, "024:0006"},
             Case{KOVAAPI_SetOutVCLKBDelay, &OutVideoInfo::pOutVCLKB, "024:0060"},
             Case{KOVAAPI_SetIntVCLKDelay, &OutVideoInfo::pIntVCLK, "018:0006"},
             Case{KOVAAPI_SetIntVCLK2xDelay, &OutVideoInfo::pIntVCLK2x, "026:0006"},
             Case{KOVAAPI_SetIntDACCLKDelay, &OutVideoInfo::pIntDACCLK, "028:0006"},
         }) {
        Fill(0);
        EXPECT_EQ(c.set(&out, &kDelay), KOVA_NO_ERROR);
        EXPECT_EQ(out.*c.kept, &kDelay);
        EXPECT_EQ(Short(), c.writes);
        EXPECT_EQ(c.set(&out, nullptr), KOVA_NO_ERROR);
        EXPECT_EQ(out.*c.kept, nullptr);
    }
    EXPECT_EQ(Transfers(), "");
}

TEST_F(KovaOutputPort, ClockSourcesAndResets) {
    for (const auto& [source, writes] : {std::pair{0, "03a:0000 02a:0000 018:0004 070:0000 070:0001"},
                                         {1, "03a:0000 02a:0001 018:0004 070:0000 070:0001"},
                                         {2, "03a:0000 02a:0002 018:0004 070:0000 070:0001"},
                                         {3, "03a:0001 02a:0001 018:0004 070:0000 070:0001"}}) {
        EXPECT_EQ(KOVAAPI_SetVCLKPLLSource(std::uint16_t(source)), KOVA_NO_ERROR);
        EXPECT_EQ(KOVAPLLClock, source);
        EXPECT_EQ(Short(), writes);
    }
    KOVAAPI_HardReset();
    KOVAAPI_ResetOutSync(100);
    EXPECT_EQ(Short(), "072:0000 072:0001 499:0000 499:1064 u");
}

TEST_F(KovaOutputPort, DriversAndPinsAreSwitchedOffByTheirBits) {
    struct Case {
        std::uint8_t (*enable)(std::uint8_t, std::uint8_t);
        unsigned which;
        const char *on, *off;
    };
    for (const Case& c : {
             Case{KOVAAPI_EnableClockDrive, 15, "03c:f000 03c:b000", "03c:0fff 03c:4fff"},
             Case{KOVAAPI_EnableClockDrive, 3, "03c:fff7", "03c:0008"},
             Case{KOVAAPI_EnableClockDrive, 14, "03c:bfff", "03c:4000"},
             Case{KOVAAPI_EnableOutPortPin, 5, "01e:ffe1", "01e:001e"},
             Case{KOVAAPI_EnableOutPortPin, 2, "01e:fffb", "01e:0004"},
         }) {
        Fill(0xFFFF);
        EXPECT_EQ(c.enable(std::uint8_t(c.which), 7), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.on);
        Fill(0);
        EXPECT_EQ(c.enable(std::uint8_t(c.which), 0), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.off);
        for (const std::uint8_t beyond : {std::uint8_t{16}, std::uint8_t{255}}) {
            EXPECT_EQ(c.enable(beyond, 0), KOVA_I2C_ERROR);
        }
    }
    KOVAAPI_EnableDACPortOut(0);
    KOVAAPI_EnableDACPortOut(2);
    EXPECT_EQ(Transfers(), "kova r 001e 0004\nkova w 001e 0005\nkova r 001e 0005\nkova w 001e 0004\n");
}

} // namespace
