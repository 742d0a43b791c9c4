// The timer service and the output state machine. The timer service counts passes of the control loop:
// - Eight passes make a tick.
// - Four ticks, phases 1 to 4, make a round. Phase 1 polls the sink. Phase 3 counts the round.
// - 31 rounds make a period. The time-out and the audio check run once in a period.

#include "hdmitx/hdmitx.h"

#include "edid/edid.h"

#include <cstdio>

std::uint8_t OutputState = OUTPUT_NO_SINK;
std::uint8_t OldOutputState = OUTPUT_NO_SINK;

namespace {

// Page 0
constexpr std::uint8_t kSinkStatus = 0x09;
constexpr std::uint8_t kHotPlug = 0x02, kReceiverSense = 0x04; // in kSinkStatus

constexpr std::uint8_t kPassesPerTick = 8;
constexpr std::uint8_t kTicksPerPeriod = 31;
constexpr std::uint8_t kConfirmations = 3;
constexpr std::uint8_t kPeriodsToParse = 2;

constexpr std::uint8_t kChooseDvi = 5; // for AssignOutputState, where every value except EDID_OUTMODE_HDMI means DVI

std::uint8_t ConfirmCount = 0; // polls in a row that saw hot plug while OutputState was OUTPUT_NO_SINK
std::uint8_t TimeOut = 0;      // periods left until OUTPUT_CHECK_EDID becomes OUTPUT_DVI
std::uint8_t auxTime = 0;      // passes since the last tick
std::uint8_t TimerSrvF = 0;    // 1: a tick waits to be handled
std::uint8_t _8msCounter = 0;  // phase of the tick, 1 to 4
std::uint8_t msCounter = 0;    // rounds counted in this period, 0 to 30

void TimeService_8ms() {
    if (TimerSrvF == 0 && ++auxTime == kPassesPerTick) {
        auxTime = 0;
        ++_8msCounter;
        TimerSrvF = 1;
    }
}

bool OneSecondTime() {
    if (++msCounter == kTicksPerPeriod) {
        msCounter = 0;
        return true;
    }
    return false;
}

void TimeOutHandler() {
    if (OutputState == OUTPUT_CHECK_EDID) {
        OutputState = OUTPUT_DVI;
    }
}

// ---- Phase 1: polling, printing, EDID ----

void ReplaceOutputState(std::uint8_t from, std::uint8_t to) {
    if (OutputState == from) {
        OutputState = to;
    }
}

void OutputProcessing() {
    const std::uint8_t sink = HDTX_RegRead(HDTX_SLV0, kSinkStatus);
    if ((sink & kHotPlug) == 0) {
        OutputState = OUTPUT_NO_SINK;
        HDMITXTMDSPowerDown(1);
        ConfirmCount = 0;
        return;
    }
    if (OutputState == OUTPUT_NO_SINK) {
        if (ConfirmCount == kConfirmations) {
            OutputState = OUTPUT_CHECK_EDID;
            TimeOut = kPeriodsToParse;
        } else {
            ++ConfirmCount;
        }
    }
    if ((sink & kReceiverSense) != 0) {
        ReplaceOutputState(OUTPUT_HDMI_NO_POWER, OUTPUT_HDMI);
        ReplaceOutputState(OUTPUT_DVI_NO_POWER, OUTPUT_DVI);
        HDMITXTMDSPowerDown(0);
    } else {
        ReplaceOutputState(OUTPUT_HDMI, OUTPUT_HDMI_NO_POWER);
        ReplaceOutputState(OUTPUT_DVI, OUTPUT_DVI_NO_POWER);
    }
}

const char* StateText(std::uint8_t state) {
    switch (state) {
    case OUTPUT_CHECK_EDID:
        return " chk EDID\n";
    case OUTPUT_HDMI:
        return " HDMI Out\n";
    case OUTPUT_DVI:
        return " DVI Out\n";
    case OUTPUT_HDMI_NO_POWER:
        return " HDMI Out, RX has no power\n";
    case OUTPUT_DVI_NO_POWER:
        return " DVI Out, RX has no power\n";
    default:
        return "";
    }
}

void printOutputStatus() {
    if (OutputState == OUTPUT_NO_SINK) {
        std::fputs(" \n\rHDMI Tx : Cbl unplug\n", stderr);
    } else {
        std::fputs(" \n\rHDMI Tx : Cbl In,", stderr);
        std::fputs(StateText(OutputState), stderr);
    }
}

void RS232printOutputStatus() {
    if (OldOutputState != OutputState) {
        OldOutputState = OutputState;
        printOutputStatus();
    }
}

void AssignOutputState(std::uint8_t mode) {
    const bool hdmi = mode == EDID_OUTMODE_HDMI;
    if ((HDTX_RegRead(HDTX_SLV0, kSinkStatus) & kReceiverSense) == 0) {
        OutputState = hdmi ? OUTPUT_HDMI_NO_POWER : OUTPUT_DVI_NO_POWER;
        return;
    }
    if (hdmi) {
        OutputState = OUTPUT_HDMI;
        RequireConfigInfoFrame = 1;
        SendAVIInfoFrame();
        SendAUDInfoFrame();
        EnableInfoFrame(INFOFRAME_AVI);
        EnableInfoFrame(INFOFRAME_AUDIO);
    } else {
        OutputState = OUTPUT_DVI;
    }
    HDMITXTMDSPowerDown(0);
}

void GiveUpSink() {
    OutputState = OUTPUT_NO_SINK;
    HDMITXTMDSPowerDown(1);
}

// The EDID is read twice. If the DDC channel changes a byte without an error, the CRCs of the two reads differ.
void EDIDProcessing() {
    EDIDParseResult result{};
    if (ParseEDID(&result) != 0) {
        GiveUpSink();
        return;
    }
    const std::uint16_t firstCrc = result.CRC16;
    if (ParseEDID(&result) != 0) {
        return; // the state stays OUTPUT_CHECK_EDID: the next poll tries again, until the time-out
    }
    if (result.CRC16 != firstCrc) {
        std::fputs(" \n\rCRC16 error, try again!\n", stderr);
        GiveUpSink();
        return;
    }
    if (result.ErrCode == 0) {
        AssignOutputState(result.OutMode);
    } else if (result.ErrCode >= EDID_ERR_HEADER) {
        std::fprintf(stderr, " \n\rEDID Error %02i ", int{result.ErrCode});
        AssignOutputState(kChooseDvi);
    }
}

void CheckSink() {
    OutputProcessing();
    RS232printOutputStatus();
    if (OutputState == OUTPUT_CHECK_EDID) {
        if (IsNeedToForceInDVIMode() != 0) {
            OutputState = OUTPUT_DVI;
        } else {
            std::fputs(" \n\rHDMITX : EDIDProcessing()\n", stderr);
            EDIDProcessing();
        }
    }
}

// ---- Phase 3: time-out and audio ----

void AudioOnTimer() {
    if (IsSPDIFSelected() == 0) {
        return;
    }
    std::fputs(" \n\rHDMITX : IsSPDIFSelected", stderr);
    if (IsAudioDisabled() != 0) {
        SetN();
    }
}

void CountPeriod() {
    if (!OneSecondTime()) {
        return;
    }
    if (TimeOut != 0 && --TimeOut == 0) {
        TimeOutHandler();
    }
    if (IsTXInHDMIMode() != 0) {
        AudioOnTimer();
    }
}

} // namespace

void HDMITxTimerHandler() {
    TimeService_8ms();
    if (TimerSrvF == 0) {
        return;
    }
    switch (_8msCounter & 7) {
    case 1:
        CheckSink();
        break;
    case 3:
        CountPeriod();
        break;
    case 4:
        _8msCounter = 0;
        break;
    default:
        break;
    }
    TimerSrvF = 0;
}
