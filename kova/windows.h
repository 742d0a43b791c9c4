#pragma once
// The sizes with which the scaler works.
//
// These functions return KOVA_NO_ERROR, also when a transfer fails (see regs.h). A function that sets one window uses
// the other windows as the last video path update left them. Call KOVAAPI_VideoProcess at least once before. A function
// here changes only windows. After a change, also call the functions of the later steps of the video path update. Then
// the scaler, the filters and the deinterlacer fit the new sizes.

#include "formats.h"

#include <cstdint>

/// Sets the source window. First rounds the active size in the record down: the width to a multiple of 8 pixels for
/// 8-bit data, or of 24 pixels for 10-bit data; the height to a multiple of 8 lines. The source window is the clip
/// window when the clip window has a width and a height, else the active picture. x and y of the clip window are
/// written as the sync position in both cases. Registers: 0x404, 0x406, 0x407 (port A) or 0x405, 0x408, 0x409 (port B);
/// 0x43A, 0x43B. Ends with a local register update.
std::uint8_t KOVAAPI_SetWindowSrcVideo(SrcVideoInfo* src);

/// Copies win to the clip window of the record and then calls KOVAAPI_SetWindowSrcVideo.
/// @param win  pixels and lines. A w or h of 0 selects the whole active picture.
std::uint8_t KOVAAPI_SetWindowSrcCLIP(SrcVideoInfo* src, const VideoWindow* win);

/// Decides about horizontal decimation, which narrows the picture to 1024 pixels before the frame memory. An interlaced
/// picture wider than 1024 pixels and any picture wider than 1280 pixels are narrowed. Touches no register.
std::uint8_t KOVAAPI_SetHDecimateVideo(const SrcVideoInfo* src);

/// Sets three windows: the destination of the decimator, the zoom window and the view window. The destination is the
/// source window, but at most as wide as the view window. A zoom or view window in the record is used when it has a
/// width and a height. Otherwise the zoom window is the destination, and the view window is the whole output picture.
/// Registers: 0x432 to 0x439, 0x43C, 0x43D. Ends with a local register update.
std::uint8_t KOVAAPI_SetWindowOutVideo(const OutVideoInfo* out);

/// Copies win to the zoom window of the record and then calls KOVAAPI_SetWindowOutVideo. The zoom window is the part of
/// the picture that is scaled.
/// @param win  pixels and lines. A w or h of 0 selects the whole picture.
std::uint8_t KOVAAPI_SetWindowOutZOOM(OutVideoInfo* out, const VideoWindow* win);

/// Copies win to the view window of the record and then calls KOVAAPI_SetWindowOutVideo. The view window is the area of
/// the output in which the picture is shown.
/// @param win  pixels and lines. A w or h of 0 selects the whole output picture.
std::uint8_t KOVAAPI_SetWindowOutVIEW(OutVideoInfo* out, const VideoWindow* win);

/// Reads the size of the decimator's destination from 0x43C and 0x43D into w and h of win. Sets x and y to 0.
std::uint8_t KOVAAPI_GetWindowHDECI(VideoWindow* win);
