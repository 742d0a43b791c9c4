#pragma once
// What brings the transmitter up behind the video processor's outputs: 48 kHz audio, HDMI, no conversion of the video.

#include "hdmitx/hdmitx_i2c.h"

#include <array>
#include <cstdint>

/// A register of the transmitter and what to write to it.
struct TxRegisterValue {
    std::uint8_t page, reg, value;
};

// clang-format off

/// Written in this order.
inline constexpr std::array<TxRegisterValue, 16> kTxStartUp{{
    {HDTX_SLV0, 0x05, 0x00}, // software reset released
    {HDTX_SLV0, 0x08, 0x37}, // output power on, input clock edge
    {HDTX_SLV0, 0x0C, 0x88},
    {HDTX_SLV0, 0x33, 0x00},
    {HDTX_SLV0, 0x48, 0x00}, // input clock and colour conversion
    {HDTX_SLV0, 0x4A, 0x00}, // video input mode: every conversion off
    {HDTX_SLV0, 0x82, 0x20},
    {HDTX_SLV1, 0x2F, 0x01}, // HDMI mode
    {HDTX_SLV1, 0x14, 0x11}, // audio input selection, audio on
    {HDTX_SLV1, 0x03, 0x00}, // audio N = 6144, low byte first
    {HDTX_SLV1, 0x04, 0x18},
    {HDTX_SLV1, 0x05, 0x00},
    {HDTX_SLV1, 0x21, 0x02}, // channel status: 48 kHz (IEC 60958-3)
    {HDTX_SLV1, 0x22, 0x02}, // audio configuration
    {HDTX_SLV1, 0x24, 0x02},
    {HDTX_SLV1, 0x1D, 0x48},
}};

// clang-format on
