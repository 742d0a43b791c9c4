#pragma once
// The input ports: bus format, syncs, scan type, options and port clock of the source.
//
// Every function but KOVAAPI_SetSrcPortMode always returns KOVA_NO_ERROR, also when a transfer fails (see regs.h). The
// registers 0x400 to 0x402 hold fields of both ports side by side. The other port registers exist once for each port.
// The flags in the source record tell which field a setter writes. KOVAAPI_SetSrcPortMode sets these flags. Call this
// function before any other setter that takes a record. A parameter "on" means on for any non-zero value.

#include "formats.h"

#include <cstdint>

/// Completes the record from its format and mode, and sets up the port: sync type, scan type, line length, choice of
/// the port, and sync position. Registers: 0x401, 0x402, 0x404 (port A) or 0x405 (port B), 0x4B0. Then calls
/// KOVAAPI_SetSrcVideoAUX.
/// @return KOVA_NO_ERROR. KOVA_INVALID_FORMAT when the format or the mode is out of range; the record is then unchanged
///         and nothing is written.
std::uint8_t KOVAAPI_SetSrcPortMode(SrcVideoInfo* src);

/// Writes the options of the record, auxFlags and ycOffset, to fields of 0x400, 0x401 and 0x402. Then makes a local
/// register update. Then writes the port clock delay, if the record has one, to 0x044 (port A) or 0x046 (port B).
std::uint8_t KOVAAPI_SetSrcVideoAUX(const SrcVideoInfo* src);

/// Sets composite horizontal sync: 0x402 bit 6. Does nothing for a source on port B. Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcCompHsync(SrcVideoInfo* src, std::uint8_t on);

/// Sets the "input field ID" option: 0x401 bit 3. Does nothing for a source on port B. Ends with a local register
/// update.
std::uint8_t KOVAAPI_SetSrcInputFieldID(SrcVideoInfo* src, std::uint8_t on);

/// Sets the "high top field ID" option: 0x401 bit 1 (port A) or bit 0 (port B). Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcHighTopFieldID(SrcVideoInfo* src, std::uint8_t on);

/// Sets the sample offset between Y and C: 0x400 bits 13..11 (port A) or bits 10..8 (port B). Ends with a local
/// register update.
/// @param value  0 to 7. Higher bits do not reach the chip.
std::uint8_t KOVAAPI_SetSrcYCOffset(SrcVideoInfo* src, std::uint8_t value);

/// Swaps Cb and Cr: 0x400 bit 3 (port A) or bit 2 (port B). Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcCbCrSwap(SrcVideoInfo* src, std::uint8_t on);

/// Sets the clock delay of the port: 0x044 (port A) or 0x046 (port B). The delay is written at once, without a local
/// register update.
/// @param delay  the record keeps the pointer and does not copy the delay. When it is null, nothing is written.
std::uint8_t KOVAAPI_SetSrcClockDelay(SrcVideoInfo* src, const ClockDelay* delay);

/// Sets the position of the input picture: the offset of the active window from the syncs of the port, 0x404 (port A)
/// or 0x405 (port B). Stores x and y in the clip window of the record. Ends with a local register update.
/// @param x  pixels, must be below 512, because the value is not masked
/// @param y  lines, 0 to 127. Higher bits are dropped.
std::uint8_t KOVAAPI_SetSrcPosition(SrcVideoInfo* src, std::uint16_t x, std::uint16_t y);

/// Sets the input data map mode: 0x400 bits 15..14. Ends with a local register update.
/// @param value  0 to 3. Higher bits are dropped.
std::uint8_t KOVAAPI_SetInDataMapMode(std::uint8_t value);
