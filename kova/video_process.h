#pragma once
// The video path update sets up the whole video path for a source record and an output record.

#include "formats.h"

#include <cstdint>

/// Sets up every part of the video path for the two records, completes the records, and restarts the output sync. Call
/// it after each change of the format or the mode in a record. Call it at least once before a setter that uses the
/// resulting flags or windows. Each call writes all registers again. Only the scaler coefficients are not written again
/// when the needed set is already loaded.
/// @return KOVA_NO_ERROR, also when a transfer fails (see regs.h). KOVA_I2C_ERROR when a format or a mode is out of
///         range: the update ends at that step, and the registers written before keep their new values.
std::uint8_t KOVAAPI_VideoProcess(SrcVideoInfo* src, OutVideoInfo* out);

/// Makes the video path update in a high-definition double-rate variant. After the update, the variant holds the video
/// PLL, takes the video clock from the input port of the source, and scales from the full width of the source. Besides
/// the update, it writes 0x020, 0x432, 0x43C and 0x498, and calls KOVAAPI_SetVCLKPLLSource, KOVAAPI_SetDeintYMode,
/// KOVAAPI_EnableDeintHDMode and KOVAAPI_ResetOutSync.
/// @param on  0 switches the variant off and makes the normal update. Any other value makes the variant.
/// @return as KOVAAPI_VideoProcess
std::uint8_t KOVAAPI_HDDBLProcess(SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t on);

/// First step of the update. Presets the size of the decimator's destination to 720 by 480: 0x43C, 0x43D. Ends with a
/// local register update.
/// @return KOVA_NO_ERROR. KOVA_I2C_ERROR when the source format is out of range; nothing is written then.
std::uint8_t KOVAAPI_SetSrcHDMapBug(const SrcVideoInfo* src);
