#include "kova/api.h"
#include "tests/kova_driver.h"

namespace {

class KovaCsc : public KovaDriver {
protected:
    SrcVideoInfo src{.flags = VIDFLAG_YCBCR};
    OutVideoInfo out{.brightness = 128,
                     .contrast = 128,
                     .saturation = 128,
                     .hue = 128,
                     .offsetG = 128,
                     .offsetB = 128,
                     .offsetR = 128};

    static std::string Written(unsigned addr, const CscSet& set) {
        std::string text;
        for (unsigned i = 0; i < set.size(); ++i) {
            std::array<char, 16> word{};
            std::snprintf(word.data(), word.size(), "%03x:%04x ", addr + i, set[i] & 0xFFFFU);
            text += word.data();
        }
        return text;
    }
};

// ---- Tables ----

using Matrix = std::array<double, 9>;

Matrix Product(const CscSet& a, const CscSet& b) {
    Matrix product{};
    for (std::size_t i = 0; i < 9; ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            product[i] += a[i / 3 * 3 + k] / 512.0 * b[k * 3 + i % 3] / 512.0;
        }
    }
    return product;
}

TEST_F(KovaCsc, ConversionsThereAndBackAreOne) {
    for (const auto& [there, back] : {std::pair{KOVA_CscRGBtoYUV_SD_FullRange, KOVA_CscYUVtoRGB_SD_FullRange},
                                      {KOVA_CscRGBtoYUV_HD_FullRange, KOVA_CscYUVtoRGB_HD_FullRange},
                                      {KOVA_CscSDtoHD_StdRange, KOVA_CscHDtoSD_StdRange},
                                      {KOVA_CscBypass_StdRange, KOVA_CscBypass_StdRange}}) {
        const Matrix product = Product(back, there);
        // Between the definitions only the chroma rows are each other's inverse.
        for (std::size_t i = there == KOVA_CscSDtoHD_StdRange ? 3 : 0; i < product.size(); ++i) {
            EXPECT_NEAR(product[i], i % 4 == 0 ? 1 : 0, 0.012);
        }
        for (std::size_t channel = 0; channel < 3; ++channel) { // what one adds after, the other takes off before
            EXPECT_EQ(there[12 + channel], -back[9 + channel]);
        }
    }
}

TEST_F(KovaCsc, GreyStaysGrey) {
    for (const CscSet& set : {KOVA_CscRGBtoYUV_SD_FullRange, KOVA_CscRGBtoYUV_HD_FullRange,
                              KOVA_CscRGBtoYUV_SD_StdRange, KOVA_CscRGBtoYUV_HD_StdRange}) {
        const bool full = set[12] != 0; // full-range RGB has 255 / 219 of the video levels' range
        EXPECT_EQ(set[0] + set[1] + set[2], full ? 440 : 512);
        EXPECT_NEAR(set[3] + set[4] + set[5], 0, 1);
        EXPECT_NEAR(set[6] + set[7] + set[8], 0, 1);
        EXPECT_EQ(set[4], full ? 225 : 262);
        EXPECT_EQ(set[8], full ? 225 : 262);
    }
}

TEST_F(KovaCsc, HueTurnsByUpToSixtyDegrees) {
    // By turning a vector in steps of a 128th of 60 degrees; some emulators cannot run the C library's cosine.
    constexpr double kStepCos = 0.9999665339174011;
    constexpr double kStepSin = 0.008181139603937128;
    constexpr double kSin60 = 0.8660254037844386;
    const auto rounded = [](double value) { return static_cast<int>(value < 0 ? value - 0.5 : value + 0.5); };
    double cosine = 0.5;
    double sine = -kSin60;
    for (std::size_t hue = 0; hue < 256; ++hue) {
        // Six entries stand one beside the rounding rule.
        const bool cosBeside = hue == 22 || hue == 234;
        const bool sinBeside = hue == 42 || hue == 124 || hue == 132 || hue == 214;
        EXPECT_EQ(KOVA_CscCosHue[hue] != rounded(1024 * cosine), cosBeside) << hue;
        EXPECT_EQ(KOVA_CscSinHue[hue] != rounded(1024 * sine), sinBeside) << hue;
        const double turned = cosine * kStepCos - sine * kStepSin;
        sine = sine * kStepCos + cosine * kStepSin;
        cosine = turned;
    }
    EXPECT_EQ(KOVA_CscCosHue[22], 663);
    EXPECT_EQ(KOVA_CscCosHue[234], 663);
    EXPECT_EQ(KOVA_CscSinHue[42], -663);
    EXPECT_EQ(KOVA_CscSinHue[124], -33);
    EXPECT_EQ(KOVA_CscSinHue[132], 33);
    EXPECT_EQ(KOVA_CscSinHue[214], 663);
}

// ---- Choice ----

TEST_F(KovaCsc, SetsFollowBothRecords) {
    constexpr std::uint16_t kYCbCr = VIDFLAG_YCBCR;
    constexpr std::uint16_t kHd = VIDFLAG_HD;
    struct Case {
        std::uint16_t src, out;
        const CscSet &in, &outSet;
    };
    for (const Case& c : {
             Case{0, 0, KOVA_CscRGBtoYUV_SD_FullRange, KOVA_CscYUVtoRGB_SD_FullRange},
             Case{0, kHd, KOVA_CscRGBtoYUV_SD_FullRange, KOVA_CscYUVtoRGB_SD_FullRange},
             Case{0, kYCbCr, KOVA_CscRGBtoYUV_SD_StdRange, KOVA_CscBypass_StdRange},
             Case{kHd, 0, KOVA_CscRGBtoYUV_HD_FullRange, KOVA_CscYUVtoRGB_HD_FullRange},
             Case{kHd, kYCbCr, KOVA_CscRGBtoYUV_HD_StdRange, KOVA_CscHDtoSD_StdRange},
             Case{kYCbCr, 0, KOVA_CscBypass_StdRange, KOVA_CscYUVtoRGB_SD_FullRange},
             Case{kYCbCr, kYCbCr | kHd, KOVA_CscBypass_StdRange, KOVA_CscSDtoHD_StdRange},
             Case{kYCbCr | kHd, kYCbCr | kHd, KOVA_CscBypass_StdRange, KOVA_CscBypass_StdRange},
             Case{kYCbCr | kHd, kHd, KOVA_CscBypass_StdRange, KOVA_CscYUVtoRGB_HD_FullRange},
         }) {
        SCOPED_TRACE(testing::Message() << c.src << " to " << c.out);
        src.flags = c.src;
        out.flags = c.out;
        EXPECT_EQ(KOVAAPI_SetCSCSrcVideo(&src, &out), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), Written(0x40A, c.in) + ((c.src & kYCbCr) != 0 ? "419:01fc u" : "419:01f8 u"));
        EXPECT_EQ(KOVAAPI_SetCSCOutVideo(&src, &out), KOVA_NO_ERROR);
        // Neutral controls change nothing but the form of the computed words.
        CscSet expected = c.outSet;
        for (std::size_t i = 0; i < 10; ++i) {
            expected[i] = std::int16_t(expected[i] & 0xFFF);
        }
        EXPECT_EQ(Short(), Written(0x472, expected) + "481:01fc u");
    }
}

TEST_F(KovaCsc, ACallersSetComesFirst) {
    const CscSet own{1, -2, 3, 4, 5, 6, 7, 8, 9, -10, 11, 12, 13, 14, -15};
    EXPECT_EQ(KOVAAPI_SetSrcCSCCoef(&src, &out, &own), KOVA_NO_ERROR);
    EXPECT_EQ(src.pCscCoef, &own);
    EXPECT_EQ(Short(), Written(0x40A, own) + "419:01fc u");
    out.flags = VIDFLAG_YCBCR;
    EXPECT_EQ(KOVAAPI_SetOutCSCCoef(&src, &out, &own), KOVA_NO_ERROR);
    EXPECT_EQ(out.pCscCoef, &own);
    CscSet expected = own;
    expected[1] &= 0xFFF;
    expected[9] &= 0xFFF;
    EXPECT_EQ(Short(), Written(0x472, expected) + "481:01fc u");
    KOVAAPI_SetSrcCSCCoef(&src, &out, nullptr);
    EXPECT_EQ(Short(), Written(0x40A, KOVA_CscBypass_StdRange) + "419:01fc u");
}

// ---- Picture controls ----

TEST_F(KovaCsc, PictureControlsAreFoldedIntoTheSet) {
    const CscSet extreme{32767, -32768, -32768, 32767, -32768, -32768, 32767, -32768, -32768, 32767, 5, -6, 7, 8, 9};
    struct Case {
        std::uint16_t outFlags;
        const CscSet* own;
        std::array<std::uint8_t, 7> controls; // brightness, contrast, saturation, hue, offsets G, B, R
        const char* writes;
    };
    for (const Case& c : {
             Case{0,
                  nullptr,
                  {0, 255, 255, 0, 0, 255, 1},
                  "472:04a3 473:0206 474:0d08 475:04a3 476:0404 477:06f6 478:04a3 479:0a7e 47a:032d "
                  "47b:0ec0 47c:fe00 47d:fe00 47e:0f00 47f:00fe 480:0f02 481:01fc u"},
             Case{0,
                  nullptr,
                  {255, 3, 200, 255, 128, 128, 128},
                  "472:000d 473:0d31 474:0fc4 475:000d 476:0332 477:0a90 478:000d 479:044c 47a:0287 "
                  "47b:00be 47c:fe00 47d:fe00 47e:0000 47f:0000 480:0000 481:01fc u"},
             Case{VIDFLAG_YCBCR,
                  nullptr,
                  {200, 64, 77, 22, 1, 2, 3},
                  "472:0100 473:0000 474:0000 475:0000 476:00c7 477:00ea 478:0000 479:0f15 47a:00c7 "
                  "47b:0050 47c:fe00 47d:fe00 47e:0040 47f:0200 480:0200 481:01fc u"},
             // Everything computed is limited to 12 bits.
             Case{VIDFLAG_YCBCR,
                  &extreme,
                  {255, 255, 255, 214, 0, 0, 0},
                  "472:07ff 473:0800 474:0800 475:07ff 476:0800 477:0800 478:07ff 479:0800 47a:0800 "
                  "47b:07ff 47c:0005 47d:fffa 47e:0007 47f:0008 480:0009 481:01fc u"},
         }) {
        out.flags = c.outFlags;
        out.pCscCoef = c.own;
        // Each control alone stores its value and writes a whole set; the last one's is that of all.
        for (std::size_t i = 0; const auto set : {KOVAAPI_SetRGBOffsetG, KOVAAPI_SetRGBOffsetB, KOVAAPI_SetRGBOffsetR,
                                                  KOVAAPI_SetPictureBrightness, KOVAAPI_SetPictureContrast,
                                                  KOVAAPI_SetPictureSaturation, KOVAAPI_SetPictureHue}) {
            Journal();
            EXPECT_EQ(set(&src, &out, c.controls[(i++ + 4) % 7]), KOVA_NO_ERROR);
        }
        EXPECT_EQ(Short(), c.writes);
    }
}

TEST_F(KovaCsc, RgbOffsetsAreForRgbOutputs) {
    out.flags = VIDFLAG_YCBCR;
    for (const auto set : {KOVAAPI_SetRGBOffsetG, KOVAAPI_SetRGBOffsetB, KOVAAPI_SetRGBOffsetR}) {
        EXPECT_EQ(set(&src, &out, 1), KOVA_NO_ERROR);
    }
    EXPECT_EQ(Journal(), "");
    EXPECT_EQ(std::tuple(out.offsetG, out.offsetB, out.offsetR), std::tuple(128, 128, 128));
}

} // namespace
