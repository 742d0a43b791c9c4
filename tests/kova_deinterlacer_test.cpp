#include "tests/kova_driver.h"

#include <functional>

namespace {

using Setters = std::vector<std::function<std::uint8_t(std::uint16_t)>>;

class KovaDeinterlacer : public KovaDriver {
protected:
    static void Clear() { Fill(0, 0x500, 0x53F); }

    /// Loads the defaults and empties the registers.
    static void Load() {
        KOVAAPI_LoadDeintData();
        Clear();
        Transfers();
    }

    /// Notes a call, and all that the driver keeps of the caller's choices: uses, V2TAB, choices; and the state.
    void NoteKept(std::uint8_t result, const char* name) {
        const unsigned kept = unsigned{stKOVADeint.nrUse} << 24 | unsigned{stKOVADeint.v2tab} << 16;
        Note(result, name, "kept", kept | stKOVADeint.choices, "state", stKOVADeint.state, "wrote");
    }

    SrcVideoInfo src{};
};

TEST_F(KovaDeinterlacer, SettersOfOneThing) {
    stKOVADeint.state = 0xFF;
    NoteKept(KOVAAPI_LoadDeintData(), "defaults");
    // clang-format off
    for (const auto& set : Setters{
         KOVAAPI_EnableDeintHD3DAdp, KOVAAPI_EnableDeintCurMotionMedian,
        KOVAAPI_EnableDeintNextMotion, KOVAAPI_EnableDeintNextMotionMedian, KOVAAPI_EnableDeintFastUpdateMedian,
        KOVAAPI_EnableDeintFastMotionMedian, KOVAAPI_EnableDeintCurPdMotion, KOVAAPI_EnableDeintCCSMedian,
        KOVAAPI_EnableDeintBadEdit, KOVAAPI_EnableDeintNRAdapt, KOVAAPI_EnableDeintEdge2nd, KOVAAPI_EnableDeintHDMode,
        KOVAAPI_SetDeintCurMotionExpander, KOVAAPI_SetDeintNextMotionNRSel, KOVAAPI_SetDeintNextMotionExpander,
        KOVAAPI_SetDeintNextMotionThres, KOVAAPI_SetDeintFastHistoryThres, KOVAAPI_SetDeintSlowMotionThres,
        KOVAAPI_SetDeintCurPdMotionThres, KOVAAPI_SetDeintBorderThres, KOVAAPI_SetDeintStillMotionThres,
        KOVAAPI_SetDeintStillFieldCntThres, KOVAAPI_SetDeintChromaMotionThres, KOVAAPI_SetDeintChromaCurMotionExpander,
        KOVAAPI_SetDeintChromaNextMotionExpander, KOVAAPI_SetDeintFilm32FieldCntThres,
        KOVAAPI_SetDeintFilm32MotionThres, KOVAAPI_SetDeintFilm22FieldCntThres, KOVAAPI_SetDeintFilm22MotionThres,
        KOVAAPI_SetDeintBadEditMotionThres, KOVAAPI_SetDeintCaptionYMode, KOVAAPI_SetDeintCaptionCMode,
        KOVAAPI_SetDeintCaptionMotionThres, KOVAAPI_SetDeintCaptionLineCntThres, KOVAAPI_SetDeintCaptionVposiThres,
        KOVAAPI_SetDeintNRConditionLevel, KOVAAPI_SetDeintNRFactorLevel, KOVAAPI_SetDeintEdgeMode}) {
        // clang-format on
        Clear();
        Note(set(0xFFFF), "all ones:");
        Clear();
        Note(set(2), "2:"); // a switch is on for any non-zero value
    }
    ExpectGolden("kova-deinterlacer-fields.txt", record.str());
}

TEST_F(KovaDeinterlacer, SettersOfMoreThanOneThing) {
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
    stKOVADeint.nrUse = 0x95; // uses that differ
    NoteKept(KOVAAPI_EnableDeintNR(1), "NR again");
    for (const DeintStateBit state : {DEINT_HD_FORCED, DEINT_DECIMATING}) {
        stKOVADeint.state = state;
        NoteKept(KOVAAPI_EnableDeintNR(0), "no NR, overridden: the choice stays");
    }
    stKOVADeint = {};
    NoteKept(KOVAAPI_SetDeintCMode(5), "chroma mode 5: too large for its place");
    ExpectGolden("kova-deinterlacer-groups.txt", record.str());
}

TEST_F(KovaDeinterlacer, AnOverriddenSetterWritesTheOverrideAndKeepsTheChoice) {
    for (const auto& [state, value] : {std::pair{DEINT_NR_ON | DEINT_HD_DOUBLE, 2},
                                       {DEINT_HD_FORCED, 2},
                                       {DEINT_DECIMATING, 2},
                                       {DEINT_V2TAB_FORCED, 0}}) {
        // clang-format off
        for (const auto& set : Setters{
             KOVAAPI_SetDeintCMode, KOVAAPI_SetDeintCurMotionThres,
            KOVAAPI_EnableDeintFastMotion, KOVAAPI_EnableDeintBorder, KOVAAPI_EnableDeintCCS, KOVAAPI_SetDeintFilmMode,
            KOVAAPI_EnableDeintV2TAB, KOVAAPI_SetDeintCurMotionNRSel, KOVAAPI_EnableDeintCurMotionNRUse,
            KOVAAPI_EnableNextMotionNRUse, KOVAAPI_EnableDeintFastHistoryUse, KOVAAPI_EnableDeintBorderNRUse,
            KOVAAPI_EnableDeintSlowMotionNRUse, KOVAAPI_EnableDeintStillMotionNRUse}) {
            // clang-format on
            Clear();
            stKOVADeint = {static_cast<std::uint8_t>(state), 0, 0, 0};
            NoteKept(set(static_cast<std::uint16_t>(value)), value != 0 ? "2:" : "0:");
        }
    }
    ExpectGolden("kova-deinterlacer-overrides.txt", record.str());
}

TEST_F(KovaDeinterlacer, ModeForThePicture) {
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
        record << stKOVADstWIN << " shown as " << stKOVAViewWIN << " flags " << c.flags << " was " << int{c.state};
        NoteKept(KOVAAPI_SetDeinterMode(&src), "\n   ");
    }
    // From a large picture to a small one.
    src.flags = VIDFLAG_8BIT;
    for (const auto& [width, viewH] : {std::pair{1280, 1024}, {720, 200}}) {
        stKOVADstWIN = {static_cast<std::uint16_t>(width), 480, 0, 0};
        stKOVAViewWIN.h = static_cast<std::uint16_t>(viewH);
        NoteKept(KOVAAPI_SetDeinterMode(&src), width > 1024 ? "large" : "small");
    }
    ExpectGolden("kova-deinterlacer-mode.txt", record.str());
}

} // namespace
