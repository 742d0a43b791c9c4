#include "tests/kova_driver.h"

#include <functional>
#include <sstream>

namespace {

class KovaDeinterlacer : public KovaDriver {
protected:
    /// Loads the defaults and empties the registers.
    static void Load() {
        KOVAAPI_LoadDeintData();
        FillRange(0x500, 0x53F, 0);
        Transfers();
    }

    /// What each of the setters writes into empty registers when its argument is all ones.
    template <typename Value>
    static std::string FieldsOf(std::initializer_list<std::uint8_t (*)(Value)> setters) {
        std::string fields;
        for (const auto set : setters) {
            FillRange(0x500, 0x53F, 0);
            set(static_cast<Value>(~0U));
            fields += Packed() + ' ';
        }
        return fields;
    }

    /// All that the driver keeps of the caller's choices: uses, V2TAB, choices.
    static std::uint32_t Kept() {
        return unsigned{stKOVADeint.nrUse} << 24 | unsigned{stKOVADeint.v2tab} << 16 | stKOVADeint.choices;
    }

    /// What the setters that may be overridden write in a state, a value and what is kept of it each.
    static std::string Guarded(std::uint8_t state, std::uint8_t value) {
        std::ostringstream words;
        for (const auto& set : std::initializer_list<std::function<std::uint8_t(std::uint8_t)>>{
                 KOVAAPI_SetDeintCMode, KOVAAPI_SetDeintCurMotionThres, KOVAAPI_EnableDeintFastMotion,
                 KOVAAPI_EnableDeintBorder, KOVAAPI_EnableDeintCCS, KOVAAPI_SetDeintFilmMode, KOVAAPI_EnableDeintV2TAB,
                 KOVAAPI_SetDeintCurMotionNRSel, KOVAAPI_EnableDeintCurMotionNRUse, KOVAAPI_EnableNextMotionNRUse,
                 KOVAAPI_EnableDeintFastHistoryUse, KOVAAPI_EnableDeintBorderNRUse, KOVAAPI_EnableDeintSlowMotionNRUse,
                 KOVAAPI_EnableDeintStillMotionNRUse}) {
            FillRange(0x500, 0x53F, 0);
            stKOVADeint = {state, 0, 0, 0};
            set(value);
            words << Packed() << std::hex << Kept() << ' ';
        }
        return words.str();
    }

    SrcVideoInfo src{};
};

TEST_F(KovaDeinterlacer, DefaultImageAndChoices) {
    stKOVADeint.state = 0xFF;
    KOVAAPI_LoadDeintData();
    EXPECT_EQ(Checksum(Transfers()), 0x19041B2D);
    EXPECT_EQ(stKOVADeint.state, 1);
    EXPECT_EQ(Kept(), 0xBF00107F);
}

TEST_F(KovaDeinterlacer, PlainSettersWriteTheirOwnField) {
    // clang-format off
    EXPECT_EQ(FieldsOf<std::uint8_t>({
        KOVAAPI_EnableDeintHD3DAdp, KOVAAPI_EnableDeintCurMotionMedian, KOVAAPI_EnableDeintNextMotion,
        KOVAAPI_EnableDeintNextMotionMedian, KOVAAPI_EnableDeintFastUpdateMedian, KOVAAPI_EnableDeintFastMotionMedian,
        KOVAAPI_EnableDeintCurPdMotion, KOVAAPI_EnableDeintCCSMedian, KOVAAPI_EnableDeintBadEdit,
        KOVAAPI_EnableDeintNRAdapt, KOVAAPI_EnableDeintEdge2nd, KOVAAPI_EnableDeintHDMode}),
        "53e:4000 u 500:0400 u 501:2000 u 501:0800 u 53d:0004 u 527:1000 u 527:0080 u 532:8000 u 50b:8000 u "
        "53d:0001 u 504:0800 u 529:0800 u ");
    EXPECT_EQ(FieldsOf<std::uint16_t>({
        KOVAAPI_SetDeintCurMotionExpander, KOVAAPI_SetDeintNextMotionNRSel, KOVAAPI_SetDeintNextMotionExpander,
        KOVAAPI_SetDeintNextMotionThres, KOVAAPI_SetDeintFastHistoryThres, KOVAAPI_SetDeintSlowMotionThres,
        KOVAAPI_SetDeintCurPdMotionThres, KOVAAPI_SetDeintBorderThres, KOVAAPI_SetDeintStillMotionThres,
        KOVAAPI_SetDeintStillFieldCntThres, KOVAAPI_SetDeintChromaMotionThres,
        KOVAAPI_SetDeintChromaCurMotionExpander, KOVAAPI_SetDeintChromaNextMotionExpander,
        KOVAAPI_SetDeintFilm32FieldCntThres, KOVAAPI_SetDeintFilm32MotionThres, KOVAAPI_SetDeintFilm22FieldCntThres,
        KOVAAPI_SetDeintFilm22MotionThres, KOVAAPI_SetDeintBadEditMotionThres, KOVAAPI_SetDeintCaptionYMode,
        KOVAAPI_SetDeintCaptionCMode, KOVAAPI_SetDeintCaptionMotionThres, KOVAAPI_SetDeintCaptionLineCntThres,
        KOVAAPI_SetDeintCaptionVposiThres, KOVAAPI_SetDeintNRConditionLevel, KOVAAPI_SetDeintNRFactorLevel,
        KOVAAPI_SetDeintEdgeMode}),
        "500:0300 u 501:c000 u 526:3000 u 501:00ff u 523:0007 u 502:00ff u 527:007f u 520:007f u 512:0fff u "
        "50f:003f u 528:ff00 u 527:0c00 u 527:0300 u 50b:003f u 50a:0fff u 50f:3f00 u 536:00ff u 521:ff00 u "
        "516:0003 u 528:0003 u 517:ffc0 u 50e:00ff 538:00ff u 518:03ff u 53c:ff00 u 52a:003f 535:003f u "
        "504:0700 u ");
    // clang-format on
}

TEST_F(KovaDeinterlacer, SettersOfMoreThanOneThing) {
    KOVAAPI_SetDeintYMode(1);
    KOVAAPI_SetDeintYMode(2);
    EXPECT_EQ(Packed(), "500:4000 402:0000 u 500:8000 402:8000 u");
    KOVAAPI_SetDeintPDCurMotionThres(41);
    KOVAAPI_SetDeintPDCurMotionThres(40);
    EXPECT_EQ(Packed(), "527:0029 527:00a9 u 527:00a8 527:0028 u");
    KOVAAPI_SetDeintFastMotion(2);
    KOVAAPI_SetDeintFastMotion(1);
    KOVAAPI_SetDeintFastMotion(0);
    EXPECT_EQ(Packed(), "503:8000 u 501:2000 u 503:0000 u 501:2000 u 503:0000 u 501:0000 u");
}

TEST_F(KovaDeinterlacer, AnOverriddenSetterWritesTheOverrideAndKeepsTheChoice) {
    const std::string noUses =
        "500:3000 u0 524:0000 513:0000 u0 529:0000 u0 53d:0000 u0 53d:0000 u0 524:0000 u0 524:0000 u0 ";
    EXPECT_EQ(Guarded(DEINT_NR_ON | DEINT_HD_DOUBLE, 2),
              "528:0080 u80 500:0002 u200 503:8000 u8 508:0008 u4 52a:0040 u2 50b:6000 u20 53d:0080 u10000 "
              "500:2000 u80000000 524:8000 513:0010 u20000000 529:0080 u10000000 53d:0002 u8000000 53d:0008 "
              "u4000000 524:4000 u2000000 524:2000 u1000000 ");
    EXPECT_EQ(Guarded(DEINT_HD_FORCED, 2),
              "528:0040 u0 500:00ff u0 503:0000 u0 508:0000 u0 52a:0000 u0 50b:0000 u0 53d:0080 u10000 " + noUses);
    EXPECT_EQ(Guarded(DEINT_DECIMATING, 2),
              "528:0080 u80 500:0002 u200 503:8000 u8 508:0008 u4 52a:0000 u0 50b:6000 u20 53d:0080 u10000 " + noUses);
    EXPECT_EQ(Guarded(DEINT_V2TAB_FORCED, 0),
              "528:0000 u0 500:0000 u0 503:0000 u0 508:0000 u0 52a:0000 u0 50b:0000 u0 53d:0080 u0 " + noUses);
    FillRange(0x50B, 0x50B, 0);
    for (std::uint16_t mode = 0; mode <= 4; ++mode) {
        KOVAAPI_SetDeintFilmMode(mode);
    }
    EXPECT_EQ(Packed(), "50b:0000 u 50b:5000 u 50b:6000 u 50b:4000 u 50b:0000 u");
    Load();
    KOVAAPI_EnableDeintNR(0);
    EXPECT_EQ(stKOVADeint.state, 0);
    EXPECT_EQ(Kept(), 0xBF00107E);
}

TEST_F(KovaDeinterlacer, ModeForThePicture) {
    struct Case {
        std::uint16_t flags, dstW, viewH;
        std::uint8_t state, expected; // of the state byte
    };
    for (const Case& c : {Case{VIDFLAG_8BIT, 1024, 1024, 0x02, 0x01}, Case{VIDFLAG_8BIT, 1025, 1024, 0x01, 0x02},
                          Case{0, 768, 1024, 0x02, 0x01}, Case{0, 769, 1024, 0x01, 0x02},
                          Case{0, 696, 1024, 0x09, 0x08}, Case{0, 696, 240, 0x04, 0x01}, Case{0, 696, 239, 0x00, 0x05},
                          Case{VIDFLAG_PROGRESSIVE, 696, 239, 0x14, 0x11}}) {
        Load();
        src.flags = c.flags;
        stKOVADstWIN = {c.dstW, 481, 0, 0};
        stKOVAViewWIN.h = c.viewH;
        stKOVADeint.state = c.state;
        KOVAAPI_SetDeinterMode(&src);
        EXPECT_EQ(stKOVADeint.state, c.expected) << c.dstW << ' ' << c.viewH;
        EXPECT_EQ(Kept(), 0xBF00107F);
    }
}

TEST_F(KovaDeinterlacer, ALargePictureAndBack) {
    Load();
    src.flags = VIDFLAG_8BIT;
    src.stActive.h = 480;
    stKOVADstWIN = {1280, 480, 0, 0};
    stKOVAViewWIN.h = 1024;
    KOVAAPI_SetDeinterMode(&src);
    EXPECT_EQ(Packed(), "529:0800 u 53e:4000 u 528:0040 u 500:00ff u 503:0000 u 508:0000 u 50b:0000 u 52a:0000 u "
                        "52a:0000 500:30ff u 524:0000 513:0000 u 529:0800 u 53d:0000 u 53d:0000 u 524:0000 u "
                        "524:0000 u u 53d:0000 u 518:0168 u");
    stKOVADstWIN.w = 720;
    stKOVAViewWIN.h = 200;
    KOVAAPI_SetDeinterMode(&src);
    EXPECT_EQ(Packed(), "529:0000 u 53e:0000 u 528:0040 u 500:3010 u 503:8000 u 508:0008 u 50b:4000 u 52a:0040 u "
                        "52a:00c0 500:2010 u 524:8000 513:0010 u 529:0080 u 53d:0002 u 53d:000a u 524:c000 u "
                        "524:e000 u u 53d:008a u 518:0168 u");
}

} // namespace
