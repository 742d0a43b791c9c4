#pragma once
// Fixed register lists of the transmitter.

#include "hdmitx/hdmitx_i2c.h"

#include <array>
#include <span>

namespace hdmitx {

/// One register of a list and its value.
struct TxSetting {
    std::uint8_t page, reg, value;
};

/// The normal set-up: separate syncs, HDMI mode, I2S audio of 48 kHz on the first input.
inline constexpr std::array<TxSetting, 16> kTxNormalSetup{{
    {HDTX_SLV0, 0x05, 0x00}, // software reset released
    {HDTX_SLV0, 0x08, 0x37}, // output power on, input clock edge
    {HDTX_SLV0, 0x0C, 0x88},
    {HDTX_SLV0, 0x33, 0x00}, // DE generator off
    {HDTX_SLV0, 0x48, 0x00}, // input clock setting and HD colour conversion cleared
    {HDTX_SLV0, 0x4A, 0x00}, // video input: every switch cleared
    {HDTX_SLV0, 0x82, 0x20},
    {HDTX_SLV1, 0x2F, 0x01}, // HDMI mode
    {HDTX_SLV1, 0x14, 0x11}, // audio on, first I2S input
    {HDTX_SLV1, 0x03, 0x00}, // audio N = 6144, low byte
    {HDTX_SLV1, 0x04, 0x18}, // middle byte
    {HDTX_SLV1, 0x05, 0x00}, // high byte
    {HDTX_SLV1, 0x21, 0x02}, // channel status: 48 kHz (IEC 60958-3)
    {HDTX_SLV1, 0x22, 0x02}, // audio configuration
    {HDTX_SLV1, 0x24, 0x02}, // audio configuration
    {HDTX_SLV1, 0x1D, 0x48}, // audio configuration
}};

/// Writes every register of a list, in the list's order.
inline void WriteTxSettings(std::span<const TxSetting> settings) {
    for (const TxSetting& setting : settings) {
        HDTX_RegWrite(setting.page, setting.reg, setting.value);
    }
}

} // namespace hdmitx
