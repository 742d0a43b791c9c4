#include "tests/kova_driver.h"

namespace {

class KovaPorts : public KovaDriver {
protected:
    static constexpr ClockDelay kDelay{7, 3};
    SrcVideoInfo src{};
    OutVideoInfo out{};
};

TEST_F(KovaPorts, InvalidFormatOrModeChangesNothing) {
    for (const auto& [frmt, mode] : {std::pair{24, 0}, {255, 0}, {0, 10}, {0, 255}, {12, 8}}) {
        src = {.frmt = std::uint8_t(frmt), .mode = std::uint8_t(mode), .hTotal = 1, .flags = 2, .stActive = {3, 4}};
        out = {.frmt = src.frmt, .mode = src.mode, .flags = 2, .stActive = {3, 4}};
        EXPECT_EQ(KOVAAPI_SetSrcPortMode(&src), 2);
        EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), 2);
        EXPECT_EQ(std::tuple(src.hTotal, src.flags, src.stActive), std::tuple(1, 2, VideoWindow{3, 4}));
        EXPECT_EQ(std::tuple(out.flags, out.stActive), std::tuple(2, VideoWindow{3, 4}));
    }
    EXPECT_EQ(Journal(), "");
}

// ---- Input ----

static_assert(VIDSRC_720x576i50 == 1 && VIDSRC_1280x720p60 == 4 && VIDSRC_1920x1080i60 == 6
              && VIDSRC_1280x1024p60 == 11);

// Covers every mode twice, every format, each option alone, and calls without an option. Before each call all registers
// hold 0, or all registers hold 0xFFFF.
TEST_F(KovaPorts, InputModesFillRecordAndChip) {
    for (unsigned i = 0; i < 2 * kSrcModes; ++i) {
        const auto mode = static_cast<std::uint8_t>(i % kSrcModes), frmt = static_cast<std::uint8_t>(i % VIDSRC_COUNT);
        const unsigned option = (i + i / kSrcModes) % 5;
        src = {.frmt = frmt, .mode = mode, .flags = 0xFFFF, .stActive = {1, 1, 7, 8}};
        if (option < 4) {
            src.auxFlags = static_cast<std::uint8_t>(1U << option);
            src.ycOffset = 5;
            src.pClockDelay = &kDelay;
            src.stClip = {0, 0, 5, 200};
        }
        Fill((i + i / kSrcModes) % 2 == 0 ? 0 : 0xFFFF);
        const std::uint8_t result = KOVAAPI_SetSrcPortMode(&src);
        log << src.stActive << " of " << std::dec << src.hTotal << std::hex;
        Note(result, " format", frmt, "mode", mode, "flags", src.flags, "options", src.auxFlags, "\n   ");
    }
}

TEST_F(KovaPorts, SingleSettersUseTheRecordsPort) {
    for (const unsigned port : {VIDFLAG_PORT_A + 0U, 0U}) {
        for (const bool on : {true, false}) {
            src = {.auxFlags = std::uint8_t(on ? 0 : 0x1F), .flags = std::uint16_t(port)};
            Fill(on ? 0 : 0xFFFF);
            for (const auto set : {KOVAAPI_SetSrcCompHsync, KOVAAPI_SetSrcHighTopFieldID, KOVAAPI_SetSrcInputFieldID,
                                   KOVAAPI_SetSrcCbCrSwap}) {
                Note(set(&src, on ? 2 : 0), "port", port, "options", src.auxFlags);
            }
        }
        Fill(0);
        Note(KOVAAPI_SetSrcYCOffset(&src, 7), "port", port, "offset");
        Note(KOVAAPI_SetSrcPosition(&src, 5, 200), "port", port, "position");
        Note(KOVAAPI_SetSrcClockDelay(&src, &kDelay), "port", port, "clock delay");
        SrcVideoInfo far = src;
        Note(KOVAAPI_SetSrcPosition(&far, 0x3FF, 0), "port", port, "far position"); // x is not masked
        EXPECT_EQ(std::tuple(src.ycOffset, src.stClip, src.pClockDelay),
                  std::tuple(7, VideoWindow{0, 0, 5, 200}, &kDelay));
    }
    Note(KOVAAPI_SetSrcClockDelay(&src, nullptr), "no clock delay");
    EXPECT_EQ(src.pClockDelay, nullptr);
    Note(KOVAAPI_SetInDataMapMode(3), "data map");
}

// ---- Output ----

TEST_F(KovaPorts, InterlacedYCbCrOutputUsesAllOptions) {
    constexpr std::array<ClockDelay, 5> kDelays{{{1, 1}, {1, 2}, {2, 3}, {255, 0}, {0, 1}}};
    out = {.frmt = VIDOUT_1920x1080i60, .mode = EMB422_10, .auxFlags = 0x822F};
    out.pOutVCLK = &kDelays[0];
    out.pOutVCLKB = &kDelays[1];
    out.pIntVCLK = &kDelays[2];
    out.pIntVCLK2x = &kDelays[3];
    out.pIntDACCLK = &kDelays[4];
    Note(KOVAAPI_SetOutPortMode(&out), "1920x1080i60");
}

// A multiplexed output narrower than 1024 pixels runs at twice the pixel clock. This tests every mode of a narrow, a
// wide and an interlaced format. It logs the sync words that differ from those of mode 0.
TEST_F(KovaPorts, OutputModesFillRecord) {
    for (std::uint8_t frmt = 0; frmt < VIDOUT_COUNT; ++frmt) {
        SyncTiming sync{};
        const bool everyMode = frmt == VIDOUT_720x480i60 || frmt == VIDOUT_1024x768p60 || frmt == VIDOUT_1920x1080i60;
        for (std::uint8_t mode = 0; mode <= (everyMode ? MUX656_10 : RGB444_8); ++mode) {
            out = {.frmt = frmt, .mode = mode, .flags = 0xFFFF, .stActive = {1, 1, 7, 8}};
            EXPECT_EQ(KOVAAPI_SetOutPortMode(&out), 0);
            log << out.stActive << " mode " << int{mode} << " flags " << out.flags << " tmds " << int{out.tmds[0]}
                << int{out.tmds[1]};
            for (const std::uint16_t addr : Words{0x4A2, 0x4A3, 0x4B4, 0x488, 0x030}) {
                log << ' ' << addr << ':' << sim::KovaRegister(addr);
            }
            log << " sync" << std::dec;
            for (std::size_t i = 0; i < sync.size(); ++i) {
                if (mode == 0 || out.sync[i] != sync[i]) {
                    log << ' ' << i << '=' << out.sync[i];
                }
            }
            log << std::hex << (mode == 0 ? "\n    dac" : "\n");
            if (mode == 0) {
                sync = out.sync;
                for (const std::uint16_t word : out.dac) {
                    log << ' ' << word;
                }
                log << '\n';
            }
        }
    }
}

TEST_F(KovaPorts, EachOptionSetsItsBits) {
    for (const bool on : {true, false}) {
        Fill(on ? 0 : 0xFFFF);
        for (const auto set : {KOVAAPI_SetDIGCbCrSwap, KOVAAPI_SetDACPbPrSwap, KOVAAPI_SetOutHActInvert,
                               KOVAAPI_SetOutVActInvert, KOVAAPI_SetOutHSyncHAct, KOVAAPI_SetOutVSyncVAct}) {
            Note(set(&out, on ? 0x80 : 0), "options", out.auxFlags);
        }
    }
    for (std::uint8_t mode = 0; mode <= 2; ++mode) {
        out.auxFlags = 0xFFFF;
        Fill(0xFFFF);
        Note(KOVAAPI_SetDEOutMode(&out, mode), "DE mode", mode, "options", out.auxFlags);
        Note(KOVAAPI_SetOutVideoAUX(&out), "the same from the record");
    }
    out.auxFlags = 0x0030; // if both bits are set, mode 1 is used
    Note(KOVAAPI_SetOutVideoAUX(&out), "both bits");
    for (unsigned bit = 0; bit < 16; ++bit) {
        out.auxFlags = static_cast<std::uint16_t>(1U << bit);
        Fill(0);
        Note(KOVAAPI_SetOutVideoAUX(&out), "option", out.auxFlags);
    }
}

TEST_F(KovaPorts, ClocksAndResetsAreWritten) {
    for (const std::uint16_t source : Words{0, 1, 2, 3, 4}) {
        Note(KOVAAPI_SetVCLKPLLSource(source), "source", source, "kept", KOVAPLLClock);
    }
    constexpr ClockDelay kClock{1, 2};
    for (const auto& [set, kept] : {std::pair{&KOVAAPI_SetOutVCLKDelay, &OutVideoInfo::pOutVCLK},
                                    {&KOVAAPI_SetOutVCLKBDelay, &OutVideoInfo::pOutVCLKB},
                                    {&KOVAAPI_SetIntVCLKDelay, &OutVideoInfo::pIntVCLK},
                                    {&KOVAAPI_SetIntVCLK2xDelay, &OutVideoInfo::pIntVCLK2x},
                                    {&KOVAAPI_SetIntDACCLKDelay, &OutVideoInfo::pIntDACCLK}}) {
        for (const ClockDelay* const delay : {&kClock, static_cast<const ClockDelay*>(nullptr)}) {
            Note(set(&out, delay), delay != nullptr ? "delay" : "none");
            EXPECT_EQ(out.*kept, delay);
        }
    }
    Note(KOVAAPI_HardReset(), "hard reset");
    Note(KOVAAPI_ResetOutSync(100), "sync reset");
}

TEST_F(KovaPorts, EachBitSwitchesItsDriverOrPin) {
    for (const auto& [enable, which] : {std::pair{&KOVAAPI_EnableClockDrive, 15},
                                        {&KOVAAPI_EnableClockDrive, 3},
                                        {&KOVAAPI_EnableClockDrive, 14},
                                        {&KOVAAPI_EnableClockDrive, 16},
                                        {&KOVAAPI_EnableClockDrive, 255},
                                        {&KOVAAPI_EnableOutPortPin, 5},
                                        {&KOVAAPI_EnableOutPortPin, 2},
                                        {&KOVAAPI_EnableOutPortPin, 16},
                                        {&KOVAAPI_EnableOutPortPin, 255}}) {
        for (const bool on : {true, false}) {
            Fill(on ? 0xFFFF : 0);
            Note(enable(std::uint8_t(which), on ? 7 : 0), which, on ? "on" : "off");
        }
    }
    Note(KOVAAPI_EnableDACPortOut(0), "DAC off");
    Note(KOVAAPI_EnableDACPortOut(2), "DAC on");
}

} // namespace
