#pragma once
// Access to the transmitter's registers: two pages of 8-bit registers. Each byte is one transfer, without a pause. Each
// successful transfer prints a trace line on standard output, each failed one an error message. No function reports a
// failure in its result. A failed read gives 0xFF. A failed write leaves its register unchanged, and a block goes on with
// the next register.

#include <cstdint>

inline constexpr std::uint8_t HDTX_SLV0 = 0x72; ///< device address of page 0, the shell's "hdmi1"
inline constexpr std::uint8_t HDTX_SLV1 = 0x7A; ///< device address of page 1, the shell's "hdmi2"

/// Writes count bytes to consecutive registers from reg on. After register 0xFF comes register 0x00.
/// @return 0
std::uint8_t I2C_Write(std::uint8_t devaddr, std::uint8_t reg, const std::uint8_t* buf, std::uint16_t count);

/// Reads count bytes, all from the same register. This is how a data port is read.
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

/// Writes a bit field of one register by read-modify-write. The arguments are not checked. Bits above bit 7 are lost. A
/// width of 0 rewrites the register unchanged.
/// @return 0
std::uint8_t HDTX_RegField(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t pos, std::uint8_t width,
                           std::uint8_t data);
