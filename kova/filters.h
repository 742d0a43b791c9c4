#pragma once
// Picture enhancement: front noise reduction, median filter, peaking, transient improvement, colour enhancement,
// surface filter, black/white extension.
//
// These functions return KOVA_NO_ERROR, also when a transfer fails (see regs.h). They end with a local register update.
// A parameter "on" means on for any non-zero value. Bits of a value above its range are dropped. The functions read a
// set of coefficients during the call and do not keep the pointer. A null pointer selects the built-in set.

#include <array>
#include <cstdint>

using FilterSet8 = std::array<std::uint16_t, 8>;
using FilterSet4 = std::array<std::uint16_t, 4>;

// ---- Front noise reduction and median, ahead of the frame memory ----

// Coefficients are 12-bit two's complement. 0x400 stands for 1.0. The sets that a null pointer selects do not change
// the picture.
std::uint8_t KOVAAPI_SetFrontNRYFilterCoef(const FilterSet8* coef); ///< luma: 0x422 to 0x429
std::uint8_t KOVAAPI_SetFrontNRCFilterCoef(const FilterSet4* coef); ///< chroma: 0x42C to 0x42F

std::uint8_t KOVAAPI_EnableFrontNRYFilter(std::uint8_t on); ///< 0x42A bit 0
std::uint8_t KOVAAPI_EnableFrontNRCFilter(std::uint8_t on); ///< 0x42A bit 3
std::uint8_t KOVAAPI_EnableMedianFilter(std::uint8_t on);   ///< 0x42A bit 1

/// A step of the video path update. While the picture is decimated and high-definition double mode (see
/// video_process.h) is off, this step switches both front filters on and loads high-definition coefficients for the
/// width of the view window. Otherwise this step switches both filters off and leaves the coefficients as they are.
/// Registers: 0x42A, 0x42C to 0x42F, 0x422 to 0x429. A local register update follows each change.
std::uint8_t KOVAAPI_SetFrontNRFilterInHD();

// ---- Peaking: sharpness ----

std::uint8_t KOVAAPI_SetPeakingFilterCoef(const FilterSet8* coef);   ///< 0x458 to 0x45F
std::uint8_t KOVAAPI_EnablePeakingFilter(std::uint8_t on);           ///< 0x460 bit 0
std::uint8_t KOVAAPI_SetPeakingFilterGain(std::uint16_t value);      ///< 0x461 bits 15..8 (0 to 255)
std::uint8_t KOVAAPI_EnablePeakingCoring(std::uint8_t on);           ///< 0x460 bit 2
std::uint8_t KOVAAPI_SetPeakingCoringValue(std::uint16_t value);     ///< 0x460 bits 15..12 (0 to 15)
std::uint8_t KOVAAPI_EnablePeakingSaturation(std::uint8_t on);       ///< 0x460 bit 1
std::uint8_t KOVAAPI_SetPeakingSaturationValue(std::uint16_t value); ///< 0x460 bits 11..8 (0 to 15)

// ---- Transient improvement ----
// Switching on writes the two built-in words, 0x02F9 and 0x5018. Switching off writes two zeros.

std::uint8_t KOVAAPI_EnableLTI(std::uint8_t on);   ///< luma: 0x462, 0x463
std::uint8_t KOVAAPI_EnableCTICb(std::uint8_t on); ///< Cb: 0x464, 0x465
std::uint8_t KOVAAPI_EnableCTICr(std::uint8_t on); ///< Cr: 0x466, 0x467

// ---- Colour enhancement and surface filter ----

std::uint8_t KOVAAPI_SetColorEnhFilterCoef(const FilterSet4* coef); ///< 0x468 to 0x46B; then writes 1 into 0x46C
std::uint8_t KOVAAPI_SetSurfaceFilterCoef(const FilterSet4* coef);  ///< 0x46D to 0x470
std::uint8_t KOVAAPI_EnableSurfaceFilter(std::uint8_t on);          ///< 0x471, the whole register

/// Writes the threshold of the surface filter to 0x53A bits 13..8 and bits 5..0. Clears bits 15..14.
/// @param value  0 to 63
std::uint8_t KOVAAPI_SetSurfaceFilterThres(std::uint16_t value);

// ---- Black/white extension ----

/// Sets the points of the extension curve: four input points in 0x4A6 to 0x4A9, and four output points in bits 9..0 of
/// 0x4AA to 0x4AD (0 to 1023). When in is null, the built-in input points are used. When outpts is null, the built-in
/// output points are used.
std::uint8_t KOVAAPI_SetBWExtensionPoint(const FilterSet4* in, const FilterSet4* outpts);
std::uint8_t KOVAAPI_EnableBWExtension(std::uint8_t on); ///< 0x4AF bit 0
