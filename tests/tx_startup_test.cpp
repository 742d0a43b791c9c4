#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "tests/board.h"

#include <tuple>

namespace {

std::uint8_t& Hdmi1(std::uint8_t reg) { return sim::TxRegister(sim::Page::Hdmi1, reg); }

using TxStartUp = Board;

TEST_F(TxStartUp, TheDefaultsReplaceWhatWasThere) {
    for (std::uint8_t* const global :
         {&OutputState, &OldOutputState, &RequireConfigInfoFrame, &Default656OutEn, &DefaultDataEnable,
          &DefaultICLKValue, &DefaultDVImode, &DefaultICLKEDGE, &DefaultActiveAspect, &DefaultMCLKIndex}) {
        *global = 0xEE;
    }
    DefaultAudioConfig.fill(0xEE);
    OutVideoFrmt = VIDOUT_640x480p60;
    InitHDMITXVariable();
    EXPECT_EQ(Transfers(), "");
    EXPECT_EQ(std::tuple(OutputState, OldOutputState, RequireConfigInfoFrame, Default656OutEn, DefaultDataEnable,
                         DefaultICLKValue, DefaultDVImode, DefaultICLKEDGE, DefaultActiveAspect, DefaultMCLKIndex),
              std::tuple(0, 255, 1, 0, 0, 0, 0, 1, 0, 1));
    EXPECT_EQ(DefaultAudioConfig, (std::array<std::uint8_t, 5>{0x10, 2, 2, 0x0B, 8}));
    for (unsigned frmt = 0; frmt < VIDOUT_COUNT; ++frmt) {
        OutVideoFrmt = static_cast<std::uint8_t>(frmt);
        InitHDMITXVariable();
        EXPECT_EQ(DefaultActiveAspect, frmt >= 4 && frmt <= 9 ? 2 : 0) << frmt;
    }
}

// Start-up sequences, presets, and what they are made of: every transfer, and what is reported.
TEST_F(TxStartUp, EverySequence) {
    OutVideoFrmt = stOutVideoInfo.frmt = VIDOUT_1280x720p60;
    Log("HDMI operation", [] { EXPECT_EQ(InitializeHDMITX(), 1); });
    EXPECT_EQ(RequireConfigInfoFrame, 1);
    for (const bool dvi : {false, true}) {
        DefaultDVImode = dvi ? 1 : 0;
        DefaultICLKValue = 0x40;
        Default656OutEn = 1;
        RequireConfigInfoFrame = 0;
        Log(dvi ? "DVI operation, embedded syncs" : "HDMI operation again, embedded syncs", InitHDMITX);
        EXPECT_EQ(RequireConfigInfoFrame, 1);
    }
    DefaultMCLKIndex = 0xEE;
    Hdmi1(0x03) = 0x90;
    Log("a transmitter that does not answer", [] { EXPECT_EQ(InitializeHDMITX(), 0); });
    EXPECT_EQ(DefaultMCLKIndex, 0xEE);

    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{3, 0, 2, 8}) {
        DefaultAudioConfig = {0x40, 0xEE, code, 0xA3, 0xA4};
        Log("audio, channel status code " + std::to_string(code), InitAudioPart);
    }
    for (const std::uint8_t input : std::initializer_list<std::uint8_t>{0x10, 0x20, 0x80, 0x30}) {
        sim::TxRegister(sim::Page::Hdmi2, 0x14) = 0xFF;
        Log("I2S input " + std::to_string(input >> 4), [&] { SetI2SDataSelection(input); });
    }
    for (const std::uint8_t row : std::initializer_list<std::uint8_t>{2, 4, 23, 255}) {
        Log("DE generator, row " + std::to_string(row), [&] { UpdateTX_DE(row); });
    }
    for (const std::uint8_t row : std::initializer_list<std::uint8_t>{3, 4, 255}) {
        Hdmi1(0x3E) = 0xFD;
        Log("embedded syncs, row " + std::to_string(row), [&] { UpdateTX_656(row); });
    }
    DefaultDataEnable = 4;
    Log("separate syncs, DE generator on", [] { HDMITX_SetDE(0); });
    Log("DE generator off", [] { DE_GenEn(0); });
    stOutVideoInfo.frmt = VIDOUT_1680x1050p60;
    Log("embedded syncs, a format without a timing", [] { HDMITX_SetDE(2); });
    Log("normal preset", HDMITX_OutVideoNormal);
    Log("BT.656 preset", HDMITX_OutVideoBT656);
    ExpectGolden("tx-sequences.txt", log);
}

// A switch is on for any other value than 0, but the total power down for 1 only.
TEST_F(TxStartUp, EveryOperation) {
    Hdmi1(0x08) = 0x37;
    Hdmi1(0x48) = 0x13;
    sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0xFE;
    sim::TxRegister(sim::Page::Hdmi2, 0x3D) = 0xA0;
    Log("TMDS off", [] { HDMITXTMDSPowerDown(2); });
    Log("TMDS on", [] { HDMITXTMDSPowerDown(0); });
    Log("DVI mode?", [] { EXPECT_EQ(IsTXInHDMIMode(), 0); });
    Log("HDMI mode", [] { TX_HDMIMode(4); });
    Log("HDMI mode?", [] { EXPECT_EQ(IsTXInHDMIMode(), 1); });
    Log("DVI mode", [] { TX_HDMIMode(0); });
    Log("reset", SW_ResetHDMITX);
    Log("reset released", [] { ReleaseHDMITX_SWReset(1); });
    Log("total power down 2", [] { HDMITXTotalPowerDownEnable(2); });
    Log("total power down 1", [] { HDMITXTotalPowerDownEnable(1); });
    Log("wake up", WakeUpHDMITX);
    Log("input clock 40", [] { SetIClk(0x40); });
    Log("input clock 0", [] { SetIClk(0); });
    Log("master clock", [] { SetMCLK(0x5A); });
    DefaultICLKEDGE = 0;
    Log("falling edge", SetInputClockEdge);
    DefaultICLKEDGE = 1;
    Log("rising edge", SetInputClockEdge);
    Log("sample rate 50 kHz", [] { SetI2SFsStatus(50); });
    Log("S/PDIF", [] { TXSPDIFSelect(2); });
    Log("S/PDIF? audio off?", [] { EXPECT_EQ(IsSPDIFSelected() + 2 * IsAudioDisabled(), 3); });
    Log("audio on", [] { TXAudio(2); });
    Log("I2S", [] { TXSPDIFSelect(0); });
    Log("S/PDIF? audio off?", [] { EXPECT_EQ(IsSPDIFSelected() + 2 * IsAudioDisabled(), 0); });
    Log("audio off", [] { TXAudio(0); });
    DefaultDVImode = 3;
    Log("DVI forced?", [] { EXPECT_EQ(IsNeedToForceInDVIMode(), 3); });
    ExpectGolden("tx-operations.txt", log);
}

// What becomes of each old value of the mode register, and what a port mode's report says.
TEST_F(TxStartUp, TheInputStageFollowsPortModeOutputStateAndTiming) {
    for (OutVideoMode = 0; OutVideoMode <= 9; ++OutVideoMode) {
        for (const std::uint8_t state : {OUTPUT_NO_SINK, OUTPUT_HDMI, OUTPUT_DVI, OUTPUT_DVI_NO_POWER}) {
            OutputState = state;
            log += "mode " + std::to_string(OutVideoMode) + " state " + std::to_string(state) + ":";
            for (const std::uint8_t frmt : {VIDOUT_1280x720p60, VIDOUT_1024x768p60, VIDOUT_640x480p60}) {
                stOutVideoInfo.frmt = frmt;
                for (const unsigned old : {0x00U, 0xFFU, 0x05U, 0x08U, 0xD2U}) {
                    Hdmi1(0x4A) = static_cast<std::uint8_t>(old);
                    Quietly(ConfigTXVideoMode);
                    log += ' ' + std::to_string(Hdmi1(0x4A));
                }
            }
            log += '\n';
        }
    }
    OutputState = OUTPUT_DVI;
    for (const std::uint8_t mode : {MUX656_8, SEP422_10, YUV444_8}) {
        OutVideoMode = mode;
        Hdmi1(0x4A) = 0;
        Hdmi1(0x48) = 0xFF;
        Log("DVI, mode " + std::to_string(mode), ConfigTXVideoMode);
    }
    log += "colorimetry for DVI of each source format:";
    for (SrcVideoFrmt = 0; SrcVideoFrmt < 12; ++SrcVideoFrmt) {
        Quietly(ConfigTXVideoMode);
        log += ' ' + std::to_string(Hdmi1(0x48));
    }
    ExpectGolden("tx-input-stage.txt", log + "\n");
}

} // namespace
