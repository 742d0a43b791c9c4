#pragma once
// A look at the chip and the incoming signal, test patterns, and what is shown.
//
// Every function returns KOVA_NO_ERROR, also where a transfer failed: see regs.h. A sync status is then 3, a pattern
// 7, a device ID or a measurement 0xFFFF. A switch is on for any non-zero value.

#include "formats.h"

#include <cstdint>

/// Device ID of this chip.
inline constexpr std::uint16_t KOVA_DEVICE_ID = 0x83;

/// What a measurement gives when there is nothing to measure.
inline constexpr std::uint16_t KOVA_NO_MEASUREMENT = 0xFFFF;

// ---- Status ----

/// Reads the device ID: 0x004.
std::uint8_t KOVAAPI_GetDeviceID(std::uint16_t* id);

/// Reads the input sync status: 0x4E0 bits 1..0, 0 when sync is present.
std::uint8_t KOVAAPI_GetSyncStatus(std::uint8_t* status);

/// Reads the number of the active input test pattern: 0x4C0 bits 4..2, 0 for none.
std::uint8_t KOVAAPI_GetInputPattern(std::uint8_t* pattern);

// ---- Measurement ----
// A measurement that the chip does not finish within 5000 polls gives KOVA_NO_MEASUREMENT, as does an invalid one.

/// Measures the input's line frequency: the count of 0x4E2. Without sync, or with an input test pattern, no measurement
/// is started.
std::uint8_t KOVAAPI_GetSyncHfreq(std::uint16_t* value);

/// Measures the input's lines per frame, both fields together: 0x4E8 and 0x4E9.
std::uint8_t KOVAAPI_GetSyncVline(std::uint16_t* value);

// ---- Test patterns ----

/// Shows an input test pattern, or the input again: 0x4C0, then KOVAAPI_SetSrcPtrnMode or KOVAAPI_SetSrcPortMode.
/// @param pattern  1 to 7, 0 for the input; larger numbers run into the register's flags
/// @return also KOVA_INVALID_FORMAT when the input cannot come back for its record's format or mode
std::uint8_t KOVAAPI_SetInputPattern(SrcVideoInfo* src, std::uint16_t pattern);

/// Sets the source's port up for the pattern generator: 0x401, 0x402, 0x404 or 0x405. Ends with a local register
/// update.
std::uint8_t KOVAAPI_SetSrcPtrnMode(const SrcVideoInfo* src);

/// Shows an output test pattern, 0 to 15, 0 for none: 0x4C2 bits 5..2. Ends with a local register update.
std::uint8_t KOVAAPI_SetOutputPattern(std::uint8_t pattern);

// ---- Display ----

/// Shows or hides the output window: 0x4B0 bit 5. Ends with a local register update.
std::uint8_t KOVAAPI_DisplayOutWindow(std::uint8_t on);

/// Darkens the screen: 0x4C2 bit 1. Ends with a local register update.
std::uint8_t KOVAAPI_EnableDarkScreen(std::uint8_t on);

/// Freezes the main picture; for want of a known freeze field it writes the dark screen's, 0x4C2 bit 1. Ends with a
/// local register update.
std::uint8_t KOVAAPI_EnableMainFreeze(std::uint8_t on);

/// Stops clock outputs, analog output, digital outputs and both PLLs, in this order, for on exactly 1; starts them in
/// the same order for any other value.
std::uint8_t KOVAAPI_PowerSaveEnable(std::uint8_t on);
