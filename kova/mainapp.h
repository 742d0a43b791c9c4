#pragma once
// The start-up sequence.

#include <cstdint>

/// Sets up the whole video path and writes the start-up registers of the transmitter. The source is 704x480 interlaced
/// at 60 Hz, Y/C multiplexed, 10 bits, on port A. The output is 1280x1024 at 60 Hz, RGB. Fills stSrcVideoInfo and
/// stOutVideoInfo. May be called again at any time.
///
/// The function first waits for the device ID of the chip. When 100,000 reads do not give this ID, the function prints
/// a message and changes nothing. A failed transfer does not stop the sequence (see regs.h).
/// @return the value of the last transmitter register that was read back, or 0 without a device ID. The value does not
///         tell whether the sequence succeeded.
std::uint8_t CreateKOVAAPIVideoInstance();
