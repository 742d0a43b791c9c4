#pragma once
// The built-in sets of the picture filters. A null pointer in a setter selects a built-in set.
// KOVAAPI_SetFrontNRFilterInHD loads the sets for a decimated picture. EnableLTI, EnableCTICb and EnableCTICr write
// KOVA_LTICTIFactor.

#include "kova/filters.h"

// clang-format off

/// Front noise reduction that does not change the picture. 12-bit two's complement; 0x400 stands for 1.0.
inline constexpr FilterSet8 KOVA_FNRYFilter{0x0400, 0, 0, 0, 0, 0, 0, 0};
inline constexpr FilterSet4 KOVA_FNRCFilter{0x0400, 0, 0, 0};

/// Front noise reduction while the picture is decimated. The first set is for a view narrower than 1024 pixels, the
/// second set for a view of 1024 pixels or more.
inline constexpr std::array<FilterSet8, 2> KOVA_FNRYHDFilt{{
    {0x0170, 0x011F, 0x006D, 0x0FDA, 0x0FB7, 0x0FEA, 0x0020, 0x0022},
    {0x023C, 0x0152, 0x0FDD, 0x0F97, 0x0021, 0x0036, 0x0FE3, 0x0FE2},
}};
inline constexpr std::array<FilterSet4, 2> KOVA_FNRCHDFilt{{
    {0x0160, 0x010E, 0x0061, 0x0FE1},
    {0x024E, 0x0157, 0x0FDE, 0x0FA4},
}};

inline constexpr FilterSet8 KOVA_PeakingFilter       {0x0200, 0x0000, 0xFF00, 0x0000, 0, 0, 0, 0};
inline constexpr FilterSet4 KOVA_CEFilter_Spline_1_00{0x0100, 0x00A0, 0x0000, 0xFFE0};
inline constexpr FilterSet4 KOVA_SurfaceFilter       {0x0100, 0x0080, 0x0080, 0x0080};

/// Luma and chroma transient improvement. LTI, CTI Cb and CTI Cr have two registers each, which get these two words. It
/// is not known whether the chip expects the second word in the second register.
inline constexpr std::array<std::uint16_t, 2> KOVA_LTICTIFactor{0x02F9, 0x5018};

/// Points of the black/white extension curve.
inline constexpr FilterSet4 KOVA_BWExt_InPoint {32,  92, 256, 768};
inline constexpr FilterSet4 KOVA_BWExt_OutPoint{32, 150, 256, 768};
// clang-format on
