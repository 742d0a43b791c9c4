#include "hdmitx/hdmitx.h"

#include "hdmitx/bits.h"
#include "hdmitx/registers.h"

using namespace hdmitx;

namespace {

// Page 0
constexpr std::uint8_t kSoftwareReset = 0x05;
constexpr std::uint8_t kSystemControl = 0x08;
// Page 1
constexpr std::uint8_t kMasterClock = 0x02;
constexpr std::uint8_t kHdmiControl = 0x2F;
constexpr std::uint8_t kPowerControl = 0x3D;

// Bits
constexpr std::uint8_t kOutputPower = 0x01;    // in kSystemControl
constexpr std::uint8_t kInputClockEdge = 0x02; // in kSystemControl
constexpr std::uint8_t kHdmiMode = 0x01;       // in kHdmiControl
constexpr std::uint8_t kCorePower = 0x07;      // in kPowerControl: all three power bits
constexpr std::uint8_t kCoreWakeUp = 0x01;     // in kPowerControl
constexpr std::uint8_t kInputClockKept = 0x03; // in kInputClock: bits that stay
constexpr std::uint8_t kAllResets = 0x03;      // in kSoftwareReset

} // namespace

void HDMITXTMDSPowerDown(std::uint8_t down) { WriteBits(HDTX_SLV0, kSystemControl, kOutputPower, down == 0); }

std::uint8_t IsTXInHDMIMode() { return HDTX_RegRead(HDTX_SLV1, kHdmiControl) & kHdmiMode; }

void TX_HDMIMode(std::uint8_t on) { WriteBits(HDTX_SLV1, kHdmiControl, kHdmiMode, on != 0); }

std::uint8_t IsNeedToForceInDVIMode() { return DefaultDVImode; }

void AssertHDMITX_SWReset(std::uint8_t bits) { HDTX_RegWrite(HDTX_SLV0, kSoftwareReset, bits); }

void ReleaseHDMITX_SWReset(std::uint8_t /*bits*/) { HDTX_RegWrite(HDTX_SLV0, kSoftwareReset, 0x00); }

void SW_ResetHDMITX() {
    AssertHDMITX_SWReset(kAllResets);
    ReleaseHDMITX_SWReset(kAllResets);
}

void WakeUpHDMITX() {
    WriteBits(HDTX_SLV0, kSystemControl, kOutputPower, true);
    WriteBits(HDTX_SLV1, kPowerControl, kCoreWakeUp, true);
}

void HDMITXTotalPowerDownEnable(std::uint8_t enable) {
    WriteBits(HDTX_SLV0, kSystemControl, kOutputPower, enable != 1);
    WriteBits(HDTX_SLV1, kPowerControl, kCorePower, enable != 1);
}

void SetIClk(std::uint8_t value) {
    HDTX_RegWrite(HDTX_SLV0, kInputClock,
                  static_cast<std::uint8_t>((HDTX_RegRead(HDTX_SLV0, kInputClock) & kInputClockKept) | value));
}

void SetInputClockEdge() { WriteBits(HDTX_SLV0, kSystemControl, kInputClockEdge, DefaultICLKEDGE != 0); }

void SetMCLK(std::uint8_t index) { HDTX_RegWrite(HDTX_SLV1, kMasterClock, index); }
