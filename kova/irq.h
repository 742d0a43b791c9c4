#pragma once
// The video processor's interrupts, polled: a stored copy of the status register, and the enables. One thread polls: in
// the console that of the control loop.

#include <cstdint>

/// Interrupt number of the HDMI transmitter.
inline constexpr std::uint16_t KOVA_IRQ_HDMITX = 7;

/// Stores the interrupt status, register 0x010. A failed read stores 0xFFFF: every interrupt pending.
/// @return KOVA_NO_ERROR
std::uint8_t KOVAAPI_GetParseIRQ();

/// Takes one interrupt out of the stored status: asked again before the next KOVAAPI_GetParseIRQ it is not pending.
/// @param irq  0 to 15; any other is never pending   @param pending  becomes 1 or 0
/// @return KOVA_NO_ERROR
std::uint8_t KOVAAPI_GetIRQStatus(std::uint16_t irq, std::uint8_t* pending);

/// Sets an interrupt's bit in three registers: 0x00E from enable, 0x014 from mode14, 0x016 from mode16, in this order.
/// @param irq  0 to 15; any other: KOVA_I2C_ERROR without a transfer   @param mode16, mode14, enable  bit 0 counts
/// @return KOVA_NO_ERROR, also where a transfer failed: see regs.h
std::uint8_t KOVAAPI_EnableIRQ(std::uint16_t irq, std::uint8_t mode16, std::uint8_t mode14, std::uint8_t enable);
