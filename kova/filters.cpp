#include "kova/filters.h"

#include "kova/field.h"
#include "kova/filter_tables.h"
#include "kova/state.h"

using namespace kova;

namespace {

// First registers of blocks, and single registers
constexpr std::uint16_t kFrontNRY = 0x422;     // 8 words
constexpr std::uint16_t kFrontNRC = 0x42C;     // 4 words
constexpr std::uint16_t kPeaking = 0x458;      // 8 words
constexpr std::uint16_t kLTI = 0x462;          // 2 words
constexpr std::uint16_t kCTICb = 0x464;        // 2 words
constexpr std::uint16_t kCTICr = 0x466;        // 2 words
constexpr std::uint16_t kColorEnh = 0x468;     // 4 words
constexpr std::uint16_t kColorEnhLoad = 0x46C; // 1 is written after the coefficients
constexpr std::uint16_t kSurface = 0x46D;      // 4 words
constexpr std::uint16_t kSurfaceOn = 0x471;
constexpr std::uint16_t kBWExtIn = 0x4A6;  // 4 words
constexpr std::uint16_t kBWExtOut = 0x4AA; // 4 words

// clang-format off
constexpr Field kFrontNRYOn       {0x42A,  0, 1};
constexpr Field kMedianOn         {0x42A,  1, 1};
constexpr Field kFrontNRCOn       {0x42A,  3, 1};
constexpr Field kPeakingOn        {0x460,  0, 1};
constexpr Field kSaturationOn     {0x460,  1, 1};
constexpr Field kCoringOn         {0x460,  2, 1};
constexpr Field kSaturationValue  {0x460,  8, 4};
constexpr Field kCoringValue      {0x460, 12, 4};
constexpr Field kPeakingGain      {0x461,  8, 8};
constexpr Field kBWExtOn          {0x4AF,  0, 1};
constexpr Field kSurfaceThresTop  {0x53A, 14, 2}; // always written 0
constexpr Field kSurfaceThresHigh {0x53A,  8, 6};
constexpr Field kSurfaceThresLow  {0x53A,  0, 6};
// clang-format on

/// Smallest width of the view window for which the high-definition sets for a wide view are loaded.
constexpr std::uint16_t kWideView = 1024;

template <typename Set>
const Set& OrBuiltIn(const Set* set, const Set& builtIn) {
    return set != nullptr ? *set : builtIn;
}

std::uint8_t WriteAndUpdate(std::uint16_t addr, std::span<const std::uint16_t> words) {
    return AsResult(Write(addr, words) || LocalUpdate());
}

std::uint8_t EnableTransientImprovement(std::uint16_t addr, bool on) {
    return WriteAndUpdate(addr, on ? KOVA_LTICTIFactor : decltype(KOVA_LTICTIFactor){});
}

} // namespace

// ---- Front noise reduction and median ----

std::uint8_t KOVAAPI_SetFrontNRYFilterCoef(const FilterSet8* coef) {
    Write(kFrontNRY, OrBuiltIn(coef, KOVA_FNRYFilter));
    return LocalUpdate();
}

std::uint8_t KOVAAPI_SetFrontNRCFilterCoef(const FilterSet4* coef) {
    Write(kFrontNRC, OrBuiltIn(coef, KOVA_FNRCFilter));
    return LocalUpdate();
}

std::uint8_t KOVAAPI_EnableFrontNRYFilter(std::uint8_t on) { return SetAndUpdate(kFrontNRYOn, on != 0); }
std::uint8_t KOVAAPI_EnableFrontNRCFilter(std::uint8_t on) { return SetAndUpdate(kFrontNRCOn, on != 0); }
std::uint8_t KOVAAPI_EnableMedianFilter(std::uint8_t on) { return SetAndUpdate(kMedianOn, on != 0); }

std::uint8_t KOVAAPI_SetFrontNRFilterInHD() {
    const bool on = (stKOVADeint.state & (DEINT_DECIMATING | DEINT_HD_DOUBLE)) == DEINT_DECIMATING;
    if (KOVAAPI_EnableFrontNRYFilter(on) || KOVAAPI_EnableFrontNRCFilter(on)) {
        return KOVA_I2C_ERROR;
    }
    if (!on) {
        return KOVA_NO_ERROR;
    }
    const std::size_t set = stKOVAViewWIN.w < kWideView ? 0 : 1;
    return AsResult(KOVAAPI_SetFrontNRCFilterCoef(&KOVA_FNRCHDFilt[set])
                    || KOVAAPI_SetFrontNRYFilterCoef(&KOVA_FNRYHDFilt[set]));
}

// ---- Peaking ----

std::uint8_t KOVAAPI_SetPeakingFilterCoef(const FilterSet8* coef) {
    return WriteAndUpdate(kPeaking, OrBuiltIn(coef, KOVA_PeakingFilter));
}

std::uint8_t KOVAAPI_EnablePeakingFilter(std::uint8_t on) { return SetAndUpdate(kPeakingOn, on != 0); }
std::uint8_t KOVAAPI_SetPeakingFilterGain(std::uint16_t value) { return SetAndUpdate(kPeakingGain, value); }
std::uint8_t KOVAAPI_EnablePeakingCoring(std::uint8_t on) { return SetAndUpdate(kCoringOn, on != 0); }
std::uint8_t KOVAAPI_SetPeakingCoringValue(std::uint16_t value) { return SetAndUpdate(kCoringValue, value); }
std::uint8_t KOVAAPI_EnablePeakingSaturation(std::uint8_t on) { return SetAndUpdate(kSaturationOn, on != 0); }
std::uint8_t KOVAAPI_SetPeakingSaturationValue(std::uint16_t value) { return SetAndUpdate(kSaturationValue, value); }

// ---- Transient improvement ----

std::uint8_t KOVAAPI_EnableLTI(std::uint8_t on) { return EnableTransientImprovement(kLTI, on != 0); }
std::uint8_t KOVAAPI_EnableCTICb(std::uint8_t on) { return EnableTransientImprovement(kCTICb, on != 0); }
std::uint8_t KOVAAPI_EnableCTICr(std::uint8_t on) { return EnableTransientImprovement(kCTICr, on != 0); }

// ---- Colour enhancement and surface filter ----

std::uint8_t KOVAAPI_SetColorEnhFilterCoef(const FilterSet4* coef) {
    return AsResult(Write(kColorEnh, OrBuiltIn(coef, KOVA_CEFilter_Spline_1_00)) || KOVA_RegWrite(kColorEnhLoad, 1)
                    || LocalUpdate());
}

std::uint8_t KOVAAPI_SetSurfaceFilterCoef(const FilterSet4* coef) {
    return WriteAndUpdate(kSurface, OrBuiltIn(coef, KOVA_SurfaceFilter));
}

std::uint8_t KOVAAPI_EnableSurfaceFilter(std::uint8_t on) {
    return AsResult(KOVA_RegWrite(kSurfaceOn, on != 0) || LocalUpdate());
}

std::uint8_t KOVAAPI_SetSurfaceFilterThres(std::uint16_t value) {
    return AsResult(Write(kSurfaceThresTop, 0) || Write(kSurfaceThresHigh, value) || Write(kSurfaceThresLow, value)
                    || LocalUpdate());
}

// ---- Black/white extension ----

std::uint8_t KOVAAPI_SetBWExtensionPoint(const FilterSet4* in, const FilterSet4* outpts) {
    if (Write(kBWExtIn, OrBuiltIn(in, KOVA_BWExt_InPoint))) {
        return KOVA_I2C_ERROR;
    }
    std::uint16_t addr = kBWExtOut;
    for (const std::uint16_t point : OrBuiltIn(outpts, KOVA_BWExt_OutPoint)) {
        if (Write(Field{addr++, 0, 10}, point)) {
            return KOVA_I2C_ERROR;
        }
    }
    return LocalUpdate();
}

std::uint8_t KOVAAPI_EnableBWExtension(std::uint8_t on) { return SetAndUpdate(kBWExtOn, on != 0); }
