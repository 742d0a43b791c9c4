#include "tests/kova_driver.h"

namespace {

using KovaFilters = KovaDriver;

TEST_F(KovaFilters, FilterSettersWriteTheirFields) {
    const FilterSet8 eight{1, 2, 3, 4, 5, 6, 7, 0xFFFF};
    const FilterSet4 four{0x8000, 2, 3, 0xFFFF};
    for (const bool own : {false, true}) {
        const FilterSet8* const set8 = own ? &eight : nullptr;
        const FilterSet4* const set4 = own ? &four : nullptr;
        Note(KOVAAPI_SetSurfaceFilterCoef(set4), "surface");
        Note(KOVAAPI_SetPeakingFilterCoef(set8), "peaking");
        Note(KOVAAPI_SetColorEnhFilterCoef(set4), "colour enhancement");
        Note(KOVAAPI_SetFrontNRYFilterCoef(set8), "front NR, luma");
        Note(KOVAAPI_SetFrontNRCFilterCoef(set4), "front NR, chroma");
        Note(KOVAAPI_SetBWExtensionPoint(nullptr, set4), "B/W extension, out");
        Note(KOVAAPI_SetBWExtensionPoint(set4, nullptr), "B/W extension, in");
    }
    for (const auto enable :
         {KOVAAPI_EnableFrontNRYFilter, KOVAAPI_EnableFrontNRCFilter, KOVAAPI_EnableMedianFilter,
          KOVAAPI_EnablePeakingFilter, KOVAAPI_EnablePeakingCoring, KOVAAPI_EnablePeakingSaturation, KOVAAPI_EnableLTI,
          KOVAAPI_EnableCTICb, KOVAAPI_EnableCTICr, KOVAAPI_EnableSurfaceFilter, KOVAAPI_EnableBWExtension}) {
        Note(enable(2), "on");
        Note(enable(0), "off");
    }
    Note(KOVAAPI_SetPeakingFilterGain(64), "peaking gain");
    Note(KOVAAPI_SetPeakingCoringValue(0xFF), "peaking coring");
    Note(KOVAAPI_SetPeakingSaturationValue(0xFF), "peaking saturation");
    sim::KovaRegister(0x53A) = 0xFFFF;
    Note(KOVAAPI_SetSurfaceFilterThres(5), "surface threshold");
}

TEST_F(KovaFilters, FrontNoiseReductionFollowsTheDecimation) {
    for (const auto& [state, viewW] : {std::pair{DEINT_DECIMATING | DEINT_HD_DOUBLE, 720},
                                       {0xFF & ~DEINT_DECIMATING, 720},
                                       {0xFF & ~DEINT_HD_DOUBLE, 1023},
                                       {DEINT_DECIMATING + 0, 1024}}) {
        Fill(0, 0x42A, 0x42A);
        stKOVADeint.state = static_cast<std::uint8_t>(state);
        stKOVAViewWIN.w = static_cast<std::uint16_t>(viewW);
        Note(KOVAAPI_SetFrontNRFilterInHD(), "state", state, "view", viewW, "wide:");
    }
}

} // namespace
