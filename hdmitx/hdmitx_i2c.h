#pragma once
// Register access of the transmitter: two pages of 256 registers, 8 bits each. A register page is named by its device
// address.
//
// Each byte is one transfer, without a pause. Each successful transfer prints a trace line on standard output.
//
// No function reports a failed transfer. A failed transfer prints a message on standard output, a failed read gives
// 0xFF, and a block transfer goes on with the next byte. A device address other than the two below makes no transfer: a
// write does nothing, and a read gives 0xFF. Nothing is printed then.

#include <cstdint>

inline constexpr std::uint8_t HDTX_SLV0 = 0x72; ///< Device address of page 0. The shell calls it "hdmi1".
inline constexpr std::uint8_t HDTX_SLV1 = 0x7A; ///< Device address of page 1. The shell calls it "hdmi2".

/// Writes count bytes to consecutive registers, beginning with reg. The register after 0xFF is 0x00.
/// @return 0
std::uint8_t I2C_Write(std::uint8_t devaddr, std::uint8_t reg, const std::uint8_t* buf, std::uint16_t count);

/// Reads count bytes, all of them from register reg. The register address does not advance: a block read empties a FIFO
/// through its data port.
/// @return 0
std::uint8_t I2C_Read(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t* buf, std::uint16_t count);

/// Writes count bytes to consecutive registers, see I2C_Write.
/// @return 0
std::uint8_t HDTX_MultiWrite(std::uint8_t devaddr, std::uint8_t reg, const std::uint8_t* buf, std::uint16_t count);

/// Reads count bytes from one register, see I2C_Read.
/// @return 0
std::uint8_t HDTX_MultiRead(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t* buf, std::uint16_t count);

/// Writes one register.
/// @return 0
std::uint8_t HDTX_RegWrite(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t value);

/// Reads one register.
/// @return the value of the register. 0xFF after a failed transfer.
std::uint8_t HDTX_RegRead(std::uint8_t devaddr, std::uint8_t reg);

/// Changes a bit field of one register by a read-modify-write: one read, then one write. The arguments are not checked.
/// Field bits above bit 7 of the register are lost.
/// @param pos  lowest bit of the field, 0 to 7
/// @param width  number of bits, 1 to 8; a width of 0 writes the register back unchanged
/// @param data  new value of the field, right-aligned; bits above the width are ignored
/// @return 0
std::uint8_t HDTX_RegField(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t pos, std::uint8_t width,
                           std::uint8_t data);
