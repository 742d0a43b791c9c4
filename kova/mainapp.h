#pragma once
// The start-up sequence.

#include <cstdint>

/// Brings up the video path from 704x480 interlaced at 60 Hz, Y/C multiplexed 10 bits on port A, to 1280x1024 at 60 Hz
/// RGB, and writes the transmitter's start-up registers. Waits for the chip's device ID first; when it does not come
/// within 100,000 reads, a message says so and nothing else is done. A failed transfer stops nothing: see regs.h. Fills
/// stSrcVideoInfo and stOutVideoInfo. May be run again at any time.
/// @return the last transmitter register read back, 0 without a device ID: nothing to go by
std::uint8_t CreateKOVAAPIVideoInstance();
