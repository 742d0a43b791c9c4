#pragma once
// The frame memory between input and output.
//
// These functions return KOVA_NO_ERROR, also when a transfer fails (see regs.h). Both end with a local register update.

#include "formats.h"

#include <cstdint>

/// Sets the precision of the frame memory, 8 or 10 bits: 0x455 bit 2. The precision is 8 bits in three cases: for 8-bit
/// data, for a stored picture wider than 768 pixels (the width is that of the last video path update), and for some
/// output formats. In the last two cases the function also sets VIDFLAG_8BIT in the source record. The flag then stays
/// set until KOVAAPI_SetSrcPortMode computes the flags again.
std::uint8_t KOVAAPI_SetMemPrecision(SrcVideoInfo* src, const OutVideoInfo* out);

/// Sets the configuration of the frame memory: fields of 0x012, 0x022, 0x03C, 0x454 and 0x455.
std::uint8_t KOVAAPI_SetMemory(const MemoryConfig* mem);
