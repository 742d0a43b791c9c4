#pragma once
// The deinterlacer makes frames from interlaced fields by motion-adaptive interpolation. It has film detection, caption
// handling, CCS and motion noise reduction. Its registers are 0x500 to 0x53F. The meaning of the names CCS, PD, V2TAB
// and Y mode is not known.
//
// These functions return KOVA_NO_ERROR, also when a transfer fails (see regs.h). Each setter ends with a local register
// update. A parameter "on" means on for any non-zero value. Bits of a value above its range are not written to the
// chip.

#include "formats.h"

#include <cstdint>

// ---- The whole deinterlacer ----

/// Loads the default values into the registers 0x500 to 0x53F and sets the stored choices of the caller (see below) to
/// their defaults. Must run before the first video path update. Ends with a local register update.
std::uint8_t KOVAAPI_LoadDeintData();

/// A step of the video path update. Uses the window sizes and the precision that earlier steps have decided. Forces
/// high-definition mode for a stored picture wider than 1024 pixels at 8-bit precision, or wider than 768 pixels at
/// 10-bit precision. Switches the mode off for any other picture. Switches HD3DAdp on and off together with this mode.
/// Forces V2TAB on when an interlaced picture is shown at less than half its height. Writes the stored choices of the
/// caller (see below) again. Sets the caption position threshold to three quarters of the active height.
std::uint8_t KOVAAPI_SetDeinterMode(const SrcVideoInfo* src);

/// Sets the Y mode: 0x500 bits 15..14. 0x402 bit 15 becomes 1 for the value 2, and 0 for any other value.
/// @param value  0 to 3. The start-up sequence uses 1. High-definition double mode (see video_process.h) uses 2.
std::uint8_t KOVAAPI_SetDeintYMode(std::uint16_t value);

/// Switches fast motion (0x503 bit 15, may be overridden, see below) and next motion (0x501 bit 13).
/// @param value  2 switches both on. 0 switches both off. Any other value switches fast motion off and next motion on.
std::uint8_t KOVAAPI_SetDeintFastMotion(std::uint16_t value);

/// Sets the PD current motion threshold, 0x527 bits 6..0, and the PD current motion switch, 0x527 bit 7.
/// @param value  0 to 127. The switch is off for 40 and on for any other value.
std::uint8_t KOVAAPI_SetDeintPDCurMotionThres(std::uint16_t value);

/// Switches high-definition mode: 0x529 bit 11. The mode overrides some settings below when they are written. The video
/// path update sets the mode again.
std::uint8_t KOVAAPI_EnableDeintHDMode(std::uint8_t on);

// ---- Choices that the driver may override ----
// While a setting is overridden, its setter writes the override value and ignores its argument. The choice made before
// the override is kept. When the override has ended, the next video path update writes this choice again.
// KOVAAPI_EnableDeintNR also writes the stored choices for the uses of noise reduction again. The driver stores a
// choice without masking. A film mode or a chroma mode above 3 therefore changes other stored choices.

// Overridden in high-definition mode. Each line states the override value. The film modes 0, 1, 2 and 3 are written as
// the codes 0, 5, 6 and 4. Any other film mode is written as 0.
std::uint8_t KOVAAPI_SetDeintCMode(std::uint16_t value);          ///< chroma mode, 0 to 3: 0x528 bits 7..6; override 1
std::uint8_t KOVAAPI_SetDeintCurMotionThres(std::uint16_t value); ///< 0 to 255: 0x500 bits 7..0; override 255
std::uint8_t KOVAAPI_EnableDeintFastMotion(std::uint8_t on);      ///< 0x503 bit 15; override off
std::uint8_t KOVAAPI_EnableDeintBorder(std::uint8_t on);          ///< border detection: 0x508 bit 3; override off
std::uint8_t KOVAAPI_SetDeintFilmMode(std::uint16_t value);       ///< film mode, 0 to 3: 0x50B bits 14..12; override 0

// These two are off in high-definition mode, and also while the picture is decimated.
std::uint8_t KOVAAPI_EnableDeintCCS(std::uint8_t on); ///< 0x52A bit 6
std::uint8_t KOVAAPI_EnableDeintNR(std::uint8_t on);  ///< noise reduction: 0x52A bit 7, then all its uses below

// V2TAB is on while an interlaced picture is shown at less than half its height.
std::uint8_t KOVAAPI_EnableDeintV2TAB(std::uint8_t on); ///< 0x53D bit 7

// Uses of noise reduction. While noise reduction is off, these uses are off and the select is 3.
std::uint8_t KOVAAPI_SetDeintCurMotionNRSel(std::uint16_t value);  ///< select, 0 to 3: 0x500 bits 13..12
std::uint8_t KOVAAPI_EnableDeintCurMotionNRUse(std::uint8_t on);   ///< 0x524 bit 15 and 0x513 bit 4
std::uint8_t KOVAAPI_EnableNextMotionNRUse(std::uint8_t on);       ///< 0x529 bit 7
std::uint8_t KOVAAPI_EnableDeintFastHistoryUse(std::uint8_t on);   ///< 0x53D bit 1
std::uint8_t KOVAAPI_EnableDeintBorderNRUse(std::uint8_t on);      ///< 0x53D bit 3
std::uint8_t KOVAAPI_EnableDeintSlowMotionNRUse(std::uint8_t on);  ///< 0x524 bit 14
std::uint8_t KOVAAPI_EnableDeintStillMotionNRUse(std::uint8_t on); ///< 0x524 bit 13

// ---- Plain settings ----
// Each function writes one setting. The range of the value is in brackets. The video path update calls
// KOVAAPI_SetDeintCaptionVposiThres and KOVAAPI_EnableDeintHD3DAdp and so replaces these two settings of the caller.

// clang-format off
// Current motion
std::uint8_t KOVAAPI_EnableDeintCurMotionMedian(std::uint8_t on);            ///< 0x500 bit 10
std::uint8_t KOVAAPI_SetDeintCurMotionExpander(std::uint16_t value);         ///< 0x500 bits 9..8 (0 to 3)
std::uint8_t KOVAAPI_EnableDeintCurPdMotion(std::uint8_t on);                ///< 0x527 bit 7
std::uint8_t KOVAAPI_SetDeintCurPdMotionThres(std::uint16_t value);          ///< 0x527 bits 6..0 (0 to 127)

// Next motion
std::uint8_t KOVAAPI_EnableDeintNextMotion(std::uint8_t on);                 ///< 0x501 bit 13
std::uint8_t KOVAAPI_SetDeintNextMotionNRSel(std::uint16_t value);           ///< 0x501 bits 15..14 (0 to 3)
std::uint8_t KOVAAPI_EnableDeintNextMotionMedian(std::uint8_t on);           ///< 0x501 bit 11
std::uint8_t KOVAAPI_SetDeintNextMotionExpander(std::uint16_t value);        ///< 0x526 bits 13..12 (0 to 3)
std::uint8_t KOVAAPI_SetDeintNextMotionThres(std::uint16_t value);           ///< 0x501 bits 7..0 (0 to 255)

// Fast, slow and still motion, borders, edges
std::uint8_t KOVAAPI_EnableDeintFastUpdateMedian(std::uint8_t on);           ///< 0x53D bit 2
std::uint8_t KOVAAPI_EnableDeintFastMotionMedian(std::uint8_t on);           ///< 0x527 bit 12
std::uint8_t KOVAAPI_SetDeintFastHistoryThres(std::uint16_t value);          ///< 0x523 bits 2..0 (0 to 7)
std::uint8_t KOVAAPI_SetDeintSlowMotionThres(std::uint16_t value);           ///< 0x502 bits 7..0 (0 to 255)
std::uint8_t KOVAAPI_SetDeintBorderThres(std::uint16_t value);               ///< 0x520 bits 6..0 (0 to 127)
std::uint8_t KOVAAPI_SetDeintStillMotionThres(std::uint16_t value);          ///< 0x512 bits 11..0 (0 to 4095)
std::uint8_t KOVAAPI_SetDeintStillFieldCntThres(std::uint16_t value);        ///< 0x50F bits 5..0 (0 to 63)
std::uint8_t KOVAAPI_SetDeintEdgeMode(std::uint16_t value);                  ///< 0x504 bits 10..8 (0 to 7)
std::uint8_t KOVAAPI_EnableDeintEdge2nd(std::uint8_t on);                    ///< 0x504 bit 11

// Chroma and CCS
std::uint8_t KOVAAPI_SetDeintChromaMotionThres(std::uint16_t value);         ///< 0x528 bits 15..8 (0 to 255)
std::uint8_t KOVAAPI_SetDeintChromaCurMotionExpander(std::uint16_t value);   ///< 0x527 bits 11..10 (0 to 3)
std::uint8_t KOVAAPI_SetDeintChromaNextMotionExpander(std::uint16_t value);  ///< 0x527 bits 9..8 (0 to 3)
std::uint8_t KOVAAPI_EnableDeintCCSMedian(std::uint8_t on);                  ///< 0x532 bit 15

// Film
std::uint8_t KOVAAPI_SetDeintFilm32FieldCntThres(std::uint16_t value);       ///< 0x50B bits 5..0 (0 to 63)
std::uint8_t KOVAAPI_SetDeintFilm32MotionThres(std::uint16_t value);         ///< 0x50A bits 11..0 (0 to 4095)
std::uint8_t KOVAAPI_SetDeintFilm22FieldCntThres(std::uint16_t value);       ///< 0x50F bits 13..8 (0 to 63)
std::uint8_t KOVAAPI_SetDeintFilm22MotionThres(std::uint16_t value);         ///< 0x536 bits 7..0 (0 to 255)
std::uint8_t KOVAAPI_EnableDeintBadEdit(std::uint8_t on);                    ///< 0x50B bit 15
std::uint8_t KOVAAPI_SetDeintBadEditMotionThres(std::uint16_t value);        ///< 0x521 bits 15..8 (0 to 255)

// Captions
std::uint8_t KOVAAPI_SetDeintCaptionYMode(std::uint16_t value);              ///< 0x516 bits 1..0 (0 to 3)
std::uint8_t KOVAAPI_SetDeintCaptionCMode(std::uint16_t value);              ///< 0x528 bits 1..0 (0 to 3)
std::uint8_t KOVAAPI_SetDeintCaptionMotionThres(std::uint16_t value);        ///< 0x517 bits 15..6 (0 to 1023)
std::uint8_t KOVAAPI_SetDeintCaptionLineCntThres(std::uint16_t value);       ///< 0x50E bits 7..0, 0x538 bits 7..0 (0 to 255)
std::uint8_t KOVAAPI_SetDeintCaptionVposiThres(std::uint16_t value);         ///< 0x518 bits 9..0 (0 to 1023)

// Noise reduction
std::uint8_t KOVAAPI_EnableDeintNRAdapt(std::uint8_t on);                    ///< 0x53D bit 0
std::uint8_t KOVAAPI_SetDeintNRConditionLevel(std::uint16_t value);          ///< 0x53C bits 15..8 (0 to 255)
std::uint8_t KOVAAPI_SetDeintNRFactorLevel(std::uint16_t value);             ///< 0x52A bits 5..0, 0x535 bits 5..0 (0 to 63)

// High definition
std::uint8_t KOVAAPI_EnableDeintHD3DAdp(std::uint8_t on);                    ///< 0x53E bit 14
// clang-format on
