#pragma once
// What the driver's setters remember among themselves. All zero at program start; used by the shell thread only.

#include "kova/formats.h"

#include <cstdint>

// ---- Windows, as last written to the chip ----

extern VideoWindow stKOVASrcWIN;  ///< source window after clipping and decimation
extern VideoWindow stKOVADstWIN;  ///< the decimator's destination
extern VideoWindow stKOVAZoomWIN; ///< the part of the picture that is scaled
extern VideoWindow stKOVAViewWIN; ///< where it is shown on the output

namespace kova {

/// Whether the picture is shown at less than half its height, in whole lines.
inline bool ShrinksBelowHalf() { return stKOVAViewWIN.h < stKOVADstWIN.h / 2; }

} // namespace kova

// ---- Deinterlacer ----

/// Bits of DeintState::state.
enum DeintStateBit : std::uint8_t {
    DEINT_NR_ON = 0x01,        ///< noise reduction on
    DEINT_HD_FORCED = 0x02,    ///< high-definition deinterlacing forced
    DEINT_V2TAB_FORCED = 0x04, ///< V2TAB forced
    DEINT_DECIMATING = 0x08,   ///< horizontal decimation active
    DEINT_HD_DOUBLE = 0x10,    ///< high-definition double mode
};

/// Bits and fields of DeintState::choices.
enum DeintChoice : std::uint16_t {
    DEINT_CHOICE_NR = 0x0001,
    DEINT_CHOICE_CCS = 0x0002,
    DEINT_CHOICE_BORDER = 0x0004,
    DEINT_CHOICE_FAST_MOTION = 0x0008,
    DEINT_CHOICE_FILM_MODE = 0x0030,
    DEINT_CHOICE_C_MODE = 0x00C0,
    DEINT_CHOICE_CUR_MOTION_THRES = 0xFF00,
};

/// Bits and one field of DeintState::nrUse.
enum DeintNRUse : std::uint8_t {
    DEINT_NR_STILL_MOTION = 0x01,
    DEINT_NR_SLOW_MOTION = 0x02,
    DEINT_NR_BORDER = 0x04,
    DEINT_NR_FAST_HISTORY = 0x08,
    DEINT_NR_NEXT_MOTION = 0x10,
    DEINT_NR_CUR_MOTION = 0x20,
    DEINT_NR_CUR_MOTION_SEL = 0xC0,
};

/// What the deinterlacer is forced to, and what the caller chose.
struct DeintState {
    std::uint8_t state;    ///< DeintStateBit
    std::uint8_t v2tab;    ///< bit 0: the caller's V2TAB choice
    std::uint16_t choices; ///< DeintChoice
    std::uint8_t nrUse;    ///< DeintNRUse: where the caller wants noise reduction
};

extern DeintState stKOVADeint;

// ---- Scaler, clocks, memory ----

extern std::uint8_t KOVAMFCCoef;   ///< loaded scaler set: 0 none yet, 1 normal, 2 for shrinking to less than half
extern std::uint16_t KOVAPLLClock; ///< video clock PLL source as last set

extern MemoryConfig stKOVAMemory;
extern ClockDelay stSrcVideoClock; ///< input clock delay of the source that the start-up sequence sets up
