#pragma once
// The frame memory between input and output. These functions return KOVA_NO_ERROR, also where a transfer failed: see
// regs.h.

#include "formats.h"

#include <cstdint>

/// Sets the frame memory's precision, 0x455 bit 2, and local register update. Pictures wider than 768 pixels (by the
/// last video path update) and some of the outputs run at 8 bits, which shows as VIDFLAG_8BIT in the source record
/// until its port mode is set again.
std::uint8_t KOVAAPI_SetMemPrecision(SrcVideoInfo* src, const OutVideoInfo* out);

/// Sets the frame memory's configuration: fields of 0x012, 0x022, 0x03C, 0x454, 0x455; local register update.
std::uint8_t KOVAAPI_SetMemory(const MemoryConfig* mem);
