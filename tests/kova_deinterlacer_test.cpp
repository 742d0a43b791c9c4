#include "tests/kova_driver.h"

#include <functional>

namespace {

class KovaDeinterlacer : public KovaDriver {
protected:
    static void ClearRegisters() {
        for (std::uint16_t addr = 0x500; addr < 0x540; ++addr) {
            sim::KovaRegister(addr) = 0;
        }
    }

    /// What each of the setters writes into empty registers when its argument is all ones.
    template <typename Value>
    static std::string FieldsOf(std::initializer_list<std::uint8_t (*)(Value)> setters) {
        std::string fields;
        for (const auto set : setters) {
            ClearRegisters();
            EXPECT_EQ(set(static_cast<Value>(~0U)), KOVA_NO_ERROR);
            fields += Short() + ' ';
        }
        return fields;
    }

    /// All that the driver keeps of the caller's choices: uses, V2TAB, choices.
    static std::uint32_t Kept() {
        return unsigned{stKOVADeint.nrUse} << 24 | unsigned{stKOVADeint.v2tab} << 16 | stKOVADeint.choices;
    }

    void SetUp() override {
        KovaDriver::SetUp();
        src.flags = VIDFLAG_PORT_A | VIDFLAG_8BIT;
        src.stActive = {696, 480, 0, 0};
    }

    SrcVideoInfo src{};
};

TEST_F(KovaDeinterlacer, DefaultImageAndChoices) {
    stKOVADeint.state = 0xFF;
    EXPECT_EQ(KOVAAPI_LoadDeintData(), KOVA_NO_ERROR);
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
    stKOVADeint.state = DEINT_NR_ON;
    KOVAAPI_SetDeintYMode(1);
    KOVAAPI_SetDeintYMode(2);
    EXPECT_EQ(Short(), "500:4000 402:0000 u 500:8000 402:8000 u");
    KOVAAPI_SetDeintPDCurMotionThres(41);
    KOVAAPI_SetDeintPDCurMotionThres(40);
    EXPECT_EQ(Short(), "527:0029 527:00a9 u 527:00a8 527:0028 u");
    KOVAAPI_SetDeintFastMotion(2);
    KOVAAPI_SetDeintFastMotion(1);
    KOVAAPI_SetDeintFastMotion(0);
    EXPECT_EQ(Short(), "503:8000 u 501:2000 u 503:0000 u 501:2000 u 503:0000 u 501:0000 u");
    KOVAAPI_EnableDeintHDMode(2);
    EXPECT_EQ(stKOVADeint.state, DEINT_NR_ON | DEINT_HD_FORCED);
    KOVAAPI_EnableDeintHDMode(0);
    EXPECT_EQ(stKOVADeint.state, DEINT_NR_ON);
}

TEST_F(KovaDeinterlacer, AnOverriddenSetterWritesTheOverrideAndKeepsTheChoice) {
    constexpr std::uint8_t kNROff = 0;
    struct Case {
        std::function<std::uint8_t(std::uint8_t)> set;
        std::uint8_t value, state;
        std::uint32_t kept;
        const char *written, *overridden;
    };
    for (const Case& c : {
             Case{KOVAAPI_SetDeintCMode, 3, DEINT_HD_FORCED, 0xC0, "528:00c0 u", "528:0040 u"},
             Case{KOVAAPI_SetDeintCurMotionThres, 0x5A, DEINT_HD_FORCED, 0x5A00, "500:005a u", "500:00ff u"},
             Case{KOVAAPI_EnableDeintFastMotion, 2, DEINT_HD_FORCED, 8, "503:8000 u", "503:0000 u"},
             Case{KOVAAPI_EnableDeintBorder, 2, DEINT_HD_FORCED, 4, "508:0008 u", "508:0000 u"},
             Case{KOVAAPI_EnableDeintCCS, 2, DEINT_HD_FORCED, 2, "52a:0040 u", "52a:0000 u"},
             Case{KOVAAPI_EnableDeintCCS, 2, DEINT_DECIMATING, 2, "52a:0040 u", "52a:0000 u"},
             Case{KOVAAPI_SetDeintFilmMode, 1, DEINT_HD_FORCED, 0x10, "50b:5000 u", "50b:0000 u"},
             Case{KOVAAPI_SetDeintFilmMode, 2, DEINT_HD_FORCED, 0x20, "50b:6000 u", "50b:0000 u"},
             Case{KOVAAPI_SetDeintFilmMode, 3, DEINT_HD_FORCED, 0x30, "50b:4000 u", "50b:0000 u"},
             Case{KOVAAPI_SetDeintFilmMode, 4, DEINT_HD_FORCED, 0x40, "50b:0000 u", "50b:0000 u"},
             Case{KOVAAPI_EnableDeintV2TAB, 2, DEINT_V2TAB_FORCED, 0x10000, "53d:0080 u", "53d:0080 u"},
             Case{KOVAAPI_SetDeintCurMotionNRSel, 2, kNROff, 0x80000000, "500:2000 u", "500:3000 u"},
             Case{KOVAAPI_EnableDeintCurMotionNRUse, 2, kNROff, 0x20000000, "524:8000 513:0010 u",
                  "524:0000 513:0000 u"},
             Case{KOVAAPI_EnableNextMotionNRUse, 2, kNROff, 0x10000000, "529:0080 u", "529:0000 u"},
             Case{KOVAAPI_EnableDeintFastHistoryUse, 2, kNROff, 0x8000000, "53d:0002 u", "53d:0000 u"},
             Case{KOVAAPI_EnableDeintBorderNRUse, 2, kNROff, 0x4000000, "53d:0008 u", "53d:0000 u"},
             Case{KOVAAPI_EnableDeintSlowMotionNRUse, 2, kNROff, 0x2000000, "524:4000 u", "524:0000 u"},
             Case{KOVAAPI_EnableDeintStillMotionNRUse, 2, kNROff, 0x1000000, "524:2000 u", "524:0000 u"},
         }) {
        ClearRegisters();
        // In every state but its own a setting is the caller's.
        stKOVADeint = {};
        stKOVADeint.state = static_cast<std::uint8_t>((0x1F & ~c.state) | DEINT_NR_ON);
        if (c.state == DEINT_HD_FORCED || c.state == DEINT_DECIMATING) {
            stKOVADeint.state = DEINT_NR_ON | DEINT_V2TAB_FORCED | DEINT_HD_DOUBLE;
        }
        EXPECT_EQ(c.set(c.value), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.written);
        EXPECT_EQ(Kept(), c.kept) << c.written;
        for (const std::uint8_t value : {std::uint8_t{0}, c.value}) {
            ClearRegisters();
            stKOVADeint = {c.state, 0, 0x8000, 0};
            EXPECT_EQ(c.set(value), KOVA_NO_ERROR);
            EXPECT_EQ(Short(), c.overridden);
            EXPECT_EQ(Kept(), 0x8000U) << c.overridden;
        }
    }
}

TEST_F(KovaDeinterlacer, NoiseReductionAppliesItsUsesAgain) {
    const char* const kOn = "52a:0080 500:2000 u 524:8000 513:0010 u 529:0080 u 53d:0002 u 53d:000a u 524:c000 u "
                            "524:e000 u u";
    const char* const kOff = "52a:0000 500:3000 u 524:0000 513:0000 u 529:0000 u 53d:0000 u 53d:0000 u 524:0000 u "
                             "524:0000 u u";
    struct Case {
        std::uint8_t on;
        unsigned state;
        std::uint32_t kept;
        const char* written;
    };
    for (const Case& c : {
             Case{2, 0, 0xBF00107F, kOn},
             Case{2, DEINT_V2TAB_FORCED | DEINT_HD_DOUBLE, 0xBF00107F, kOn},
             Case{0, DEINT_NR_ON, 0xBF00107E, kOff},
             Case{0, DEINT_NR_ON | DEINT_HD_FORCED, 0xBF00107F, kOff},
             Case{1, DEINT_NR_ON | DEINT_DECIMATING, 0xBF00107F, kOff},
         }) {
        KOVAAPI_LoadDeintData();
        ClearRegisters();
        Transfers();
        stKOVADeint.state = static_cast<std::uint8_t>(c.state);
        EXPECT_EQ(KOVAAPI_EnableDeintNR(c.on), KOVA_NO_ERROR);
        EXPECT_EQ(Short(), c.written);
        EXPECT_EQ(Kept(), c.kept);
        EXPECT_EQ(stKOVADeint.state, (c.state & ~1U) | (c.written == kOn ? 1U : 0U));
    }
}

TEST_F(KovaDeinterlacer, ModeForThePicture) {
    constexpr std::uint16_t k8Bit = VIDFLAG_8BIT;
    constexpr std::uint16_t kProgressive = VIDFLAG_PROGRESSIVE;
    struct Case {
        std::uint16_t flags, dstW, viewH;
        unsigned state, expected; // of the state byte
    };
    for (const Case& c : {
             Case{k8Bit, 1024, 1024, DEINT_HD_FORCED, DEINT_NR_ON},
             Case{k8Bit, 1025, 1024, DEINT_NR_ON, DEINT_HD_FORCED},
             Case{0, 768, 1024, DEINT_HD_FORCED, DEINT_NR_ON},
             Case{0, 769, 1024, DEINT_NR_ON, DEINT_HD_FORCED},
             Case{0, 696, 1024, DEINT_NR_ON | DEINT_DECIMATING, DEINT_DECIMATING},
             Case{0, 696, 240, DEINT_V2TAB_FORCED, DEINT_NR_ON},
             Case{0, 696, 239, 0, DEINT_NR_ON | DEINT_V2TAB_FORCED},
             Case{kProgressive, 696, 239, DEINT_V2TAB_FORCED | DEINT_HD_DOUBLE, DEINT_NR_ON | DEINT_HD_DOUBLE},
         }) {
        KOVAAPI_LoadDeintData();
        src.flags = c.flags;
        stKOVADstWIN = {c.dstW, 481, 0, 0};
        stKOVAViewWIN.h = c.viewH;
        stKOVADeint.state = static_cast<std::uint8_t>(c.state);
        EXPECT_EQ(KOVAAPI_SetDeinterMode(&src), KOVA_NO_ERROR);
        EXPECT_EQ(stKOVADeint.state, c.expected) << c.dstW << ' ' << c.viewH;
        EXPECT_EQ(Kept(), 0xBF00107F);
    }
}

TEST_F(KovaDeinterlacer, ModeJournal) {
    KOVAAPI_LoadDeintData();
    ClearRegisters();
    Transfers();
    stKOVADstWIN = {1280, 480, 0, 0};
    stKOVAViewWIN.h = 1024;
    KOVAAPI_SetDeinterMode(&src);
    EXPECT_EQ(Short(), "529:0800 u 53e:4000 u 528:0040 u 500:00ff u 503:0000 u 508:0000 u 50b:0000 u 52a:0000 u "
                       "52a:0000 500:30ff u 524:0000 513:0000 u 529:0800 u 53d:0000 u 53d:0000 u 524:0000 u "
                       "524:0000 u u 53d:0000 u 518:0168 u");
    stKOVADstWIN.w = 720;
    stKOVAViewWIN.h = 200;
    KOVAAPI_SetDeinterMode(&src);
    EXPECT_EQ(Short(), "529:0000 u 53e:0000 u 528:0040 u 500:3010 u 503:8000 u 508:0008 u 50b:4000 u 52a:0040 u "
                       "52a:00c0 500:2010 u 524:8000 513:0010 u 529:0080 u 53d:0002 u 53d:000a u 524:c000 u "
                       "524:e000 u u 53d:008a u 518:0168 u");
}

} // namespace
