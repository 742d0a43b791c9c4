#pragma once
// Registers that more than one topic writes.

#include "kova/field.h"

namespace kova {

inline constexpr Field kVideoPllHold{0x020, 0, 1};  ///< holds the video PLL
inline constexpr Field kMemoryPllHold{0x020, 1, 1}; ///< holds the memory PLL

inline constexpr std::uint16_t kZoomWindow = 0x432;  ///< w, h, x, y
inline constexpr std::uint16_t kDestination = 0x43C; ///< w, h: the size of the decimator's output
inline constexpr std::uint16_t kDestinationH = 0x43D;

} // namespace kova
