#pragma once
// The video path update sets up the whole video path for a source record and an output record.

#include "formats.h"

#include <cstdint>

/// Sets up every part of the video path for the two records, completes the records, and restarts the output sync. Call
/// it after each change of the format or the mode in a record. Call it at least once before a setter that uses the
/// resulting flags or windows. Each call writes all registers of the update again, with one exception: the scaler
/// coefficients are written only when the needed set is not the one that was loaded last.
/// @return KOVA_NO_ERROR, also when a transfer fails (see regs.h). KOVA_I2C_ERROR when a format or a mode is out of
///         range: the update ends at that step, and the registers written before keep their new values.
std::uint8_t KOVAAPI_VideoProcess(SrcVideoInfo* src, OutVideoInfo* out);

/// Runs the video path update and then sets up high-definition double mode. In this mode the video PLL is held, the
/// video clock comes from the input port of the source, and the scaler uses the full width of the source. Besides the
/// update, the function writes 0x020 bit 0, 0x432, 0x43C and 0x498 bit 1, and calls KOVAAPI_SetVCLKPLLSource,
/// KOVAAPI_SetDeintYMode, KOVAAPI_EnableDeintHDMode and KOVAAPI_ResetOutSync.
/// @param on  0 switches the mode off. The function then sets clock source 1 and Y mode 1 and runs the update. Any
///            other value switches the mode on.
/// @return as KOVAAPI_VideoProcess
std::uint8_t KOVAAPI_HDDBLProcess(SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t on);

/// First step of the update. Presets the size of the decimator's destination to 720 by 480: 0x43C, 0x43D. Ends with a
/// local register update.
/// @return KOVA_NO_ERROR. KOVA_I2C_ERROR when the source format is out of range; nothing is written then.
std::uint8_t KOVAAPI_SetSrcHDMapBug(const SrcVideoInfo* src);
