#include "kova/csc.h"

#include "kova/field.h"

#include <algorithm>
#include <cstddef>
#include <tuple>

using namespace kova;

// clang-format off

// A set holds the matrix, the input offsets, which are added before the matrix, and the output offsets, which are added
// after it. The rows and the columns of the matrix have the order G/Y, B/Cb, R/Cr.
constexpr CscSet KOVA_CscRGBtoYUV_SD_FullRange{
     258,   50,  132,  -149,  225,  -76,  -188,  -36,  225,     0,    0,    0,   64, 512, 512};
constexpr CscSet KOVA_CscRGBtoYUV_SD_StdRange{
     301,   58,  153,  -174,  262,  -88,  -219,  -42,  262,     0,    0,    0,    0, 512, 512};
constexpr CscSet KOVA_CscRGBtoYUV_HD_FullRange{
     314,   32,   94,  -173,  225,  -52,  -204,  -20,  225,     0,    0,    0,   64, 512, 512};
constexpr CscSet KOVA_CscRGBtoYUV_HD_StdRange{
     366,   37,  109,  -202,  262,  -60,  -238,  -24,  262,     0,    0,    0,    0, 512, 512};
constexpr CscSet KOVA_CscYUVtoRGB_SD_FullRange{
     596, -200, -416,   596, 1033,    0,   596,    0,  817,   -64, -512, -512,    0,   0,   0};
constexpr CscSet KOVA_CscYUVtoRGB_HD_FullRange{
     596, -109, -273,   596, 1083,    0,   596,    0,  918,   -64, -512, -512,    0,   0,   0};
constexpr CscSet KOVA_CscBypass_StdRange{
     512,    0,    0,     0,  512,    0,     0,    0,  512,   -64, -512, -512,   64, 512, 512};
constexpr CscSet KOVA_CscSDtoHD_StdRange{
     512,    0,    0,     0,  522,   59,     0,   38,  525,   -64, -512, -512,   64, 512, 512};
constexpr CscSet KOVA_CscHDtoSD_StdRange{
     512,   51,   98,     0,  507,  -56,     0,  -37,  504,   -64, -512, -512,   64, 512, 512};

// clang-format on

namespace {

constexpr std::uint16_t kInputSet = 0x40A;
constexpr std::uint16_t kInputControl = 0x419;
constexpr std::uint16_t kOutputSet = 0x472;
constexpr std::uint16_t kOutputControl = 0x481;
constexpr std::uint16_t kControlYCbCr = 0x1FC;
constexpr std::uint16_t kControlRgb = 0x1F8;

bool IsYCbCr(std::uint16_t flags) { return (flags & VIDFLAG_YCBCR) != 0; }
bool IsHd(std::uint16_t flags) { return (flags & VIDFLAG_HD) != 0; }

// ---- Hue ----

using HueTable = std::array<std::int16_t, 256>;

// Cosine and sine by their power series. Within 60 degrees, the error of these ten terms is below 1e-15.
constexpr double Series(double firstTerm, int firstDegree, double x) {
    double sum = 0;
    double term = firstTerm;
    for (int n = firstDegree; n < firstDegree + 20; n += 2) {
        sum += term;
        term *= -x * x / ((n + 1) * (n + 2));
    }
    return sum;
}

constexpr double Angle(std::size_t hue) {
    constexpr double kPi = 3.14159265358979323846;
    return (static_cast<double>(hue) - 128) * (kPi / 3) / 128;
}

constexpr std::int16_t Rounded(double value) {
    return static_cast<std::int16_t>(value < 0 ? value - 0.5 : value + 0.5);
}

constexpr HueTable CosHue() {
    HueTable table{};
    for (std::size_t hue = 0; hue < table.size(); ++hue) {
        table[hue] = Rounded(1024 * Series(1, 0, Angle(hue)));
    }
    // These entries differ by one from the rounded value. This is intended.
    table[22] = 663;
    table[234] = 663;
    return table;
}

constexpr HueTable SinHue() {
    HueTable table{};
    for (std::size_t hue = 0; hue < table.size(); ++hue) {
        table[hue] = Rounded(1024 * Series(Angle(hue), 1, Angle(hue)));
    }
    // These entries differ by one from the rounded value. This is intended.
    table[42] = -663;
    table[124] = -33;
    table[132] = 33;
    table[214] = 663;
    return table;
}

// ---- Choice of the built-in set ----

// First index: definition of the source, standard or high. Second index: kind of output.
constexpr const CscSet* kRgbInput[2][2] = {
    // RGB output, YCbCr output
    {&KOVA_CscRGBtoYUV_SD_FullRange, &KOVA_CscRGBtoYUV_SD_StdRange},
    {&KOVA_CscRGBtoYUV_HD_FullRange, &KOVA_CscRGBtoYUV_HD_StdRange},
};

constexpr const CscSet* kOutput[2][3] = {
    // RGB output, YCbCr output in standard and in high definition
    {&KOVA_CscYUVtoRGB_SD_FullRange, &KOVA_CscBypass_StdRange, &KOVA_CscSDtoHD_StdRange},
    {&KOVA_CscYUVtoRGB_HD_FullRange, &KOVA_CscHDtoSD_StdRange, &KOVA_CscBypass_StdRange},
};

const CscSet& InputSet(const SrcVideoInfo& src, const OutVideoInfo& out) {
    if (src.pCscCoef != nullptr) {
        return *src.pCscCoef;
    }
    return IsYCbCr(src.flags) ? KOVA_CscBypass_StdRange : *kRgbInput[IsHd(src.flags)][IsYCbCr(out.flags)];
}

const CscSet& OutputSet(const SrcVideoInfo& src, const OutVideoInfo& out) {
    if (out.pCscCoef != nullptr) {
        return *out.pCscCoef;
    }
    const std::size_t column = !IsYCbCr(out.flags) ? 0 : !IsHd(out.flags) ? 1 : 2;
    return *kOutput[IsHd(src.flags)][column];
}

// ---- Picture controls ----

using CscWords = std::array<std::uint16_t, std::tuple_size_v<CscSet>>;

CscWords Words(const CscSet& set) {
    CscWords words{};
    std::copy(set.begin(), set.end(), words.begin());
    return words;
}

// Limits a value to the 12-bit two's complement of the chip.
constexpr std::uint16_t Limited(std::int32_t value) {
    return static_cast<std::uint16_t>(std::clamp(value, -2048, 2047) & 0xFFF);
}

// Shifts a 32-bit product down and limits it. The product of 16-bit coefficients of the caller can exceed 32 bits. It
// wraps then, as on a 32-bit processor.
constexpr std::uint16_t Scaled(std::uint32_t product, int shift) {
    return Limited(static_cast<std::int32_t>(product) >> shift);
}

// Applies the picture controls to a set. Contrast scales the coefficients of the first input channel. Saturation and
// hue scale and rotate the coefficients of the other two channels. Brightness changes the input offset of the first
// channel. For an RGB output, the RGB offsets replace the output offsets. Words that no control changes keep all 16
// bits.
CscWords WithPictureControls(const CscSet& base, const OutVideoInfo& out) {
    CscWords words = Words(base);
    // Unsigned, because a product can exceed 32 bits, and only unsigned arithmetic may wrap.
    const auto cosine = static_cast<std::uint32_t>(KOVA_CscCosHue[out.hue]);
    const auto sine = static_cast<std::uint32_t>(KOVA_CscSinHue[out.hue]);
    for (std::size_t k = 0; k < 9; k += 3) {
        const auto first = static_cast<std::uint32_t>(base[k]);
        const auto second = static_cast<std::uint32_t>(base[k + 1]);
        const auto third = static_cast<std::uint32_t>(base[k + 2]);
        words[k] = Scaled(first * out.contrast, 7);
        words[k + 1] = Scaled((second * cosine + third * sine) * out.saturation, 17);
        words[k + 2] = Scaled((third * cosine - second * sine) * out.saturation, 17);
    }
    words[9] = Limited(base[9] + 2 * out.brightness - 256);
    if (!IsYCbCr(out.flags)) {
        words[12] = Limited(2 * out.offsetG - 256);
        words[13] = Limited(2 * out.offsetB - 256);
        words[14] = Limited(2 * out.offsetR - 256);
    }
    return words;
}

std::uint8_t SetControl(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t& control, std::uint8_t value) {
    control = value;
    return KOVAAPI_SetCSCOutVideo(src, out);
}

std::uint8_t SetRgbOffset(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t& offset, std::uint8_t value) {
    if (IsYCbCr(out->flags)) {
        return KOVA_NO_ERROR;
    }
    return SetControl(src, out, offset, value);
}

} // namespace

constexpr HueTable KOVA_CscCosHue = CosHue();
constexpr HueTable KOVA_CscSinHue = SinHue();

std::uint8_t KOVAAPI_SetCSCSrcVideo(const SrcVideoInfo* src, const OutVideoInfo* out) {
    return AsResult(Write(kInputSet, Words(InputSet(*src, *out)))
                    || KOVA_RegWrite(kInputControl, IsYCbCr(src->flags) ? kControlYCbCr : kControlRgb)
                    || LocalUpdate());
}

std::uint8_t KOVAAPI_SetCSCOutVideo(const SrcVideoInfo* src, const OutVideoInfo* out) {
    return AsResult(Write(kOutputSet, WithPictureControls(OutputSet(*src, *out), *out))
                    || KOVA_RegWrite(kOutputControl, kControlYCbCr) || LocalUpdate());
}

std::uint8_t KOVAAPI_SetSrcCSCCoef(SrcVideoInfo* src, const OutVideoInfo* out, const CscSet* coef) {
    src->pCscCoef = coef;
    return KOVAAPI_SetCSCSrcVideo(src, out);
}

std::uint8_t KOVAAPI_SetOutCSCCoef(const SrcVideoInfo* src, OutVideoInfo* out, const CscSet* coef) {
    out->pCscCoef = coef;
    return KOVAAPI_SetCSCOutVideo(src, out);
}

std::uint8_t KOVAAPI_SetPictureBrightness(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value) {
    return SetControl(src, out, out->brightness, value);
}

std::uint8_t KOVAAPI_SetPictureContrast(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value) {
    return SetControl(src, out, out->contrast, value);
}

std::uint8_t KOVAAPI_SetPictureSaturation(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value) {
    return SetControl(src, out, out->saturation, value);
}

std::uint8_t KOVAAPI_SetPictureHue(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value) {
    return SetControl(src, out, out->hue, value);
}

std::uint8_t KOVAAPI_SetRGBOffsetG(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value) {
    return SetRgbOffset(src, out, out->offsetG, value);
}

std::uint8_t KOVAAPI_SetRGBOffsetB(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value) {
    return SetRgbOffset(src, out, out->offsetB, value);
}

std::uint8_t KOVAAPI_SetRGBOffsetR(const SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t value) {
    return SetRgbOffset(src, out, out->offsetR, value);
}
