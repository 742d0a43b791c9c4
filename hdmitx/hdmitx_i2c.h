#pragma once
// The transmitter's registers: two pages of 8-bit registers. One transfer per byte, without a pause; each successful
// one leaves a trace line on standard output. Failures show as messages only: a failed read gives 0xFF, a failed write
// of a block leaves that register as it was and the block goes on.

#include <cstdint>

inline constexpr std::uint8_t HDTX_SLV0 = 0x72; ///< device address of page 0, the shell's "hdmi1"
inline constexpr std::uint8_t HDTX_SLV1 = 0x7A; ///< device address of page 1, the shell's "hdmi2"

/// Writes count bytes to consecutive registers from reg on; the offset wraps from 0xFF to 0x00.
/// @return 0
std::uint8_t I2C_Write(std::uint8_t devaddr, std::uint8_t reg, const std::uint8_t* buf, std::uint16_t count);

/// Reads count bytes, every one from the same register: a block read drains a data port.
/// @return 0
std::uint8_t I2C_Read(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t* buf, std::uint16_t count);

/// Block write to consecutive registers, see I2C_Write.
std::uint8_t HDTX_MultiWrite(std::uint8_t devaddr, std::uint8_t reg, const std::uint8_t* buf, std::uint16_t count);

/// Block read of one data port register, see I2C_Read.
std::uint8_t HDTX_MultiRead(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t* buf, std::uint16_t count);

/// Writes one register.
/// @return 0
std::uint8_t HDTX_RegWrite(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t value);

/// Reads one register.
/// @return its value; 0xFF after a failed transfer
std::uint8_t HDTX_RegRead(std::uint8_t devaddr, std::uint8_t reg);

/// Writes a bit field of one register by read, modify, write. Nothing is checked: pos and width are trusted, bits above
/// bit 7 are lost, a width of 0 rewrites the register unchanged.
/// @return 0
std::uint8_t HDTX_RegField(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t pos, std::uint8_t width,
                           std::uint8_t data);
