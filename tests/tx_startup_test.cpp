#include "tests/board.h"

namespace {

std::uint8_t& Hdmi1(std::uint8_t reg) { return sim::TxRegister(sim::Page::Hdmi1, reg); }

using TxStartUp = Board;

// Logs every transfer and every report of the start-up sequences, of the presets and of their parts.
TEST_F(TxStartUp, EverySequenceIsAsRecorded) {
    for (OutVideoFrmt = 0; OutVideoFrmt <= VIDOUT_COUNT; ++OutVideoFrmt) {
        InitHDMITXVariable();
        EXPECT_EQ(DefaultActiveAspect, OutVideoFrmt >= 4 && OutVideoFrmt <= 9 ? 2 : 0);
    }
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
    for (const std::uint8_t down : std::initializer_list<std::uint8_t>{2, 1}) {
        Log("total power down " + std::to_string(down), [&] { HDMITXTotalPowerDownEnable(down); });
    }
    Log("S/PDIF, audio off", [] {
        TXSPDIFSelect(2);
        TXAudio(0);
        EXPECT_EQ(IsSPDIFSelected() + 2 * IsAudioDisabled(), 3);
    });
    Log("normal preset", HDMITX_OutVideoNormal);
    Log("BT.656 preset", HDMITX_OutVideoBT656);
}

// Logs the new value of the mode register for each old value, then the report of three port modes.
TEST_F(TxStartUp, InputStageFollowsModeStateAndTiming) {
    for (OutVideoMode = 0; OutVideoMode <= 9; ++OutVideoMode) {
        for (const std::uint8_t state : {OUTPUT_NO_SINK, OUTPUT_HDMI, OUTPUT_DVI, OUTPUT_DVI_NO_POWER}) {
            OutputState = state;
            log << "mode " << int{OutVideoMode} << " state " << int{state} << ':';
            for (const std::uint8_t frmt : {VIDOUT_1280x720p60, VIDOUT_1024x768p60, VIDOUT_640x480p60}) {
                stOutVideoInfo.frmt = frmt;
                for (const unsigned old : {0x00U, 0xFFU, 0x05U, 0x08U, 0xD2U}) {
                    Hdmi1(0x4A) = static_cast<std::uint8_t>(old);
                    Quietly(ConfigTXVideoMode);
                    log << ' ' << int{Hdmi1(0x4A)};
                }
            }
            log << '\n';
        }
    }
    OutputState = OUTPUT_DVI;
    for (const std::uint8_t mode : {MUX656_8, SEP422_10, YUV444_8}) {
        OutVideoMode = mode;
        Hdmi1(0x4A) = 0;
        Hdmi1(0x48) = 0xFF;
        Log("DVI, mode " + std::to_string(mode), ConfigTXVideoMode);
    }
    log << "colorimetry for DVI of each source format:";
    for (SrcVideoFrmt = 0; SrcVideoFrmt < 12; ++SrcVideoFrmt) {
        Quietly(ConfigTXVideoMode);
        log << ' ' << int{Hdmi1(0x48)};
    }
    log << '\n';
}

} // namespace
