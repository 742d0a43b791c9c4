#pragma once
// The output: digital bus, sync timing, DAC, PLLs, polarities, clock delays and sources, pins and clock drivers.
//
// Every function returns KOVA_NO_ERROR, also where a transfer failed: see regs.h. A switch is on for any non-zero
// value.

#include "formats.h"

#include <cstdint>

// ---- The whole output ----

/// Completes the record from its format and mode and programs the output: bus format, DAC data, sync timing, PLLs, TMDS
/// drive, scan and polarities, then KOVAAPI_SetOutVideoAUX. A multiplexed output of a format narrower than 1024 pixels
/// runs at twice the pixel clock, with the record's horizontal timing doubled.
/// @return also KOVA_INVALID_FORMAT for a format or mode out of range: the record is as it was, nothing is written.
std::uint8_t KOVAAPI_SetOutPortMode(OutVideoInfo* out);

/// Writes the record's options: auxFlags (0x4A2, 0x4A3, 0x4B4), local register update, then the clock delays that there
/// are (0x024, 0x018, 0x026, 0x028).
std::uint8_t KOVAAPI_SetOutVideoAUX(const OutVideoInfo* out);

// ---- Sync, DAC and clocks ----

/// Loads the DAC's sync data memory, word by word: 0x588, 0x589.
/// @param data  null: all zero
std::uint8_t KOVAAPI_SetDACSyncData(const DacData* data);

/// Sets the video PLL while it is held: 0x02C, 0x02E, 0x030. Pixel clock = 27 MHz * m / (p * 2^s).
std::uint8_t KOVAAPI_SetPLLVideoClock(std::uint16_t p, std::uint16_t m, std::uint16_t s);

/// Sets the memory PLL while it is held: 0x032, 0x034.
std::uint8_t KOVAAPI_SetPLLMemoryClock(std::uint16_t a, std::uint16_t b);

/// Restarts the output sync generator: 0x499, first 0, then value with bit 12 set. Ends with a local register update.
std::uint8_t KOVAAPI_ResetOutSync(std::uint16_t value);

/// Chooses the source of the video clock, 0 to 3, and resets softly: 0x03A, 0x02A, 0x018 bit 2.
std::uint8_t KOVAAPI_SetVCLKPLLSource(std::uint16_t source);

/// Pulses the soft reset: 0 and then 1 to 0x070.
std::uint8_t KOVAAPI_SoftReset();

/// Pulses the hard reset: 0 and then 1 to 0x072.
std::uint8_t KOVAAPI_HardReset();

// ---- Drivers and pins ----

inline constexpr std::uint8_t kAllClocks = 15;
inline constexpr std::uint8_t kAllOutPins = 5;

/// Drives a clock output or all of them: 0x03C.
/// @param clock  bit number, or kAllClocks; 16 and above: KOVA_I2C_ERROR without a transfer
std::uint8_t KOVAAPI_EnableClockDrive(std::uint8_t clock, std::uint8_t on);

/// Switches a group of digital output pins or all of them: 0x01E bits 4..1.
/// @param pin  bit number, or kAllOutPins; 16 and above: KOVA_I2C_ERROR without a transfer
std::uint8_t KOVAAPI_EnableOutPortPin(std::uint8_t pin, std::uint8_t on);

/// Switches the analog output: 0x01E bit 0.
std::uint8_t KOVAAPI_EnableDACPortOut(std::uint8_t on);

// ---- Options ----
// Each is kept in the record's auxFlags, written and followed by a local register update.

std::uint8_t KOVAAPI_SetDIGCbCrSwap(OutVideoInfo* out, std::uint8_t on);   ///< swaps Cb and Cr: 0x4A2 bit 4
std::uint8_t KOVAAPI_SetDACPbPrSwap(OutVideoInfo* out, std::uint8_t on);   ///< swaps Pb and Pr: 0x4A3 bit 4
std::uint8_t KOVAAPI_SetOutHActInvert(OutVideoInfo* out, std::uint8_t on); ///< inverts H active: 0x4B4 bit 7
std::uint8_t KOVAAPI_SetOutVActInvert(OutVideoInfo* out, std::uint8_t on); ///< inverts V active: 0x4B4 bit 6
std::uint8_t KOVAAPI_SetOutHSyncHAct(OutVideoInfo* out, std::uint8_t on);  ///< H sync used as H active: 0x4B4 bit 3
std::uint8_t KOVAAPI_SetOutVSyncVAct(OutVideoInfo* out, std::uint8_t on);  ///< V sync used as V active: 0x4B4 bit 2

/// Data enable output mode, 0 to 2: 0x4B4 bits 9..8.
std::uint8_t KOVAAPI_SetDEOutMode(OutVideoInfo* out, std::uint8_t demode);

// ---- Clock delays ----
// Each is borrowed by the record and written at once, without a local register update. Null is kept and nothing
// written.

std::uint8_t KOVAAPI_SetOutVCLKDelay(OutVideoInfo* out, const ClockDelay* delay);   ///< output clock: 0x024 bits 2..0
std::uint8_t KOVAAPI_SetOutVCLKBDelay(OutVideoInfo* out, const ClockDelay* delay);  ///< second one: 0x024 bits 6..4
std::uint8_t KOVAAPI_SetIntVCLKDelay(OutVideoInfo* out, const ClockDelay* delay);   ///< internal clock: 0x018
std::uint8_t KOVAAPI_SetIntVCLK2xDelay(OutVideoInfo* out, const ClockDelay* delay); ///< its double rate: 0x026
std::uint8_t KOVAAPI_SetIntDACCLKDelay(OutVideoInfo* out, const ClockDelay* delay); ///< DAC clock: 0x028
