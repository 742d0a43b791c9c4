#pragma once
// The built-in filters of the scaler. A table holds two kernels, one after the other, each with 32 phases. Phase p
// holds two values of its kernel: at p / 32 and at 1 + p / 32 pixels from the centre. 2048 stands for 1.0.

#include "kova/formats.h"

#include <cstddef>

namespace kova {

inline constexpr std::size_t kMfcPhases = 32;

/// The second kernel of both tables, a cubic B-spline.
// clang-format off
inline constexpr std::array<std::array<std::int16_t, 2>, kMfcPhases> kBSpline{{
    {1365, 341}, {1364, 310}, {1358, 281}, {1348, 254}, {1335, 229}, {1319, 205}, {1300, 183}, {1278, 163},
    {1253, 144}, {1226, 127}, {1197, 111}, {1165,  96}, {1131,  83}, {1096,  71}, {1059,  61}, {1021,  51},
    { 981,  43}, { 941,  35}, { 900,  29}, { 858,  23}, { 815,  18}, { 773,  14}, { 730,  10}, { 687,   8},
    { 645,   5}, { 604,   3}, { 563,   2}, { 523,   1}, { 483,   1}, { 446,   0}, { 409,   0}, { 374,   0},
}};
// clang-format on

/// n / 16, rounded to the nearest integer. A half is rounded away from zero.
constexpr std::int16_t RoundedSixteenth(int n) { return static_cast<std::int16_t>((n + (n < 0 ? -8 : 8)) / 16); }

/// Builds a table from the given first kernel and the B-spline.
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

/// Cubic convolution with a = -1. With t = p / 32, the first value of a phase is t^3 - 2t^2 + 1
/// and the second value is -t(1 - t)^2.
inline constexpr MfcTable KOVA_MFCFilter_Spline_1_00 = kova::WithBSpline([](int p) {
    return std::array{kova::RoundedSixteenth(p * p * p - 64 * p * p + 32768),
                      kova::RoundedSixteenth(-p * (32 - p) * (32 - p))};
});

/// Linear interpolation between two pixels.
inline constexpr MfcTable KOVA_MFCFilter_Bilinear = kova::WithBSpline([](int p) {
    return std::array<std::int16_t, 2>{static_cast<std::int16_t>(2048 - 64 * p), 0};
});
