#pragma once
// The two input ports. The registers 0x400 to 0x402 hold fields of both ports side by side.

#include "kova/field.h"
#include "kova/formats.h"

namespace kova {

/// The type of the input syncs, in two fields. Both ports share it.
inline constexpr Field kSyncType1{0x402, 4, 2};
inline constexpr Field kSyncType2{0x402, 12, 2};

struct PortRegs {
    Field ycOffset, cbcrSwap, highTopField, inputField, compHsync, scan, patternScan;
    Field positionX, positionY;     ///< horizontal and vertical part of the register "position"
    std::uint16_t position;         ///< offset of the picture from the syncs of the port
    std::uint16_t windowW, windowH; ///< source window
    std::uint16_t clockDelay;
};

// clang-format off
inline constexpr PortRegs kPortA{
    .ycOffset     = {0x400, 11, 3},
    .cbcrSwap     = {0x400,  3, 1},
    .highTopField = {0x401,  1, 1},
    .inputField   = {0x401,  3, 1},
    .compHsync    = {0x402,  6, 1},
    .scan         = {0x402,  0, 3},
    .patternScan  = {0x402,  0, 1},
    .positionX    = {0x404,  0, 9},
    .positionY    = {0x404,  9, 7},
    .position     =  0x404,
    .windowW      =  0x406,
    .windowH      =  0x407,
    .clockDelay   =  0x044,
};
inline constexpr PortRegs kPortB{
    .ycOffset     = {0x400,  8, 3},
    .cbcrSwap     = {0x400,  2, 1},
    .highTopField = {0x401,  0, 1},
    .inputField   = {0x401,  2, 1},
    .compHsync    = {0x402, 14, 1},
    .scan         = {0x402,  8, 3},
    .patternScan  = {0x402,  8, 1},
    .positionX    = {0x405,  0, 9},
    .positionY    = {0x405,  9, 7},
    .position     =  0x405,
    .windowW      =  0x408,
    .windowH      =  0x409,
    .clockDelay   =  0x046,
};
// clang-format on

constexpr bool OnPortA(const SrcVideoInfo& src) { return (src.flags & VIDFLAG_PORT_A) != 0; }

/// The port that the source's flags name.
constexpr const PortRegs& PortOf(const SrcVideoInfo& src) { return OnPortA(src) ? kPortA : kPortB; }

} // namespace kova
