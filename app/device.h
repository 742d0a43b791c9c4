#pragma once
// The board's device node. An application opens it before it calls any function of the drivers.

#include <cstdint>

/// The device node.
inline constexpr const char* kDeviceNode = "/dev/kova_310";

/// Opens the device node read-write, for both drivers and the sink capability reader; before a second thread exists.
/// @return the descriptor, never one of the standard streams' 0 to 2; negative when it cannot be opened: errno says why
std::int32_t open_kova();

/// Closes it.
void close_kova();
