#include "tests/kova_driver.h"

namespace {

using KovaFilters = KovaDriver;

TEST_F(KovaFilters, BuiltInSets) {
    EXPECT_EQ(KOVAAPI_SetSurfaceFilterCoef(nullptr), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "46d:0100 46e:0080 46f:0080 470:0080 u");
    EXPECT_EQ(KOVAAPI_SetPeakingFilterCoef(nullptr), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "458:0200 459:0000 45a:ff00 45b:0000 45c:0000 45d:0000 45e:0000 45f:0000 u");
    EXPECT_EQ(KOVAAPI_SetColorEnhFilterCoef(nullptr), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "468:0100 469:00a0 46a:0000 46b:ffe0 46c:0001 u");
    EXPECT_EQ(KOVAAPI_SetFrontNRYFilterCoef(nullptr), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "422:0400 423:0000 424:0000 425:0000 426:0000 427:0000 428:0000 429:0000 u");
    EXPECT_EQ(KOVAAPI_SetFrontNRCFilterCoef(nullptr), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "42c:0400 42d:0000 42e:0000 42f:0000 u");
    EXPECT_EQ(KOVAAPI_SetBWExtensionPoint(nullptr, nullptr), KOVA_NO_ERROR);
    EXPECT_EQ(Transfers(),
              "kova w 04a6 0020\nkova w 04a7 005c\nkova w 04a8 0100\nkova w 04a9 0300\n"
              "kova r 04aa 0000\nkova w 04aa 0020\nkova r 04ab 0000\nkova w 04ab 0096\n"
              "kova r 04ac 0000\nkova w 04ac 0100\nkova r 04ad 0000\nkova w 04ad 0300\nkova w 04c4 0001\n");
}

TEST_F(KovaFilters, CallersSets) {
    const FilterSet8 eight{1, 2, 3, 4, 5, 6, 7, 0xFFFF};
    const FilterSet4 four{0x8000, 2, 3, 0xFFFF};
    KOVAAPI_SetPeakingFilterCoef(&eight);
    KOVAAPI_SetFrontNRYFilterCoef(&eight);
    KOVAAPI_SetFrontNRCFilterCoef(&four);
    EXPECT_EQ(Short(), "458:0001 459:0002 45a:0003 45b:0004 45c:0005 45d:0006 45e:0007 45f:ffff u "
                       "422:0001 423:0002 424:0003 425:0004 426:0005 427:0006 428:0007 429:ffff u "
                       "42c:8000 42d:0002 42e:0003 42f:ffff u");
    KOVAAPI_SetColorEnhFilterCoef(&four);
    KOVAAPI_SetSurfaceFilterCoef(&four);
    KOVAAPI_SetBWExtensionPoint(&four, nullptr);
    KOVAAPI_SetBWExtensionPoint(nullptr, &four);
    EXPECT_EQ(Short(), "468:8000 469:0002 46a:0003 46b:ffff 46c:0001 u 46d:8000 46e:0002 46f:0003 470:ffff u "
                       "4a6:8000 4a7:0002 4a8:0003 4a9:ffff 4aa:0020 4ab:0096 4ac:0100 4ad:0300 u "
                       "4a6:0020 4a7:005c 4a8:0100 4a9:0300 4aa:0000 4ab:0002 4ac:0003 4ad:03ff u");
}

TEST_F(KovaFilters, Switches) {
    struct Case {
        std::uint8_t (*enable)(std::uint8_t);
        const char *on, *off;
    };
    for (const Case& c : {
             Case{KOVAAPI_EnableFrontNRYFilter, "42a:0001 u", "42a:0000 u"},
             Case{KOVAAPI_EnableFrontNRCFilter, "42a:0008 u", "42a:0000 u"},
             Case{KOVAAPI_EnableMedianFilter, "42a:0002 u", "42a:0000 u"},
             Case{KOVAAPI_EnablePeakingFilter, "460:0001 u", "460:0000 u"},
             Case{KOVAAPI_EnablePeakingCoring, "460:0004 u", "460:0000 u"},
             Case{KOVAAPI_EnablePeakingSaturation, "460:0002 u", "460:0000 u"},
             Case{KOVAAPI_EnableLTI, "462:02f9 463:5018 u", "462:0000 463:0000 u"},
             Case{KOVAAPI_EnableCTICb, "464:02f9 465:5018 u", "464:0000 465:0000 u"},
             Case{KOVAAPI_EnableCTICr, "466:02f9 467:5018 u", "466:0000 467:0000 u"},
             Case{KOVAAPI_EnableSurfaceFilter, "471:0001 u", "471:0000 u"},
             Case{KOVAAPI_EnableBWExtension, "4af:0001 u", "4af:0000 u"},
         }) {
        for (const auto& [on, expected] : {std::pair{1, c.on}, {2, c.on}, {0, c.off}}) {
            EXPECT_EQ(c.enable(static_cast<std::uint8_t>(on)), KOVA_NO_ERROR);
            EXPECT_EQ(Short(), expected);
        }
    }
}

TEST_F(KovaFilters, Values) {
    KOVAAPI_SetPeakingFilterGain(64);
    KOVAAPI_SetPeakingCoringValue(0xFF);
    KOVAAPI_SetPeakingSaturationValue(0xFF);
    EXPECT_EQ(Short(), "461:4000 u 460:f000 u 460:ff00 u");
    sim::KovaRegister(0x53A) = 0xFFFF;
    EXPECT_EQ(KOVAAPI_SetSurfaceFilterThres(5), KOVA_NO_ERROR);
    EXPECT_EQ(Short(), "53a:3fff 53a:05ff 53a:05c5 u");
}

TEST_F(KovaFilters, FrontNoiseReductionFollowsTheDecimation) {
    const char* const kOff = "42a:0000 u 42a:0000 u";
    const char* const kNarrow = "42a:0001 u 42a:0009 u 42c:0160 42d:010e 42e:0061 42f:0fe1 u "
                                "422:0170 423:011f 424:006d 425:0fda 426:0fb7 427:0fea 428:0020 429:0022 u";
    const char* const kWide = "42a:0001 u 42a:0009 u 42c:024e 42d:0157 42e:0fde 42f:0fa4 u "
                              "422:023c 423:0152 424:0fdd 425:0f97 426:0021 427:0036 428:0fe3 429:0fe2 u";
    struct Case {
        unsigned state;
        std::uint16_t viewW;
        const char* expected;
    };
    for (const Case& c : {
             Case{0, 720, kOff},
             Case{DEINT_DECIMATING | DEINT_HD_DOUBLE, 720, kOff},
             Case{0xFF & ~DEINT_DECIMATING, 720, kOff},
             Case{0xFF & ~DEINT_HD_DOUBLE, 1023, kNarrow},
             Case{DEINT_DECIMATING, 1024, kWide},
         }) {
        sim::KovaRegister(0x42A) = 0;
        stKOVADeint.state = static_cast<std::uint8_t>(c.state);
        stKOVAViewWIN.w = c.viewW;
        EXPECT_EQ(KOVAAPI_SetFrontNRFilterInHD(), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.expected) << c.state;
    }
}

} // namespace
