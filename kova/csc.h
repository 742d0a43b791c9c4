#pragma once
// The two colour converters, at the input and at the output, and the picture controls. The driver applies the picture
// controls to the coefficients of the output conversion. Each change of a control therefore computes and writes all
// output coefficients again.
//
// Every function returns KOVA_NO_ERROR, also when a transfer fails (see regs.h). Each write ends with a local register
// update.

#include "formats.h"

#include <array>
#include <cstdint>

// ---- Built-in sets ----
// SD sets have ITU-R BT.601 weights, HD sets have ITU-R BT.709 weights. With FullRange, the RGB side uses the full
// range, 0 to 1023. With StdRange, both sides use standard video levels. In a matrix, 512 stands for 1.0. Offsets are
// in 10-bit code units.

extern const CscSet KOVA_CscRGBtoYUV_SD_FullRange;
extern const CscSet KOVA_CscRGBtoYUV_SD_StdRange;
extern const CscSet KOVA_CscRGBtoYUV_HD_FullRange;
extern const CscSet KOVA_CscRGBtoYUV_HD_StdRange;
extern const CscSet KOVA_CscYUVtoRGB_SD_FullRange;
extern const CscSet KOVA_CscYUVtoRGB_HD_FullRange;
extern const CscSet KOVA_CscBypass_StdRange;
extern const CscSet KOVA_CscSDtoHD_StdRange;
extern const CscSet KOVA_CscHDtoSD_StdRange;

/// 1024 times the cosine and the sine of a hue. Entry 0 is for -60 degrees, entry 128 for 0 degrees, in equal steps.
extern const std::array<std::int16_t, 256> KOVA_CscCosHue;
extern const std::array<std::int16_t, 256> KOVA_CscSinHue;

// ---- Conversions ----

/// Writes the input conversion, whose result is YCbCr. Registers: 0x40A to 0x418, 0x419. Uses the set to which the
/// source record points. When the record points to no set, the flags of both records select a built-in set.
std::uint8_t KOVAAPI_SetCSCSrcVideo(const SrcVideoInfo* src, const OutVideoInfo* out);

/// Applies the picture controls to the output conversion and writes the result. Registers: 0x472 to 0x480, 0x481. Uses
/// the set to which the output record points. When the record points to no set, the flags of both records select a
/// built-in set.
std::uint8_t KOVAAPI_SetCSCOutVideo(const SrcVideoInfo* src, const OutVideoInfo* out);

/// Stores coef in the source record and then calls KOVAAPI_SetCSCSrcVideo.
/// @param coef  borrowed, not copied. Null selects a built-in set.
std::uint8_t KOVAAPI_SetSrcCSCCoef(SrcVideoInfo* src, const OutVideoInfo* out, const CscSet* coef);

/// Stores coef in the output record and then calls KOVAAPI_SetCSCOutVideo.
/// @param coef  borrowed, not copied. Null selects a built-in set.
std::uint8_t KOVAAPI_SetOutCSCCoef(const SrcVideoInfo* src, OutVideoInfo* out, const CscSet* coef);

// ---- Picture controls ----
// Each function stores the value in the output record and then calls KOVAAPI_SetCSCOutVideo. The value is 0 to 255; 128
// is neutral.

std::uint8_t KOVAAPI_SetPictureBrightness(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetPictureContrast(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetPictureSaturation(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetPictureHue(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);

// These three functions do the same for an RGB output. For a YCbCr output they do nothing.

std::uint8_t KOVAAPI_SetRGBOffsetG(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetRGBOffsetB(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
std::uint8_t KOVAAPI_SetRGBOffsetR(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value);
