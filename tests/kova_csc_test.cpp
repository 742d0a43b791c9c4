#include "kova/api.h"
#include "tests/kova_driver.h"

namespace {

class KovaCsc : public KovaDriver {
protected:
    SrcVideoInfo src{.flags = VIDFLAG_YCBCR};
    // clang-format off
    OutVideoInfo out{.brightness = 128, .contrast = 128, .saturation = 128, .hue = 128,
                     .offsetG = 128, .offsetB = 128, .offsetR = 128};
    // clang-format on

    static std::string Written(const char* addr, const CscSet& set) {
        std::string text = addr;
        for (const std::int16_t value : set) {
            std::array<char, 8> word{};
            std::snprintf(word.data(), word.size(), " %04x", value & 0xFFFFU);
            text += word.data() + (text.ends_with(':') ? 1 : 0);
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
    EXPECT_EQ(std::pair(KOVA_CscCosHue[22], KOVA_CscCosHue[234]), std::pair(std::int16_t{663}, std::int16_t{663}));
    EXPECT_EQ(std::tuple(KOVA_CscSinHue[42], KOVA_CscSinHue[124], KOVA_CscSinHue[132], KOVA_CscSinHue[214]),
              std::tuple(-663, -33, 33, 663));
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
        EXPECT_EQ(Packed(), Written("40a:", c.in) + ((c.src & kYCbCr) != 0 ? " 01fc u" : " 01f8 u"));
        EXPECT_EQ(KOVAAPI_SetCSCOutVideo(&src, &out), KOVA_NO_ERROR);
        // Neutral controls change nothing but the form of the computed words.
        CscSet expected = c.outSet;
        for (std::size_t i = 0; i < 10; ++i) {
            expected[i] = std::int16_t(expected[i] & 0xFFF);
        }
        EXPECT_EQ(Packed(), Written("472:", expected) + " 01fc u");
    }
}

TEST_F(KovaCsc, ACallersSetComesFirst) {
    const CscSet own{1, -2, 3, 4, 5, 6, 7, 8, 9, -10, 11, 12, 13, 14, -15};
    EXPECT_EQ(KOVAAPI_SetSrcCSCCoef(&src, &out, &own), KOVA_NO_ERROR);
    EXPECT_EQ(src.pCscCoef, &own);
    EXPECT_EQ(Packed(), Written("40a:", own) + " 01fc u");
    out.flags = VIDFLAG_YCBCR;
    EXPECT_EQ(KOVAAPI_SetOutCSCCoef(&src, &out, &own), KOVA_NO_ERROR);
    EXPECT_EQ(out.pCscCoef, &own);
    CscSet expected = own;
    expected[1] &= 0xFFF;
    expected[9] &= 0xFFF;
    EXPECT_EQ(Packed(), Written("472:", expected) + " 01fc u");
    KOVAAPI_SetSrcCSCCoef(&src, &out, nullptr);
    EXPECT_EQ(Packed(), Written("40a:", KOVA_CscBypass_StdRange) + " 01fc u");
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
    // clang-format off
    for (const Case& c : {
             Case{0, nullptr, {0, 255, 255, 0, 0, 255, 1},
                  "472:04a3 0206 0d08 04a3 0404 06f6 04a3 0a7e 032d 0ec0 fe00 fe00 0f00 00fe 0f02 01fc u"},
             Case{0, nullptr, {255, 3, 200, 255, 128, 128, 128},
                  "472:000d 0d31 0fc4 000d 0332 0a90 000d 044c 0287 00be fe00 fe00 0000 0000 0000 01fc u"},
             Case{VIDFLAG_YCBCR, nullptr, {200, 64, 77, 22, 1, 2, 3},
                  "472:0100 0000 0000 0000 00c7 00ea 0000 0f15 00c7 0050 fe00 fe00 0040 0200 0200 01fc u"},
             // Everything computed is limited to 12 bits.
             Case{VIDFLAG_YCBCR, &extreme, {255, 255, 255, 214, 0, 0, 0},
                  "472:07ff 0800 0800 07ff 0800 0800 07ff 0800 0800 07ff 0005 fffa 0007 0008 0009 01fc u"},
         }) {
        // clang-format on
        out.flags = c.outFlags;
        out.pCscCoef = c.own;
        // Each control alone stores its value and writes a whole set; the last one's is that of all.
        for (std::size_t i = 0; const auto set : {KOVAAPI_SetRGBOffsetG, KOVAAPI_SetRGBOffsetB, KOVAAPI_SetRGBOffsetR,
                                                  KOVAAPI_SetPictureBrightness, KOVAAPI_SetPictureContrast,
                                                  KOVAAPI_SetPictureSaturation, KOVAAPI_SetPictureHue}) {
            Journal();
            EXPECT_EQ(set(&src, &out, c.controls[(i++ + 4) % 7]), KOVA_NO_ERROR);
        }
        EXPECT_EQ(Packed(), c.writes);
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
