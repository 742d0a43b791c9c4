#pragma once
// Rows of VModeTables, for the transmitter driver's own use.

#include "hdmitx/vmtables.h"

namespace hdmitx {

/// @return the row of VModeTables; for an index outside the table a row that is all zero
const VModeRow& VModeRowAt(std::uint8_t row);

/// Whether the row is a TV timing. TV timings are overscanned and use the narrow data range. Row 0, 640x480, counts as a
/// PC timing.
constexpr bool IsCeaRow(std::uint8_t row) { return row >= 1 && row <= 27; }

} // namespace hdmitx
