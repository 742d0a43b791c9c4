#pragma once
// Status of the chip and of the incoming signal, measurements, test patterns, and control of the display.
//
// Every function but KOVAAPI_SetInputPattern always returns KOVA_NO_ERROR, also when a transfer fails (see regs.h).
// When the read of a result fails, a sync status is 3, a pattern number is 7, and a device ID or a measurement is
// 0xFFFF. A failed read of the ready flag in 0x4D0 counts as ready, so a measurement can then return an old valid
// result. A failed write of the status select register 0x4C6 can have the same effect.
//
// A parameter "on" means on for any non-zero value, except in KOVAAPI_PowerSaveEnable.

#include "formats.h"

#include <cstdint>

/// Device ID of this chip.
inline constexpr std::uint16_t KOVA_DEVICE_ID = 0x83;

/// Result of a measurement that could not be made.
inline constexpr std::uint16_t KOVA_NO_MEASUREMENT = 0xFFFF;

// ---- Status ----

/// Reads the device ID from register 0x004.
std::uint8_t KOVAAPI_GetDeviceID(std::uint16_t* id);

/// Reads the input sync status from 0x4E0 bits 1..0. 0 means that sync is present. Writes 9 to 0x4C6 first.
std::uint8_t KOVAAPI_GetSyncStatus(std::uint8_t* status);

/// Reads the number of the active input test pattern from 0x4C0 bits 4..2. 0 means that no pattern is active.
std::uint8_t KOVAAPI_GetInputPattern(std::uint8_t* pattern);

// ---- Measurement ----
// The chip measures on request: 1 is written to 0x4D0, then 0x4D0 is polled until its bit 15 is set, and 0 is written
// to 0x4D0 at the end. Each write of 0x4D0 is followed by a local register update. Before each read of a status
// register, 9 is written to 0x4C6. The result is KOVA_NO_MEASUREMENT when the chip does not finish within 5000 polls,
// and when it marks its result as invalid.

/// Measures the line frequency of the input: the count in 0x4E2 bits 14..0. The unit of the count is not known. No
/// measurement is started when there is no input sync or when an input test pattern is active. The result is then
/// KOVA_NO_MEASUREMENT.
std::uint8_t KOVAAPI_GetSyncHfreq(std::uint16_t* value);

/// Measures the lines per frame of the input: the sum of the line counts of both fields, 0x4E8 and 0x4E9 bits 11..0.
std::uint8_t KOVAAPI_GetSyncVline(std::uint16_t* value);

// ---- Test patterns ----

/// Shows an input test pattern, or the input again. Writes 0x4C0. Then calls KOVAAPI_SetSrcPtrnMode for a pattern, or
/// KOVAAPI_SetSrcPortMode for the input.
/// @param pattern  1 to 7; 0 shows the input. A larger number also changes other bits of 0x4C0.
/// @return KOVA_NO_ERROR. KOVA_INVALID_FORMAT when the pattern is 0 and the format or the mode in the record is out of
///         range; 0x4C0 is written then, but the input port is not set up again.
std::uint8_t KOVAAPI_SetInputPattern(SrcVideoInfo* src, std::uint16_t pattern);

/// Sets up the port of the source for the test pattern generator: 0x401 and 0x404 (port A) or 0x405 (port B), and for a
/// multiplexed source also 0x402. Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcPtrnMode(const SrcVideoInfo* src);

/// Shows an output test pattern: 0x4C2 bits 5..2. Ends with a local register update.
/// @param pattern  0 to 15; 0 shows no pattern. Higher bits are dropped.
std::uint8_t KOVAAPI_SetOutputPattern(std::uint8_t pattern);

// ---- Display ----

/// Shows or hides the output window: 0x4B0 bit 5. Ends with a local register update.
std::uint8_t KOVAAPI_DisplayOutWindow(std::uint8_t on);

/// Makes the screen dark, or shows the picture again: 0x4C2 bit 1. Ends with a local register update.
std::uint8_t KOVAAPI_EnableDarkScreen(std::uint8_t on);

/// Should freeze the main picture. The register field for the freeze is not known. The function writes the field of the
/// dark screen instead: 0x4C2 bit 1. Ends with a local register update.
std::uint8_t KOVAAPI_EnableMainFreeze(std::uint8_t on);

/// Switches power save on or off: 0x03C, 0x01E, 0x020.
/// @param on  1 stops the clock outputs, the analog output, the digital outputs, the video PLL and the memory PLL, in
///         this order. Any other value starts them in the same order.
std::uint8_t KOVAAPI_PowerSaveEnable(std::uint8_t on);
