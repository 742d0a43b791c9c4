#pragma once
// Access to the rows of VModeTables, for the transmitter driver's own use.

#include "hdmitx/vmtables.h"

namespace hdmitx {

/// @return the row of VModeTables. A row of zeros when the index is above 81.
const VModeRow& VModeRowAt(std::uint8_t row);

/// @return whether the row counts as a TV timing. A TV picture is overscanned and uses the data range 16 to 235. Row 0,
///         640x480, counts as a PC timing.
constexpr bool IsCeaRow(std::uint8_t row) { return row >= 1 && row <= 27; }

} // namespace hdmitx
