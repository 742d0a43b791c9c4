// The transmitter's interrupts. All of them arrive as interrupt 7 of the video processor, and this file polls it.

#include "hdmitx/hdmitx.h"

#include "hdmitx/registers.h"
#include "kova/api.h"

#include <cstdio>

using namespace hdmitx;

namespace {

// Page 0
constexpr std::uint8_t kInterruptPending = 0x70; // bit 0
constexpr std::uint8_t kInterruptEnable = 0x75;

// Bits of kInterruptStatus and kInterruptEnable
constexpr std::uint8_t kHotPlugChange = 0x40;
constexpr std::uint8_t kAcknowledgedOnly = 0x20;
constexpr std::uint8_t kHdmiInterrupts = kHotPlugChange | kAcknowledgedOnly | kAudioInputEvents;
constexpr std::uint8_t kDviInterrupts = kHotPlugChange | kAcknowledgedOnly;

// Interrupts that are already pending must not be reported, so they are acknowledged first.
void SetInterruptMasks(std::uint8_t interrupts) {
    HDTX_RegWrite(HDTX_SLV0, kInterruptStatus, interrupts);
    HDTX_RegWrite(HDTX_SLV0, kInterruptEnable, interrupts);
}

} // namespace

void HDMITxInterruptHandler() {
    std::uint8_t pending = 0;
    KOVAAPI_GetIRQStatus(KOVA_IRQ_HDMITX, &pending);
    if (pending == 0) {
        return;
    }
    KOVAAPI_EnableIRQ(KOVA_IRQ_HDMITX, 0, 0, 0);
    std::fputs(" \n\rHDMI TX : IRQ Asserted", stderr);
    const unsigned asserted = HDTX_RegRead(HDTX_SLV0, kInterruptPending) & 1U;
    std::fprintf(stderr, " (HDMI IRQ Reg. =%u)", asserted);
    if (asserted != 0) {
        const std::uint8_t status = HDTX_RegRead(HDTX_SLV0, kInterruptStatus);
        std::fprintf(stderr, " , HDMI INT STAT=0x%02X", unsigned{status});
        if ((status & kHotPlugChange) != 0) {
            HotPlugInOrOut();
        }
        if ((status & kAudioInputEvents) != 0) {
            ChangeFsHandler();
        }
        HDTX_RegWrite(HDTX_SLV0, kInterruptStatus, 0xFF);
    }
    KOVAAPI_EnableIRQ(KOVA_IRQ_HDMITX, 0, 0, 1);
}

void HotPlugInOrOut() {
    OutputState = OUTPUT_NO_SINK;
    HDMITXTMDSPowerDown(1);
}

void ChangeFsHandler() { SetN(); }

void InitInterruptMasks() { SetInterruptMasks(kHdmiInterrupts); }

void InitDVIInterruptMasks() { SetInterruptMasks(kDviInterrupts); }
