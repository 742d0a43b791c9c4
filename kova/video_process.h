#pragma once
// The video path update: brings the whole path in line with a source and an output record.

#include "formats.h"

#include <cstdint>

/// Programs every piece of the video path for the two records, which are completed in place, and restarts the output
/// sync. To be called after a change of a record's format or mode; the single setters come after at least one update.
/// Every register is written again on every call, except a scaler coefficient set that is loaded already.
/// @return KOVA_NO_ERROR, also where a transfer failed: see regs.h; KOVA_I2C_ERROR at the step that finds a format or
///         mode out of range: what was written before stays
std::uint8_t KOVAAPI_VideoProcess(SrcVideoInfo* src, OutVideoInfo* out);

/// The update in its high-definition double-rate variant, or (on zero) the normal update with the variant switched off.
/// The variant holds the video PLL, takes the clock of the source's port and scales from the full source width: 0x020,
/// 0x432, 0x43C, 0x498.
/// @return as KOVAAPI_VideoProcess
std::uint8_t KOVAAPI_HDDBLProcess(SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t on);

/// First step of the update: presets the decimator's destination to 720 by 480, 0x43C and 0x43D. Ends with a local
/// register update.
/// @return KOVA_NO_ERROR; KOVA_I2C_ERROR for a source format out of range, before any write
std::uint8_t KOVAAPI_SetSrcHDMapBug(const SrcVideoInfo* src);
