#pragma once
// The two colour converters, at the input and at the output, and the picture controls, which are folded into the output
// conversion: each change of a control computes and writes the whole output set again.
//
// Every function returns KOVA_NO_ERROR, also where a transfer failed: see regs.h. Every write ends with a local
// register update.

#include "formats.h"

#include <array>
#include <cstdint>

// ---- Built-in sets ----
// SD: ITU-R BT.601 weights, HD: ITU-R BT.709. FullRange: RGB of 0 to 1023, StdRange: video levels.
// 512 stands for 1.0; offsets are in 10-bit code units.

extern const CscSet KOVA_CscRGBtoYUV_SD_FullRange;
extern const CscSet KOVA_CscRGBtoYUV_SD_StdRange;
extern const CscSet KOVA_CscRGBtoYUV_HD_FullRange;
extern const CscSet KOVA_CscRGBtoYUV_HD_StdRange;
extern const CscSet KOVA_CscYUVtoRGB_SD_FullRange;
extern const CscSet KOVA_CscYUVtoRGB_HD_FullRange;
extern const CscSet KOVA_CscBypass_StdRange;
extern const CscSet KOVA_CscSDtoHD_StdRange;
extern const CscSet KOVA_CscHDtoSD_StdRange;

/// 1024 * cosine and sine of a hue: entry 0 is -60 degrees, entry 128 is 0.
extern const std::array<std::int16_t, 256> KOVA_CscCosHue;
extern const std::array<std::int16_t, 256> KOVA_CscSinHue;

// ---- Conversions ----

/// Chooses and writes the input conversion to YCbCr: the source's own set, or a built-in one by both records' flags.
/// 0x40A to 0x418, 0x419.
std::uint8_t KOVAAPI_SetCSCSrcVideo(const SrcVideoInfo* src, const OutVideoInfo* out);

/// Chooses the output conversion (the output's own set, or a built-in one by both records' flags), applies the picture
/// controls and writes it. 0x472 to 0x480, 0x481.
std::uint8_t KOVAAPI_SetCSCOutVideo(const SrcVideoInfo* src, const OutVideoInfo* out);

/// Gives the source an input conversion of its own and writes it.
/// @param coef  borrowed; null: the built-in choice
std::uint8_t KOVAAPI_SetSrcCSCCoef(SrcVideoInfo* src, const OutVideoInfo* out, const CscSet* coef);

/// Gives the output an output conversion of its own and writes it.
/// @param coef  borrowed; null: the built-in choice
std::uint8_t KOVAAPI_SetOutCSCCoef(const SrcVideoInfo* src, OutVideoInfo* out, const CscSet* coef);

// ---- Picture controls ----
// 0 to 255, 128 is neutral.

std::uint8_t KOVAAPI_SetPictureBrightness(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetPictureContrast(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetPictureSaturation(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetPictureHue(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);

// For an RGB output only: with a YCbCr output nothing is stored or written.

std::uint8_t KOVAAPI_SetRGBOffsetG(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetRGBOffsetB(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetRGBOffsetR(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
