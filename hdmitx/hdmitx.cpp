// The transmitter's own start-up. The console does not use it, since init writes a fixed register list instead. It is
// for an application that starts the transmitter itself.

#include "hdmitx/hdmitx.h"

#include "hdmitx/registers.h"
#include "kova/api.h"

#include <cstdio>

using namespace hdmitx;

std::uint8_t Default656OutEn = 0;
std::uint8_t DefaultDataEnable = 0;
std::uint8_t DefaultICLKValue = 0;
std::uint8_t DefaultDVImode = 0;
std::uint8_t DefaultICLKEDGE = 0;
std::uint8_t DefaultActiveAspect = 0;
std::uint8_t DefaultMCLKIndex = 0;
std::array<std::uint8_t, 5> DefaultAudioConfig{};

namespace {

// Page 0
constexpr std::uint8_t kIdentification = 0x03;
constexpr std::uint8_t kSupportedCore = 0x91; // in kIdentification
constexpr std::uint8_t kStartUpControl = 0x0C;
// Page 1
constexpr std::uint8_t kAudioControl = 0x01;
constexpr std::uint8_t kI2sInputMap = 0x1C;
constexpr std::uint8_t kAudioConfiguration22 = 0x22;
constexpr std::uint8_t kAudioConfiguration24 = 0x24;
constexpr std::uint8_t kAudioConfiguration1D = 0x1D;

// Indexes into DefaultAudioConfig
constexpr std::size_t kI2sInput = 0, kFsCode = 2, kRegisters22And24 = 3, kRegister1D = 4;

// The sample rates whose N is written at start-up, before the rate is measured.
struct FirstRate {
    std::uint8_t code; // IEC 60958-3 channel status
    std::uint8_t rate; // kHz
};

constexpr std::array<FirstRate, 3> kFirstRates{{{0x03, 32}, {0x00, 44}, {0x02, 48}}};

struct I2sInput {
    std::uint8_t select, map; // bit of kAudioInput; value of kI2sInputMap
};

constexpr std::array<I2sInput, 4> kI2sInputs{{{0x10, 0xE4}, {0x20, 0xE5}, {0x40, 0xE6}, {0x80, 0xE7}}};

} // namespace

std::uint8_t InitializeHDMITX() {
    if (HDTX_RegRead(HDTX_SLV0, kIdentification) != kSupportedCore) {
        std::fputs(" \n\rNo responce from TX' module... ", stderr);
        return 0;
    }
    InitHDMITXVariable();
    InitHDMITX();
    InitInterruptMasks();
    return 1;
}

void InitHDMITXVariable() {
    OutputState = OUTPUT_NO_SINK;
    OldOutputState = 255; // no valid state, so that the next poll reports the state
    RequireConfigInfoFrame = 1;
    Default656OutEn = 0;
    DefaultDataEnable = 0;
    DefaultICLKValue = 0;
    DefaultDVImode = 0;
    DefaultICLKEDGE = 1;
    DefaultActiveAspect = kova::IsHdOutFormat(OutVideoFrmt) ? 2 : 0;
    DefaultMCLKIndex = 1;
    DefaultAudioConfig = {0x10, 2, 2, 0x0B, 8};
}

void InitHDMITX() {
    if (DefaultDVImode != 0) {
        InitDVITX();
        return;
    }
    SW_ResetHDMITX();
    InitAudioPart();
    HDMITX_SetDE(Default656OutEn);
    ConfigTXVideoMode();
    SetInputClockEdge();
    SetIClk(DefaultICLKValue);
    WakeUpHDMITX();
    SetN();
    InitInterruptMasks();
    RequireConfigInfoFrame = 1;
    HDMITXTMDSPowerDown(0);
}

void InitDVITX() {
    WakeUpHDMITX();
    SW_ResetHDMITX();
    HDMITX_SetDE(Default656OutEn);
    TX_HDMIMode(0);
    ConfigTXVideoMode();
    HDTX_RegWrite(HDTX_SLV0, kStartUpControl, 0x88);
    SetIClk(DefaultICLKValue);
    SetInputClockEdge();
    InitDVIInterruptMasks();
    RequireConfigInfoFrame = 1;
    HDMITXTMDSPowerDown(0);
}

void InitAudioPart() {
    TX_HDMIMode(1);
    for (const FirstRate& first : kFirstRates) {
        if (first.code == DefaultAudioConfig[kFsCode]) {
            constexpr std::uint16_t kAnyClock = 0;
            WriteNValue(SearchOptimumNValue(kAnyClock, first.rate));
        }
    }
    HDTX_RegWrite(HDTX_SLV1, kAudioControl, 0x02);
    SetMCLK(DefaultMCLKIndex);
    InitDVDAudio();
}

void InitDVDAudio() {
    HDTX_RegWrite(HDTX_SLV1, kChannelStatusFs, DefaultAudioConfig[kFsCode]);
    HDTX_RegWrite(HDTX_SLV1, kAudioConfiguration22, DefaultAudioConfig[kRegisters22And24]);
    HDTX_RegWrite(HDTX_SLV1, kAudioConfiguration24, DefaultAudioConfig[kRegisters22And24]);
    HDTX_RegWrite(HDTX_SLV1, kAudioConfiguration1D, DefaultAudioConfig[kRegister1D]);
    SetI2SDataSelection(DefaultAudioConfig[kI2sInput]);
}

void SetI2SDataSelection(std::uint8_t sel) {
    HDTX_RegField(HDTX_SLV1, kAudioInput, 0, 1, 0);
    for (const I2sInput& input : kI2sInputs) {
        if (input.select == sel) {
            HDTX_RegWrite(HDTX_SLV1, kI2sInputMap, input.map);
        }
    }
    HDTX_RegWrite(HDTX_SLV1, kAudioInput, sel | 0x01);
}
