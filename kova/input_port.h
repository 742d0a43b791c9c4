#pragma once
// The input ports: bus format, syncs, scan type, options and port clock of the source.
//
// Every function returns KOVA_NO_ERROR, also where a transfer failed: see regs.h. Most port registers hold one field
// for each port side by side; the record's flags say which of them a setter writes, so the single setters come after
// KOVAAPI_SetSrcPortMode. A switch is on for any non-zero value.

#include "formats.h"

#include <cstdint>

/// Completes the record from its format and mode and programs the port: bus and sync type, scan type, line length,
/// port, sync position (0x401, 0x402, 0x404 or 0x405, 0x4B0), then KOVAAPI_SetSrcVideoAUX.
/// @return also KOVA_INVALID_FORMAT for a format or mode out of range: the record is as it was, nothing is written
std::uint8_t KOVAAPI_SetSrcPortMode(SrcVideoInfo* src);

/// Writes the record's options: auxFlags, ycOffset (0x400 to 0x402), local register update, then the port clock delay
/// if there is one (0x044 or 0x046).
std::uint8_t KOVAAPI_SetSrcVideoAUX(const SrcVideoInfo* src);

/// Composite horizontal sync: 0x402 bit 6. For a source on port B nothing is done. Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcCompHsync(SrcVideoInfo* src, std::uint8_t on);

/// "Input field ID": 0x401 bit 3. For a source on port B nothing is done. Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcInputFieldID(SrcVideoInfo* src, std::uint8_t on);

/// "High top field ID": 0x401 bit 1 or 0. Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcHighTopFieldID(SrcVideoInfo* src, std::uint8_t on);

/// Sample offset between Y and C, 0 to 7: 0x400 bits 13..11 or 10..8. Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcYCOffset(SrcVideoInfo* src, std::uint8_t value);

/// Swaps Cb and Cr: 0x400 bit 3 or 2. Ends with a local register update.
std::uint8_t KOVAAPI_SetSrcCbCrSwap(SrcVideoInfo* src, std::uint8_t on);

/// Port clock delay: 0x044 or 0x046, at once.
/// @param delay  borrowed by the record; null: kept in the record, nothing is written
std::uint8_t KOVAAPI_SetSrcClockDelay(SrcVideoInfo* src, const ClockDelay* delay);

/// Places the input picture: offsets of the active window from the port's syncs, kept in the record's clip window.
/// 0x404 or 0x405. Ends with a local register update.
/// @param x  pixels, below 512 (not masked)   @param y  lines, bits 6..0 used
std::uint8_t KOVAAPI_SetSrcPosition(SrcVideoInfo* src, std::uint16_t x, std::uint16_t y);

/// Input data map mode, 0 to 3: 0x400 bits 15..14. Ends with a local register update.
std::uint8_t KOVAAPI_SetInDataMapMode(std::uint8_t value);
