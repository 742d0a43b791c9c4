#pragma once
// Registers that more than one source file of the transmitter driver uses. Each source file names its own registers
// itself.

#include <cstdint>

namespace hdmitx {

// ---- Page 0 ----

inline constexpr std::uint8_t kInputClock = 0x48;       // bits 7..2: clock setting; bit 4 is also HD colour conversion
inline constexpr std::uint8_t kInterruptStatus = 0x71;  // writing 1 to a bit acknowledges and clears it
inline constexpr std::uint8_t kAudioInputEvents = 0x18; // bits of kInterruptStatus: bi-phase error, sample dropped

// ---- Page 1 ----

inline constexpr std::uint8_t kAudioInput = 0x14;      // bit 0: on; bit 1: S/PDIF; bits 7..4: I2S inputs
inline constexpr std::uint8_t kChannelStatusFs = 0x21; // IEC 60958-3 sampling-frequency code

} // namespace hdmitx
