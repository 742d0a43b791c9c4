#pragma once
// The scaler's filters.
//
// These functions return KOVA_NO_ERROR, also where a transfer failed: see regs.h. They go by the windows that the last
// video path update left, so they come after at least one update.

#include "formats.h"

#include <cstdint>

/// Loads all four filters of the record when the set that the vertical scaling needs is not the one loaded last; the
/// video PLL is held meanwhile. A new table in the record alone loads nothing.
std::uint8_t KOVAAPI_SetMFCFilterCoef(OutVideoInfo* out);

// Each keeps the caller's table in the record (borrowed; null: the built-in one) and loads it at once: 0x590 to 0x594.
// A picture that is shown at less than half its height gets the built-in bilinear table vertically, whatever the
// caller's.

std::uint8_t KOVAAPI_SetMFCHYFilterCoef(OutVideoInfo* out, const MfcTable* table); ///< horizontal, luma
std::uint8_t KOVAAPI_SetMFCHCFilterCoef(OutVideoInfo* out, const MfcTable* table); ///< horizontal, chroma
std::uint8_t KOVAAPI_SetMFCVYFilterCoef(OutVideoInfo* out, const MfcTable* table); ///< vertical, luma
std::uint8_t KOVAAPI_SetMFCVCFilterCoef(OutVideoInfo* out, const MfcTable* table); ///< vertical, chroma
