#pragma once
// The scaler's built-in filters. A table holds two kernels of 32 phases, each sampled on the near side and one pixel
// further: entry p of a kernel is w(p / 32) and w(1 + p / 32), 2048 standing for 1.0.

#include "kova/formats.h"

#include <cstddef>

namespace kova {

inline constexpr std::size_t kMfcPhases = 32;

/// The second half of both tables: a cubic B-spline.
// clang-format off
inline constexpr std::array<std::array<std::int16_t, 2>, kMfcPhases> kBSpline{{
    {1365, 341}, {1364, 310}, {1358, 281}, {1348, 254}, {1335, 229}, {1319, 205}, {1300, 183}, {1278, 163},
    {1253, 144}, {1226, 127}, {1197, 111}, {1165,  96}, {1131,  83}, {1096,  71}, {1059,  61}, {1021,  51},
    { 981,  43}, { 941,  35}, { 900,  29}, { 858,  23}, { 815,  18}, { 773,  14}, { 730,  10}, { 687,   8},
    { 645,   5}, { 604,   3}, { 563,   2}, { 523,   1}, { 483,   1}, { 446,   0}, { 409,   0}, { 374,   0},
}};
// clang-format on

/// n / 16, ties away from zero.
constexpr std::int16_t RoundedSixteenth(int n) { return static_cast<std::int16_t>((n + (n < 0 ? -8 : 8)) / 16); }

/// A table whose first half is the given kernel.
template <typename Kernel>
constexpr MfcTable WithBSpline(Kernel kernel) {
    MfcTable table{};
    for (std::size_t p = 0; p < kMfcPhases; ++p) {
        table[p] = kernel(static_cast<int>(p));
        table[kMfcPhases + p] = kBSpline[p];
    }
    return table;
}

} // namespace kova

/// Cubic convolution with a = -1: t^3 - 2t^2 + 1 below one pixel, -u(1 - u)^2 at one pixel and u more.
inline constexpr MfcTable KOVA_MFCFilter_Spline_1_00 = kova::WithBSpline([](int p) {
    return std::array{kova::RoundedSixteenth(p * p * p - 64 * p * p + 32768),
                      kova::RoundedSixteenth(-p * (32 - p) * (32 - p))};
});

/// Linear interpolation between two pixels.
inline constexpr MfcTable KOVA_MFCFilter_Bilinear = kova::WithBSpline([](int p) {
    return std::array<std::int16_t, 2>{static_cast<std::int16_t>(2048 - 64 * p), 0};
});
