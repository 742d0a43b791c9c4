#include "tests/kova_driver.h"

#include <functional>

namespace {

struct Setter {
    const char* name;
    std::function<std::uint8_t(std::uint16_t)> set;
};

// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): the log needs the name as text
#define NAMED(name)                                                                                                    \
    Setter { #name, KOVAAPI_##name }

class KovaDeinterlacer : public KovaDriver {
protected:
    static void Fill(std::uint16_t value) { KovaDriver::Fill(value, 0x500, 0x53F); }

    /// Loads the defaults and sets the registers to 0.
    static void Load() {
        KOVAAPI_LoadDeintData();
        Fill(0);
        Transfers();
    }

    /// The choices of the caller that the driver stores, in one number: noise reduction uses, V2TAB, all other choices.
    static unsigned Kept() {
        return unsigned{stKOVADeint.nrUse} << 24 | unsigned{stKOVADeint.v2tab} << 16 | stKOVADeint.choices;
    }
    /// Logs a call, what the driver stores, and the state.
    void NoteKept(std::uint8_t result, const char* name) {
        Note(result, name, "kept", Kept(), "state", stKOVADeint.state, "wrote");
    }

    SrcVideoInfo src{};
};

TEST_F(KovaDeinterlacer, SetterWritesOnlyItsField) {
    stKOVADeint.state = 0xFF;
    NoteKept(KOVAAPI_LoadDeintData(), "defaults");
    // clang-format off
    for (const Setter& setter : {
         NAMED(EnableDeintHD3DAdp), NAMED(EnableDeintCurMotionMedian),
        NAMED(EnableDeintNextMotion), NAMED(EnableDeintNextMotionMedian), NAMED(EnableDeintFastUpdateMedian),
        NAMED(EnableDeintFastMotionMedian), NAMED(EnableDeintCurPdMotion), NAMED(EnableDeintCCSMedian),
        NAMED(EnableDeintBadEdit), NAMED(EnableDeintNRAdapt), NAMED(EnableDeintEdge2nd), NAMED(EnableDeintHDMode),
        NAMED(SetDeintCurMotionExpander), NAMED(SetDeintNextMotionNRSel), NAMED(SetDeintNextMotionExpander),
        NAMED(SetDeintNextMotionThres), NAMED(SetDeintFastHistoryThres), NAMED(SetDeintSlowMotionThres),
        NAMED(SetDeintCurPdMotionThres), NAMED(SetDeintBorderThres), NAMED(SetDeintStillMotionThres),
        NAMED(SetDeintStillFieldCntThres), NAMED(SetDeintChromaMotionThres), NAMED(SetDeintChromaCurMotionExpander),
        NAMED(SetDeintChromaNextMotionExpander), NAMED(SetDeintFilm32FieldCntThres),
        NAMED(SetDeintFilm32MotionThres), NAMED(SetDeintFilm22FieldCntThres), NAMED(SetDeintFilm22MotionThres),
        NAMED(SetDeintBadEditMotionThres), NAMED(SetDeintCaptionYMode), NAMED(SetDeintCaptionCMode),
        NAMED(SetDeintCaptionMotionThres), NAMED(SetDeintCaptionLineCntThres), NAMED(SetDeintCaptionVposiThres),
        NAMED(SetDeintNRConditionLevel), NAMED(SetDeintNRFactorLevel), NAMED(SetDeintEdgeMode)}) {
        // clang-format on
        log << setter.name << ':';
        for (const auto& [old, value] : {std::pair{0, 0xFFFF}, {0, 1}, {0, 2}, {0xFFFF, 0}}) {
            Fill(static_cast<std::uint16_t>(old));
            EXPECT_EQ(setter.set(static_cast<std::uint16_t>(value)), 0);
            log << ' ' << value << " wrote " << Packed();
        }
        log << '\n';
    }
}

TEST_F(KovaDeinterlacer, SetterWritesSeveralFields) {
    for (const std::uint16_t mode : Words{1, 2, 6}) {
        Note(KOVAAPI_SetDeintYMode(mode), "luma mode", mode);
    }
    for (const std::uint16_t threshold : Words{41, 40, 168}) {
        Note(KOVAAPI_SetDeintPDCurMotionThres(threshold), "threshold", threshold);
    }
    for (const std::uint16_t motion : Words{3, 2, 1, 0}) {
        Note(KOVAAPI_SetDeintFastMotion(motion), "fast motion", motion);
    }
    for (const std::uint16_t mode : Words{0, 1, 2, 3, 4, 5}) {
        Note(KOVAAPI_SetDeintFilmMode(mode), "film mode", mode);
    }
    Load();
    NoteKept(KOVAAPI_EnableDeintNR(0), "no NR");
    stKOVADeint.nrUse = 0x95; // different uses
    NoteKept(KOVAAPI_EnableDeintNR(1), "NR again");
    for (const DeintStateBit state : {DEINT_HD_FORCED, DEINT_DECIMATING}) {
        stKOVADeint.state = state;
        NoteKept(KOVAAPI_EnableDeintNR(0), "no NR, overridden: the choice stays");
    }
    stKOVADeint = {};
    NoteKept(KOVAAPI_SetDeintCMode(5), "chroma mode 5: too large for its field");
}

TEST_F(KovaDeinterlacer, OverriddenSetterKeepsCallersChoice) {
    for (const int state :
         {DEINT_NR_ON | DEINT_HD_DOUBLE, DEINT_HD_FORCED + 0, DEINT_DECIMATING + 0, DEINT_V2TAB_FORCED + 0}) {
        // clang-format off
        for (const Setter& setter : {
             NAMED(SetDeintCMode), NAMED(SetDeintCurMotionThres),
            NAMED(EnableDeintFastMotion), NAMED(EnableDeintBorder), NAMED(EnableDeintCCS), NAMED(SetDeintFilmMode),
            NAMED(EnableDeintV2TAB), NAMED(SetDeintCurMotionNRSel), NAMED(EnableDeintCurMotionNRUse),
            NAMED(EnableNextMotionNRUse), NAMED(EnableDeintFastHistoryUse), NAMED(EnableDeintBorderNRUse),
            NAMED(EnableDeintSlowMotionNRUse), NAMED(EnableDeintStillMotionNRUse)}) {
            // clang-format on
            log << setter.name << " in state " << state;
            for (const auto& [old, value] : {std::pair{0, 2}, {0, 1}, {0xFFFF, 0}}) {
                const auto kept = static_cast<std::uint8_t>(old & 0xFF);
                stKOVADeint = {static_cast<std::uint8_t>(state), kept, static_cast<std::uint16_t>(old), kept};
                Fill(static_cast<std::uint16_t>(old));
                EXPECT_EQ(setter.set(static_cast<std::uint16_t>(value)), 0);
                log << ", " << value << " kept " << Kept() << " wrote " << Packed();
            }
            log << '\n';
        }
    }
}

TEST_F(KovaDeinterlacer, ModeFollowsThePicture) {
    struct Case {
        std::uint16_t flags, dstW, viewH;
        std::uint8_t state;
    };
    // clang-format off
    for (const Case& c : {Case{VIDFLAG_8BIT, 1024, 1024, 0x02}, Case{VIDFLAG_8BIT, 1025, 1024, 0x01},
                          Case{0, 768, 1024, 0x02}, Case{0, 769, 1024, 0x01}, Case{0, 696, 1024, 0x09},
                          Case{0, 696, 240, 0x04}, Case{0, 696, 239, 0x00}, Case{VIDFLAG_PROGRESSIVE, 696, 239, 0x14}}) {
        // clang-format on
        Load();
        src.flags = c.flags;
        src.stActive.h = 480;
        stKOVADstWIN = {c.dstW, 481, 0, 0};
        stKOVAViewWIN = {c.dstW, c.viewH, 0, 0};
        stKOVADeint.state = c.state;
        log << stKOVADstWIN << " shown as " << stKOVAViewWIN << " flags " << c.flags << " was " << int{c.state};
        NoteKept(KOVAAPI_SetDeinterMode(&src), "\n   ");
    }
    // A large picture, then a small one, without new defaults between them.
    src.flags = VIDFLAG_8BIT;
    for (const auto& [width, viewH] : {std::pair{1280, 1024}, {720, 200}}) {
        stKOVADstWIN = {static_cast<std::uint16_t>(width), 480, 0, 0};
        stKOVAViewWIN.h = static_cast<std::uint16_t>(viewH);
        NoteKept(KOVAAPI_SetDeinterMode(&src), width > 1024 ? "large" : "small");
    }
}

} // namespace
