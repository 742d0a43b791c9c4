#pragma once
// The filters of the scaler.
//
// These functions return KOVA_NO_ERROR, also when a transfer fails (see regs.h). They use the windows of the last video
// path update. Call KOVAAPI_VideoProcess at least once before.

#include "formats.h"

#include <cstdint>

/// Loads all four filters of the record, but only when the vertical scaling needs another set than the loaded one. Sets
/// exist for two cases: the picture is shown at less than half its height, or not. A new table in the record therefore
/// does not start a load. Registers: 0x590 to 0x594, and those of KOVAAPI_SetVCLKPLLSource. The video PLL is held
/// during the load (0x020 bit 0).
std::uint8_t KOVAAPI_SetMFCFilterCoef(OutVideoInfo* out);

// Each function stores the pointer to the table in the record and loads the table at once: 0x590 to 0x594. The table is
// borrowed, not copied. A null pointer selects the built-in table. When the picture is shown at less than half its
// height, the two vertical filters are always loaded from the built-in bilinear table.

std::uint8_t KOVAAPI_SetMFCHYFilterCoef(OutVideoInfo* out, const MfcTable* table); ///< horizontal, luma
std::uint8_t KOVAAPI_SetMFCHCFilterCoef(OutVideoInfo* out, const MfcTable* table); ///< horizontal, chroma
std::uint8_t KOVAAPI_SetMFCVYFilterCoef(OutVideoInfo* out, const MfcTable* table); ///< vertical, luma
std::uint8_t KOVAAPI_SetMFCVCFilterCoef(OutVideoInfo* out, const MfcTable* table); ///< vertical, chroma
