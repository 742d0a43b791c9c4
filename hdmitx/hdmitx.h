#pragma once
// The HDMI transmitter driver: everything a caller may use, grouped by topic.

#include "hdmitx/hdmitx_i2c.h"

#include <cstdint>

// ---- Configuration ----
// Zero at program start.

extern std::uint8_t DefaultDVImode;   ///< non-zero forces DVI output
extern std::uint8_t DefaultICLKEDGE;  ///< input clock edge, see SetInputClockEdge
extern std::uint8_t DefaultICLKValue; ///< input clock setting of the start-up, see SetIClk
extern std::uint8_t DefaultMCLKIndex; ///< audio master clock setting of the start-up, see SetMCLK

// ---- Power, reset and mode ----
// A flag argument is set when it is non-zero. Read-modify-writes keep every bit that they do not name.

/// Switches the TMDS output off (down non-zero) or on: 0x72:0x08 bit 0.
void HDMITXTMDSPowerDown(std::uint8_t down);

/// @return 1 in HDMI mode, 0 in DVI mode: 0x7A:0x2F bit 0.
std::uint8_t IsTXInHDMIMode();

/// Chooses HDMI (on non-zero) or DVI signalling: 0x7A:0x2F bit 0.
void TX_HDMIMode(std::uint8_t on);

/// @return DefaultDVImode: non-zero when the output is to be DVI whatever the sink is. No register access.
std::uint8_t IsNeedToForceInDVIMode();

/// Holds the given software resets: the whole of 0x72:0x05, bits 1 and 0.
void AssertHDMITX_SWReset(std::uint8_t bits);

/// Releases all software resets, whatever bits is: 0x72:0x05 = 0x00.
void ReleaseHDMITX_SWReset(std::uint8_t bits);

/// Asserts and releases both software resets: 0x72:0x05 = 0x03, then 0x00, without a delay.
void SW_ResetHDMITX();

/// Powers the output, then wakes the rest of the core: 0x72:0x08 bit 0, 0x7A:0x3D bit 0.
void WakeUpHDMITX();

/// Powers everything down for enable exactly 1, up for any other value: 0x72:0x08 bit 0, then 0x7A:0x3D bits 2..0.
void HDMITXTotalPowerDownEnable(std::uint8_t enable);

/// Sets the input clock: 0x72:0x48 bits 7..2 replaced by value, whose bits 1..0 are ORed into the kept bits 1..0.
void SetIClk(std::uint8_t value);

/// Sets the input clock edge from DefaultICLKEDGE: 0x72:0x08 bit 1.
void SetInputClockEdge();

/// Sets the audio master clock: 0x7A:0x02 = index.
void SetMCLK(std::uint8_t index);
