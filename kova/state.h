#pragma once
// State that the setters of the driver share. All of it is zero at program start. Only the shell thread uses it.

#include "kova/formats.h"

#include <cstdint>

// ---- The windows, as the setters computed them last ----

extern VideoWindow stKOVASrcWIN;  ///< source window after clipping and decimation
extern VideoWindow stKOVADstWIN;  ///< destination of the decimator
extern VideoWindow stKOVAZoomWIN; ///< the part of the picture that is scaled
extern VideoWindow stKOVAViewWIN; ///< the area of the output in which the zoom window is shown

namespace kova {

/// Tells whether the picture is shown at less than half of its height. The half is rounded down to whole lines.
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

/// State of the deinterlacer: the modes that the driver forces, and the choices of the caller.
struct DeintState {
    std::uint8_t state;    ///< DeintStateBit bits
    std::uint8_t v2tab;    ///< bit 0: the caller's choice for V2TAB
    std::uint16_t choices; ///< DeintChoice bits and fields: the caller's choices
    std::uint8_t nrUse;    ///< DeintNRUse bits and field: where the caller wants noise reduction
};

extern DeintState stKOVADeint;

// ---- Scaler, clocks, memory ----

extern std::uint8_t KOVAMFCCoef; ///< loaded scaler filters. 0: none; 1: normal; 2: for a picture below half its height
extern std::uint16_t KOVAPLLClock; ///< source of the video clock, as set last

extern MemoryConfig stKOVAMemory;
extern ClockDelay stSrcVideoClock; ///< input clock delay that the start-up sequence gives to the source
