#pragma once
// The device node of the board. An application opens it before it calls any function of the drivers.

#include <cstdint>

/// Path of the device node.
inline constexpr const char* kDeviceNode = "/dev/kova_310";

/// Opens the device node for reading and writing. Both drivers and the EDID reader use the open node. Call this
/// function before a second thread exists.
/// @return the descriptor. It is never 0, 1 or 2, because these belong to the standard streams. Negative when the node
///         cannot be opened; errno then holds the reason.
std::int32_t open_kova();

/// Closes the device node.
void close_kova();
