#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "tests/board.h"

#include <tuple>

namespace {

std::uint8_t& Hdmi1(std::uint8_t reg) { return sim::TxRegister(sim::Page::Hdmi1, reg); }

class TxStartUp : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        Defaults();
    }
    void TearDown() override {
        Defaults();
        Board::TearDown();
    }
    static void Defaults() {
        InitHDMITXVariable();
        DefaultICLKEDGE = DefaultMCLKIndex = RequireConfigInfoFrame = 0;
        DefaultAudioConfig = {};
        OldOutputState = OUTPUT_NO_SINK;
        OutVideoMode = OutVideoFrmt = SrcVideoFrmt = 0;
        stOutVideoInfo = {};
        stOutVideoInfo.frmt = VIDOUT_1280x720p60;
    }
};

TEST_F(TxStartUp, TheDefaultsReplaceWhatWasThere) {
    const std::array<std::uint8_t*, 10> globals{
        &OutputState,      &OldOutputState, &RequireConfigInfoFrame, &Default656OutEn,     &DefaultDataEnable,
        &DefaultICLKValue, &DefaultDVImode, &DefaultICLKEDGE,        &DefaultActiveAspect, &DefaultMCLKIndex};
    constexpr std::array<std::uint8_t, 10> kDefaults{0, 255, 1, 0, 0, 0, 0, 1, 0, 1};
    for (std::uint8_t* const global : globals) {
        *global = 0xEE;
    }
    DefaultAudioConfig.fill(0xEE);
    OutVideoFrmt = VIDOUT_640x480p60;
    Journal();
    InitHDMITXVariable();
    EXPECT_EQ(Journal(), "");
    for (std::size_t i = 0; i < globals.size(); ++i) {
        EXPECT_EQ(*globals[i], kDefaults[i]) << i;
    }
    EXPECT_EQ(DefaultAudioConfig, (std::array<std::uint8_t, 5>{0x10, 2, 2, 0x0B, 8}));
    for (unsigned frmt = 0; frmt < VIDOUT_COUNT; ++frmt) {
        OutVideoFrmt = static_cast<std::uint8_t>(frmt);
        InitHDMITXVariable();
        EXPECT_EQ(DefaultActiveAspect, frmt >= 4 && frmt <= 9 ? 2 : 0) << frmt;
    }
}

// Start-up sequences, presets, and what they are made of: every transfer, and what is reported.
TEST_F(TxStartUp, EverySequence) {
    std::string all;
    const auto note = [&all](const std::string& name, auto operation) {
        Transfers();
        const std::string reported = Capture(operation).err;
        all += "== " + name + "\n" + reported + (reported.empty() ? "" : "\n") + Transfers();
    };
    OutVideoFrmt = VIDOUT_1280x720p60;
    note("HDMI operation", [] { EXPECT_EQ(InitializeHDMITX(), 1); });
    EXPECT_EQ(std::tuple(RequireConfigInfoFrame, DefaultActiveAspect, OldOutputState), std::tuple(1, 2, 255));
    for (const bool dvi : {false, true}) {
        DefaultDVImode = dvi ? 1 : 0;
        DefaultICLKValue = 0x40;
        Default656OutEn = 1;
        RequireConfigInfoFrame = 0;
        note(dvi ? "DVI operation, embedded syncs" : "HDMI operation again, embedded syncs", InitHDMITX);
        EXPECT_EQ(RequireConfigInfoFrame, 1);
    }
    DefaultMCLKIndex = 0xEE;
    Hdmi1(0x03) = 0x90;
    note("a transmitter that does not answer", [] { EXPECT_EQ(InitializeHDMITX(), 0); });
    EXPECT_EQ(DefaultMCLKIndex, 0xEE);

    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{3, 0, 2, 8}) {
        DefaultAudioConfig = {0x40, 0xEE, code, 0xA3, 0xA4};
        note("audio, channel status code " + std::to_string(code), InitAudioPart);
    }
    for (const std::uint8_t input : std::initializer_list<std::uint8_t>{0x10, 0x20, 0x80, 0x30}) {
        sim::TxRegister(sim::Page::Hdmi2, 0x14) = 0xFF;
        note("I2S input " + std::to_string(input >> 4), [&] { SetI2SDataSelection(input); });
    }
    for (const std::uint8_t row : std::initializer_list<std::uint8_t>{2, 4, 23, 255}) {
        note("DE generator, row " + std::to_string(row), [&] { UpdateTX_DE(row); });
    }
    for (const std::uint8_t row : std::initializer_list<std::uint8_t>{3, 4, 255}) {
        Hdmi1(0x3E) = 0xFD;
        note("embedded syncs, row " + std::to_string(row), [&] { UpdateTX_656(row); });
    }
    DefaultDataEnable = 4;
    note("separate syncs, DE generator on", [] { HDMITX_SetDE(0); });
    note("DE generator off", [] { DE_GenEn(0); });
    stOutVideoInfo.frmt = VIDOUT_1680x1050p60;
    note("embedded syncs, a format without a timing", [] { HDMITX_SetDE(2); });
    note("normal preset", HDMITX_OutVideoNormal);
    note("BT.656 preset", HDMITX_OutVideoBT656);
    ExpectGolden("tx-sequences.txt", all);
}

// ---- Video input stage ----

// The rule by its words, over everything it depends on.
TEST_F(TxStartUp, TheInputStageFollowsPortModeOutputStateAndTiming) {
    const std::string kSync = "2467", kDemux = "6", kNoUpsampling = "234567", kDither = "457", kKnown = "01234567";
    for (unsigned mode = 0; mode <= 9; ++mode) {
        const auto in = [mode](const std::string& modes) {
            return modes.find(static_cast<char>('0' + mode)) != std::string::npos;
        };
        for (const std::uint8_t state : {OUTPUT_NO_SINK, OUTPUT_HDMI, OUTPUT_DVI, OUTPUT_DVI_NO_POWER}) {
            for (const std::uint8_t frmt : {VIDOUT_1280x720p60, VIDOUT_1024x768p60, VIDOUT_640x480p60}) {
                for (const unsigned old : {0x00U, 0xFFU, 0x05U, 0x08U, 0xD2U}) {
                    OutVideoMode = static_cast<std::uint8_t>(mode);
                    OutputState = state;
                    stOutVideoInfo.frmt = frmt;
                    Hdmi1(0x4A) = static_cast<std::uint8_t>(old);
                    Quietly(ConfigTXVideoMode);
                    const bool dvi = state == OUTPUT_DVI;
                    const unsigned expected = (old & 0xC0) | (in(kKnown) ? unsigned{in(kSync)} : old & 1)
                                              | unsigned{in(kDemux)} << 1
                                              | (in(kKnown) ? unsigned{in(kNoUpsampling)} << 2 : old & 4)
                                              | (mode == 0         ? 0
                                                 : dvi && in("13") ? 8
                                                                   : old & 8)
                                              | (frmt == VIDOUT_1280x720p60 ? 0 : 0x10) | unsigned{in(kDither)} << 5;
                    EXPECT_EQ(Hdmi1(0x4A), expected) << mode << ' ' << int{state} << ' ' << int{frmt} << ' ' << old;
                }
            }
        }
    }
}

TEST_F(TxStartUp, ColourConversionForDviIsReportedAndGetsItsColorimetry) {
    OutVideoMode = YUV444_8;
    OutputState = OUTPUT_DVI;
    stOutVideoInfo.frmt = VIDOUT_1024x768p60;
    Hdmi1(0x48) = 0xFF;
    const std::string report = Capture(ConfigTXVideoMode).err;
    EXPECT_NE(
        report.find("CSC(YCbCr->RGB) : Enabled (DVI Output) \n\r          Data Range Expanded: Enabled(0~255) \n\r"),
        std::string::npos);
    EXPECT_EQ(Transfers(), "hdmi1 r 4a 00\nhdmi1 w 4a 18\nhdmi1 r 48 ff\nhdmi1 w 48 ef\n");
    for (unsigned frmt = 0; frmt < 12; ++frmt) {
        SrcVideoFrmt = static_cast<std::uint8_t>(frmt);
        Quietly(ConfigTXVideoMode);
        EXPECT_EQ(Hdmi1(0x48), frmt >= 4 && frmt <= 7 ? 0xFF : 0xEF);
    }
    Hdmi1(0x4A) = 0;
    OutVideoMode = MUX656_8;
    const std::string kHead = " \n\rHDMI TX : ConfigTXVideoMode():TX_VID_MODE_ADDR";
    EXPECT_EQ(
        Capture(ConfigTXVideoMode).err,
        kHead
            + " \n\r          Sync Extraction : Enabled \n\r          YC Demux : Enabled"
              " \n\r          Upsampling(422->444) : Disabled \n\r          CSC(YCbCr->RGB) : Disabled (DVI Output)"
              " \n\r          Data Range Expanded: Enabled(0~255) \n\r          Dithering : Disable");
    OutVideoMode = SEP422_10;
    EXPECT_NE(Capture(ConfigTXVideoMode).err.find(" \n\r          Dithering : Enabled"), std::string::npos);
}

} // namespace
