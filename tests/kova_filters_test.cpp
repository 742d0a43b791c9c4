#include "tests/kova_driver.h"

#include <tuple>

namespace {

using KovaFilters = KovaDriver;

TEST_F(KovaFilters, BuiltInAndCallersSets) {
    const FilterSet8 eight{1, 2, 3, 4, 5, 6, 7, 0xFFFF};
    const FilterSet4 four{0x8000, 2, 3, 0xFFFF};
    const auto load = [](const FilterSet8* of8, const FilterSet4* of4) {
        KOVAAPI_SetSurfaceFilterCoef(of4);
        KOVAAPI_SetPeakingFilterCoef(of8);
        KOVAAPI_SetColorEnhFilterCoef(of4);
        KOVAAPI_SetFrontNRYFilterCoef(of8);
        KOVAAPI_SetFrontNRCFilterCoef(of4);
        KOVAAPI_SetBWExtensionPoint(nullptr, of4);
        return Packed();
    };
    EXPECT_EQ(load(nullptr, nullptr), "46d:0100 0080 0080 0080 u 458:0200 0000 ff00 0000 0000 0000 0000 0000 u "
                                      "468:0100 00a0 0000 ffe0 0001 u 422:0400 0000 0000 0000 0000 0000 0000 0000 u "
                                      "42c:0400 0000 0000 0000 u 4a6:0020 005c 0100 0300 0020 0096 0100 0300 u");
    EXPECT_EQ(load(&eight, &four), "46d:8000 0002 0003 ffff u 458:0001 0002 0003 0004 0005 0006 0007 ffff u "
                                   "468:8000 0002 0003 ffff 0001 u 422:0001 0002 0003 0004 0005 0006 0007 ffff u "
                                   "42c:8000 0002 0003 ffff u 4a6:0020 005c 0100 0300 0000 0002 0003 03ff u");
    KOVAAPI_SetBWExtensionPoint(&four, nullptr);
    EXPECT_EQ(Packed(), "4a6:8000 0002 0003 ffff 0020 0096 0100 0300 u");
}

TEST_F(KovaFilters, SwitchesAndValues) {
    for (const auto enable :
         {KOVAAPI_EnableFrontNRYFilter, KOVAAPI_EnableFrontNRCFilter, KOVAAPI_EnableMedianFilter,
          KOVAAPI_EnablePeakingFilter, KOVAAPI_EnablePeakingCoring, KOVAAPI_EnablePeakingSaturation, KOVAAPI_EnableLTI,
          KOVAAPI_EnableCTICb, KOVAAPI_EnableCTICr, KOVAAPI_EnableSurfaceFilter, KOVAAPI_EnableBWExtension}) {
        enable(2);
        enable(0);
    }
    EXPECT_EQ(Packed(), "42a:0001 u 42a:0000 u 42a:0008 u 42a:0000 u 42a:0002 u 42a:0000 u 460:0001 u 460:0000 u "
                        "460:0004 u 460:0000 u 460:0002 u 460:0000 u 462:02f9 5018 u 462:0000 0000 u "
                        "464:02f9 5018 u 464:0000 0000 u 466:02f9 5018 u 466:0000 0000 u 471:0001 u 471:0000 u "
                        "4af:0001 u 4af:0000 u");
    KOVAAPI_SetPeakingFilterGain(64);
    KOVAAPI_SetPeakingCoringValue(0xFF);
    KOVAAPI_SetPeakingSaturationValue(0xFF);
    EXPECT_EQ(Packed(), "461:4000 u 460:f000 u 460:ff00 u");
    sim::KovaRegister(0x53A) = 0xFFFF;
    KOVAAPI_SetSurfaceFilterThres(5);
    EXPECT_EQ(Packed(), "53a:3fff 53a:05ff 53a:05c5 u");
}

TEST_F(KovaFilters, FrontNoiseReductionFollowsTheDecimation) {
    const char* const kOff = "42a:0000 u 42a:0000 u";
    const char* const kNarrow = "42a:0001 u 42a:0009 u 42c:0160 010e 0061 0fe1 u "
                                "422:0170 011f 006d 0fda 0fb7 0fea 0020 0022 u";
    const char* const kWide = "42a:0001 u 42a:0009 u 42c:024e 0157 0fde 0fa4 u "
                              "422:023c 0152 0fdd 0f97 0021 0036 0fe3 0fe2 u";
    for (const auto& [state, viewW, expected] : {std::tuple{DEINT_DECIMATING | DEINT_HD_DOUBLE, 720, kOff},
                                                 {0xFF & ~DEINT_DECIMATING, 720, kOff},
                                                 {0xFF & ~DEINT_HD_DOUBLE, 1023, kNarrow},
                                                 {DEINT_DECIMATING + 0, 1024, kWide}}) {
        FillRange(0x42A, 0x42A, 0);
        stKOVADeint.state = static_cast<std::uint8_t>(state);
        stKOVAViewWIN.w = static_cast<std::uint16_t>(viewW);
        KOVAAPI_SetFrontNRFilterInHD();
        EXPECT_EQ(Packed(), expected) << state;
    }
}

} // namespace
