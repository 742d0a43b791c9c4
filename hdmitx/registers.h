#pragma once
// Registers that several source files of the transmitter driver use. A register that one file uses is named in that file.

#include <cstdint>

namespace hdmitx {

// ---- Page 0 ----

inline constexpr std::uint8_t kInputClock = 0x48;       // bits 7..2: clock setting, bit 4: HD colour conversion
inline constexpr std::uint8_t kInterruptStatus = 0x71;  // writing 1 to a bit acknowledges its interrupt
inline constexpr std::uint8_t kAudioInputEvents = 0x18; // in kInterruptStatus: bi-phase error, sample dropped

// ---- Page 1 ----

inline constexpr std::uint8_t kAudioInput = 0x14;      // bit 0: on, bit 1: S/PDIF, bits 7..4: I2S inputs
inline constexpr std::uint8_t kChannelStatusFs = 0x21; // IEC 60958-3 sampling-frequency code

} // namespace hdmitx
