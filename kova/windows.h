#pragma once
// The sizes that the scaler works with.
//
// These functions return KOVA_NO_ERROR, also where a transfer failed: see regs.h. A setter of a single window works on
// the windows that the last video path update left, so it comes after at least one update; whoever changes a window
// lets the rest of the update follow, so that scaler, filters and deinterlacer fit the new sizes.

#include "formats.h"

#include <cstdint>

/// Sets the source window: the clip window when it is in use, else the active picture, whose size is rounded down in
/// the record first (width to 8 pixels for 8-bit data, 24 for 10-bit; height to 8 lines). Writes the position from the
/// clip window in any case. Port A 0x404, 0x406, 0x407 or port B 0x405, 0x408, 0x409; 0x43A, 0x43B; local register
/// update.
std::uint8_t KOVAAPI_SetWindowSrcVideo(SrcVideoInfo* src);

/// Sets the clip window, in pixels and lines, and with it the source window. All zero: the whole active picture.
std::uint8_t KOVAAPI_SetWindowSrcCLIP(SrcVideoInfo* src, const VideoWindow* win);

/// Decides whether the picture is narrowed to 1024 pixels before the frame memory: an interlaced one wider than 1024,
/// any one wider than 1280. Touches no register.
std::uint8_t KOVAAPI_SetHDecimateVideo(const SrcVideoInfo* src);

/// Sets the decimator's destination (the source window, at most as wide as the view), the zoom window (by default the
/// destination) and the view window (by default the whole output picture): 0x432 to 0x439, 0x43C, 0x43D; local register
/// update.
std::uint8_t KOVAAPI_SetWindowOutVideo(const OutVideoInfo* out);

/// Sets the part of the picture that is scaled, in pixels and lines, and all windows of the output. All zero: the
/// whole.
std::uint8_t KOVAAPI_SetWindowOutZOOM(OutVideoInfo* out, const VideoWindow* win);

/// Sets where the picture is shown on the output, and all windows of the output. All zero: the whole output picture.
std::uint8_t KOVAAPI_SetWindowOutVIEW(OutVideoInfo* out, const VideoWindow* win);

/// Reads the decimator's destination from the chip, 0x43C and 0x43D; x and y become 0.
std::uint8_t KOVAAPI_GetWindowHDECI(VideoWindow* win);
