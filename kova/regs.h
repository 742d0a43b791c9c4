#pragma once
// The video processor's registers: 16 bits wide at 16-bit word addresses. Each word is one transfer after a pause of
// 100 µs, nothing is cached.
//
// A failed transfer stops nothing and shows in no result code of this driver. It leaves a message on standard output; a
// read gives 0xFFFF, and the change of a field then writes ones into the rest of its register. Whoever must know reads
// back.

#include <cstdint>

/// Result codes of every function of this driver.
enum KovaResult : std::uint8_t {
    KOVA_NO_ERROR = 0,       ///< success
    KOVA_I2C_ERROR = 1,      ///< a step below failed: a format, mode or number out of its range, never a transfer
    KOVA_INVALID_FORMAT = 2, ///< a format or mode out of range
    KOVA_INVALID_PARAM = 3,  ///< a bit field's position or width out of range
};

namespace kova {

/// What a sequence returns that stops at its first failing step: steps joined by ||.
constexpr std::uint8_t AsResult(bool failed) { return failed ? KOVA_I2C_ERROR : KOVA_NO_ERROR; }

} // namespace kova

/// Local register update: 1 written here makes the staged settings take effect.
inline constexpr std::uint16_t KOVA_LOCAL_UPDATE = 0x4C4;

/// Writes a block of consecutive registers in ascending order, at the transfer level.
/// @param slave  the chip's bus address; the device node reaches the one chip without it
/// @param count  bytes, even: word k of buf goes to register addr + k
/// @return 0
std::uint8_t KOVA_I2C_Write(std::uint8_t slave, std::uint16_t addr, const std::uint16_t* buf, std::uint16_t count);

/// Reads a block of consecutive registers in ascending order, at the transfer level. Arguments as KOVA_I2C_Write.
/// @return 0; a failed word reads 0xFFFF
std::uint8_t KOVA_I2C_Read(std::uint8_t slave, std::uint16_t addr, std::uint16_t* buf, std::uint16_t count);

/// Writes count / 2 words of buf to the registers from addr on.
/// @return KOVA_NO_ERROR
std::uint8_t KOVA_MultiWrite(std::uint16_t addr, const std::uint16_t* buf, std::uint16_t count);

/// Reads count / 2 words into buf from the registers from addr on: 0xFFFF for a failed one.
/// @return KOVA_NO_ERROR
std::uint8_t KOVA_MultiRead(std::uint16_t addr, std::uint16_t* buf, std::uint16_t count);

/// Writes one register.
/// @return KOVA_NO_ERROR
std::uint8_t KOVA_RegWrite(std::uint16_t addr, std::uint16_t value);

/// Reads one register into *value: 0xFFFF after a failed transfer.
/// @return KOVA_NO_ERROR
std::uint8_t KOVA_RegRead(std::uint16_t addr, std::uint16_t* value);

/// Writes a bit field of one register by read, modify, write: two transfers.
/// @param pos  lowest bit, 0 to 15   @param width  1 to 16, pos + width at most 16
/// @param data  right-aligned; bits above the width are dropped
/// @return KOVA_NO_ERROR; KOVA_INVALID_PARAM without any transfer for a field outside the register
std::uint8_t KOVA_RegField(std::uint16_t addr, std::uint16_t pos, std::uint16_t width, std::uint16_t data);
