#include "tests/kova_driver.h"

namespace {

class KovaCsc : public KovaDriver {
protected:
    SrcVideoInfo src{.flags = VIDFLAG_YCBCR};
    // clang-format off
    OutVideoInfo out{.brightness = 128, .contrast = 128, .saturation = 128, .hue = 128,
                     .offsetG = 128, .offsetB = 128, .offsetR = 128};
    // clang-format on
};

// 1024 times the cosine and the sine of -60 to 60 degrees. Six entries differ by one from the rounded value. This is
// intended.
TEST_F(KovaCsc, HueRotatesUpToSixtyDegrees) {
    log << std::dec;
    for (const auto& table : {KOVA_CscCosHue, KOVA_CscSinHue}) {
        for (std::size_t hue = 0; hue < table.size(); ++hue) {
            log << table[hue] << (hue % 16 == 15 ? '\n' : ' ');
        }
    }
}

TEST_F(KovaCsc, SetsFollowBothRecords) {
    constexpr std::array<std::uint16_t, 4> kKinds{0, VIDFLAG_HD, VIDFLAG_YCBCR, VIDFLAG_YCBCR | VIDFLAG_HD};
    for (const std::uint16_t from : kKinds) {
        for (const std::uint16_t to : kKinds) {
            src.flags = from;
            out.flags = to;
            Note(KOVAAPI_SetCSCSrcVideo(&src, &out), "input ", from, "to", to);
            Note(KOVAAPI_SetCSCOutVideo(&src, &out), "output", from, "to", to);
        }
    }
    const CscSet own{1, -2, 3, 4, 5, 6, 7, 8, 9, -10, 11, 12, 13, 14, -15};
    for (const CscSet* const coef : {&own, static_cast<const CscSet*>(nullptr)}) {
        Note(KOVAAPI_SetSrcCSCCoef(&src, &out, coef), "input ", coef != nullptr ? "caller's" : "built in");
        Note(KOVAAPI_SetOutCSCCoef(&src, &out, coef), "output", coef != nullptr ? "caller's" : "built in");
        EXPECT_EQ(src.pCscCoef, coef);
        EXPECT_EQ(out.pCscCoef, coef);
    }
}

TEST_F(KovaCsc, PictureControlsChangeTheCoefficients) {
    const CscSet extreme{32767, -32768, -32768, 32767, -32768, -32768, 32767, -32768, -32768, 32767, 5, -6, 7, 8, 9};
    struct Case {
        std::uint16_t outFlags;
        const CscSet* own;
        std::array<std::uint8_t, 7> controls; // offsets G, B, R, brightness, contrast, saturation, hue
    };
    for (const Case& c :
         {Case{0, nullptr, {0, 255, 1, 0, 255, 255, 0}}, Case{0, nullptr, {128, 128, 128, 255, 3, 200, 255}},
          Case{0, &extreme, {1, 2, 3, 128, 128, 128, 128}}, // the RGB offsets replace the offsets of the set
          Case{VIDFLAG_YCBCR, nullptr, {1, 2, 3, 200, 64, 77, 22}},
          Case{VIDFLAG_YCBCR, &extreme, {0, 0, 0, 255, 255, 255, 214}}}) { // the products exceed 32 bits
        out.flags = c.outFlags;
        out.pCscCoef = c.own;
        // Each control stores its value and writes a whole set. For YCbCr the RGB offsets do neither.
        for (std::size_t i = 0; const auto set : {KOVAAPI_SetRGBOffsetG, KOVAAPI_SetRGBOffsetB, KOVAAPI_SetRGBOffsetR,
                                                  KOVAAPI_SetPictureBrightness, KOVAAPI_SetPictureContrast,
                                                  KOVAAPI_SetPictureSaturation, KOVAAPI_SetPictureHue}) {
            Note(set(&src, &out, c.controls[i]), "control", i, "=", c.controls[i]);
            ++i;
        }
        Note(0, "kept", out.offsetG, out.offsetB, out.offsetR, out.brightness, out.contrast, out.saturation, out.hue);
    }
}

} // namespace
