#include "hdmitx/hdmitx.h"
#include "hdmitx/presets.h"
#include "kova/api.h"
#include "tests/board.h"

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
    template <typename Operation>
    static std::string Of(Operation operation) {
        Transfers();
        Quietly(operation);
        return Transfers();
    }
};

constexpr const char* kReset = "hdmi1 w 05 03\nhdmi1 w 05 00\n";
constexpr const char* kDe720p =
    "hdmi1 w 32 04\nhdmi1 w 33 01\nhdmi1 w 36 00\nhdmi1 w 37 05\nhdmi1 w 34 19\nhdmi1 w 38 d0\n"
    "hdmi1 w 39 02\nhdmi1 r 33 01\nhdmi1 w 33 01\nhdmi1 r 33 01\nhdmi1 w 33 01\n";
constexpr const char* kOutputOn = "hdmi1 r 08 03\nhdmi1 w 08 03\n";

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
    EXPECT_EQ(Of(InitHDMITXVariable), "");
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

TEST_F(TxStartUp, HdmiOperationStartsInItsOrder) {
    OutVideoFrmt = VIDOUT_1280x720p60;
    const Printed printed = Capture([] { EXPECT_EQ(InitializeHDMITX(), 1); });
    std::string cts;
    for (int i = 0; i < 20; ++i) {
        cts += "hdmi2 r 09 00\nhdmi2 r 0a 00\nhdmi2 r 0b 00\n";
    }
    EXPECT_EQ(Transfers(),
              std::string("hdmi1 r 03 91\n") + kReset
                  + "hdmi2 r 2f 00\nhdmi2 w 2f 01\nhdmi2 w 03 00\nhdmi2 w 04 18\nhdmi2 w 05 00\n"
                    "hdmi2 w 01 02\nhdmi2 w 02 01\nhdmi2 w 21 02\nhdmi2 w 22 0b\nhdmi2 w 24 0b\nhdmi2 w 1d 08\n"
                    "hdmi2 r 14 00\nhdmi2 w 14 00\nhdmi2 w 1c e4\nhdmi2 w 14 11\n"
                  + kDe720p + "hdmi1 r 4a 00\nhdmi1 w 4a 00\n"
                  + "hdmi1 r 08 00\nhdmi1 w 08 02\nhdmi1 r 48 00\nhdmi1 w 48 00\n"
                    "hdmi1 r 08 02\nhdmi1 w 08 03\nhdmi2 r 3d 00\nhdmi2 w 3d 01\n"
                    "hdmi1 w 71 18\n"
                  + cts + "hdmi1 w 71 78\nhdmi1 w 75 78\n" + kOutputOn + "hdmi1 w 71 78\nhdmi1 w 75 78\n");
    EXPECT_EQ(printed.err.substr(0, printed.err.find(" \n\rHDMI TX : CTS")),
              " \n\rHDMI TX : UpdateTX_DE(), VMIndex=2, stOutVideoInfo.frmt=4"
              " \n\rHDMI TX : ConfigTXVideoMode():TX_VID_MODE_ADDR"
              " \n\r          Sync Extraction : Disable \n\r          YC Demux : Disable"
              " \n\r          Upsampling(422->444) : Enabled \n\r          CSC(YCbCr->RGB) : Disabled"
              " \n\r          Data Range Expanded: Disabled(16~235) \n\r          Dithering : Disable");
    EXPECT_EQ(RequireConfigInfoFrame, 1);
    EXPECT_EQ(DefaultActiveAspect, 2);
    EXPECT_EQ(OldOutputState, 255);
}

TEST_F(TxStartUp, ForcedDviStartsWithoutAudio) {
    DefaultDVImode = 1;
    DefaultICLKValue = 0x40;
    DefaultICLKEDGE = 1;
    RequireConfigInfoFrame = 0;
    sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0x01;
    EXPECT_EQ(Of(InitHDMITX), std::string("hdmi1 r 08 00\nhdmi1 w 08 01\nhdmi2 r 3d 00\nhdmi2 w 3d 01\n") + kReset
                                  + kDe720p
                                  + "hdmi2 r 2f 01\nhdmi2 w 2f 00\nhdmi1 r 4a 00\nhdmi1 w 4a 00\nhdmi1 w 0c 88\n"
                                    "hdmi1 r 48 00\nhdmi1 w 48 40\nhdmi1 r 08 01\nhdmi1 w 08 03\n"
                                    "hdmi1 w 71 60\nhdmi1 w 75 60\n"
                                  + kOutputOn);
    EXPECT_EQ(RequireConfigInfoFrame, 1);
}

TEST_F(TxStartUp, EmbeddedSyncsAreDecodedInBothOperations) {
    for (const bool dvi : {false, true}) {
        DefaultDVImode = dvi ? 1 : 0;
        Default656OutEn = 1;
        RequireConfigInfoFrame = 0;
        const std::string transfers = Of(InitHDMITX);
        EXPECT_NE(transfers.find("hdmi1 r 3e 00\nhdmi1 w 3e 00\nhdmi1 w 40 6e\n"), std::string::npos);
        EXPECT_EQ(transfers.find("hdmi1 w 32 "), std::string::npos);
        EXPECT_EQ(RequireConfigInfoFrame, 1);
    }
}

TEST_F(TxStartUp, ATransmitterThatDoesNotAnswerIsLeftUntouched) {
    Hdmi1(0x03) = 0x90;
    DefaultMCLKIndex = 0xEE;
    EXPECT_EQ(Capture([] { EXPECT_EQ(InitializeHDMITX(), 0); }).err, " \n\rNo responce from TX' module... ");
    EXPECT_EQ(Transfers(), "hdmi1 r 03 90\n");
    EXPECT_EQ(DefaultMCLKIndex, 0xEE);
}

TEST_F(TxStartUp, TheFirstNAndTheI2sInputFollowTheAudioConfiguration) {
    struct Case {
        std::uint8_t code;
        const char* n;
    };
    for (const Case& c : {Case{3, "hdmi2 w 03 00\nhdmi2 w 04 10\nhdmi2 w 05 00\n"},
                          Case{0, "hdmi2 w 03 80\nhdmi2 w 04 18\nhdmi2 w 05 00\n"}, Case{8, ""}}) {
        DefaultAudioConfig[2] = c.code;
        const std::string transfers = Of(InitAudioPart);
        const std::size_t start = transfers.find("hdmi2 w 2f 01\n") + 14;
        EXPECT_EQ(transfers.substr(start, transfers.find("hdmi2 w 01 02") - start), c.n) << int{c.code};
    }
    DefaultAudioConfig = {0x40, 0xEE, 0xA2, 0xA3, 0xA4};
    sim::TxRegister(sim::Page::Hdmi2, 0x14) = 0xFF;
    EXPECT_EQ(Of(InitDVDAudio), "hdmi2 w 21 a2\nhdmi2 w 22 a3\nhdmi2 w 24 a3\nhdmi2 w 1d a4\n"
                                "hdmi2 r 14 ff\nhdmi2 w 14 fe\nhdmi2 w 1c e6\nhdmi2 w 14 41\n");
    EXPECT_EQ(Of([] { SetI2SDataSelection(0x20); }), "hdmi2 r 14 41\nhdmi2 w 14 40\nhdmi2 w 1c e5\nhdmi2 w 14 21\n");
    EXPECT_EQ(Of([] { SetI2SDataSelection(0x80); }), "hdmi2 r 14 21\nhdmi2 w 14 20\nhdmi2 w 1c e7\nhdmi2 w 14 81\n");
    EXPECT_EQ(Of([] { SetI2SDataSelection(0x30); }), "hdmi2 r 14 81\nhdmi2 w 14 80\nhdmi2 w 14 31\n");
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

// ---- DE generator and embedded syncs ----

TEST_F(TxStartUp, TheActivePictureIsLoadedFromTheTiming) {
    EXPECT_EQ(Of([] { UpdateTX_DE(4); }), "hdmi1 w 32 77\nhdmi1 w 33 00\nhdmi1 w 36 d0\nhdmi1 w 37 02\nhdmi1 w 34 12\n"
                                          "hdmi1 w 38 f0\nhdmi1 w 39 00\nhdmi1 r 33 00\nhdmi1 w 33 30\n");
    EXPECT_EQ(Of([] { UpdateTX_DE(23); }), "hdmi1 w 32 08\nhdmi1 w 33 01\nhdmi1 w 36 a0\nhdmi1 w 37 05\nhdmi1 w 34 2c\n"
                                           "hdmi1 w 38 40\nhdmi1 w 39 02\nhdmi1 r 33 01\nhdmi1 w 33 21\n");
    Hdmi1(0x3E) = 0xFF;
    EXPECT_EQ(Of([] { UpdateTX_656(3); }),
              "hdmi1 r 3e ff\nhdmi1 w 3e fc\nhdmi1 w 40 58\nhdmi1 w 41 00\nhdmi1 w 42 4c\n"
              "hdmi1 w 43 04\nhdmi1 w 44 2c\nhdmi1 w 45 00\nhdmi1 w 46 02\nhdmi1 w 47 05\n");
    Hdmi1(0x3E) = 0x80;
    EXPECT_EQ(Of([] { UpdateTX_656(4); }).substr(0, 28), "hdmi1 r 3e 80\nhdmi1 w 3e 83\n");
    EXPECT_EQ(Of([] { UpdateTX_656(255); }).find("hdmi1 w 40 00\n"), 28U); // outside the table: no timing
}

TEST_F(TxStartUp, TheDeGeneratorIsSwitchedForSeparateSyncsOnly) {
    DefaultDataEnable = 4;
    EXPECT_NE(Of([] { HDMITX_SetDE(0); }).find("hdmi1 r 33 01\nhdmi1 w 33 41\n"), std::string::npos);
    stOutVideoInfo.frmt = 20;
    EXPECT_EQ(Capture([] { HDMITX_SetDE(2); }).err, " \n\rHDMI TX : UpdateTX_DE(), VMIndex=78, stOutVideoInfo.frmt=20");
    EXPECT_EQ(Transfers().find(" 33 "), std::string::npos);
    EXPECT_EQ(Of([] { DE_GenEn(0); }), "hdmi1 r 33 41\nhdmi1 w 33 01\n");
}

TEST_F(TxStartUp, Presets) {
    EXPECT_EQ(Of(HDMITX_OutVideoNormal), "hdmi1 w 05 00\nhdmi1 w 08 37\nhdmi1 w 0c 88\nhdmi1 w 33 00\nhdmi1 w 48 00\n"
                                         "hdmi1 w 4a 00\nhdmi1 w 82 20\nhdmi2 w 2f 01\nhdmi2 w 14 11\nhdmi2 w 03 00\n"
                                         "hdmi2 w 04 18\nhdmi2 w 05 00\nhdmi2 w 21 02\nhdmi2 w 22 02\nhdmi2 w 24 02\n"
                                         "hdmi2 w 1d 48\n");
    EXPECT_EQ(
        Of(HDMITX_OutVideoBT656),
        "hdmi1 w 05 00\nhdmi1 w 06 19\nhdmi1 w 07 64\nhdmi1 w 08 07\nhdmi1 w 09 87\nhdmi1 w 0c 88\nhdmi1 w 48 20\n"
        "hdmi1 w 4a 07\nhdmi1 w 82 20\nhdmi1 w 32 77\nhdmi1 w 33 70\nhdmi1 w 34 12\nhdmi1 w 35 00\nhdmi1 w 36 d0\n"
        "hdmi1 w 37 02\nhdmi1 w 38 f0\nhdmi1 w 39 00\nhdmi1 w 3a b4\nhdmi1 w 3b 06\nhdmi1 w 3c 06\nhdmi1 w 3d 01\n"
        "hdmi1 w 3e 04\nhdmi1 w 3f 07\nhdmi1 w 40 13\nhdmi1 w 41 00\nhdmi1 w 42 ad\nhdmi1 w 43 01\nhdmi1 w 44 3e\n"
        "hdmi1 w 45 00\nhdmi1 w 46 04\nhdmi1 w 47 03\n");
}

} // namespace
