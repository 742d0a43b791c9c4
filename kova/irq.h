#pragma once
// The interrupts of the video processor. They are polled. One function reads the status register and stores a copy.
// Another function looks at the stored copy. Only one thread may call these functions. In the console, the loop thread
// calls them.

#include <cstdint>

/// Number of the interrupt of the HDMI transmitter.
inline constexpr std::uint16_t KOVA_IRQ_HDMITX = 7;

/// Reads the interrupt status from register 0x010 and stores a copy. When the read fails, the stored copy becomes
/// 0xFFFF. Every interrupt then counts as pending.
/// @return KOVA_NO_ERROR
std::uint8_t KOVAAPI_GetParseIRQ();

/// Tells whether an interrupt is pending in the stored copy, and clears its bit there. A second call before the next
/// KOVAAPI_GetParseIRQ therefore gives 0. Touches no register.
/// @param irq  0 to 15. Any other number is never pending.
/// @param pending  becomes 1 when the interrupt is pending, else 0
/// @return KOVA_NO_ERROR
std::uint8_t KOVAAPI_GetIRQStatus(std::uint16_t irq, std::uint8_t* pending);

/// Writes the bit of one interrupt in three registers, in this order: 0x00E from enable, 0x014 from mode14, 0x016 from
/// mode16. Bit 0 of each of the three values is written. What the two mode bits do is not known.
/// @param irq  0 to 15. Any other number gives KOVA_I2C_ERROR without a transfer.
/// @return KOVA_NO_ERROR, also when a transfer fails (see regs.h)
std::uint8_t KOVAAPI_EnableIRQ(std::uint16_t irq, std::uint8_t mode16, std::uint8_t mode14, std::uint8_t enable);
