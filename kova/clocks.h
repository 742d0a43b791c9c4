#pragma once
// Register fields of the clocks that more than one topic holds or switches.

#include "kova/field.h"

namespace kova {

inline constexpr Field kVideoPllHold{0x020, 0, 1};  ///< holds the video PLL while its values change
inline constexpr Field kMemoryPllHold{0x020, 1, 1}; ///< the same for the memory PLL

} // namespace kova
