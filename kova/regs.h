#pragma once
// Access to the registers of the video processor. Each register is 16 bits wide and has a 16-bit word address. Each
// access to a register is one transfer, after a pause of 100 µs. No register value is cached.
//
// A failed transfer prints a message on standard output. It does not stop a sequence, and no result code of this driver
// reports it. A failed read gives 0xFFFF. When the read of a read-modify-write fails, the write therefore puts ones
// into the other bits of the register. To check a write, read the register back.

#include <cstdint>

/// Result codes of every function of this driver.
enum KovaResult : std::uint8_t {
    KOVA_NO_ERROR = 0,       ///< success
    KOVA_I2C_ERROR = 1,      ///< a format, a mode or a number is out of range in a step; not used for a failed transfer
    KOVA_INVALID_FORMAT = 2, ///< a format or a mode is out of range
    KOVA_INVALID_PARAM = 3,  ///< the position or the width of a bit field is out of range
};

namespace kova {

/// Result code of a sequence. The steps of a sequence are joined by ||, so the sequence stops at its first failing
/// step.
constexpr std::uint8_t AsResult(bool failed) { return failed ? KOVA_I2C_ERROR : KOVA_NO_ERROR; }

} // namespace kova

/// Register of the local register update. Writing 1 makes the staged settings take effect.
inline constexpr std::uint16_t KOVA_LOCAL_UPDATE = 0x4C4;

/// Writes consecutive registers in ascending order, one transfer for each. KOVA_MultiWrite calls this function.
/// @param slave  bus address of the chip. It is not used: the device node reaches only this chip.
/// @param buf    word k goes to register addr + k
/// @param count  number of bytes in buf, even
/// @return 0, also when a transfer fails
std::uint8_t KOVA_I2C_Write(std::uint8_t slave, std::uint16_t addr, const std::uint16_t* buf, std::uint16_t count);

/// Reads consecutive registers in ascending order, one transfer for each. The parameters are those of KOVA_I2C_Write.
/// @return 0, also when a transfer fails. A word whose transfer fails becomes 0xFFFF.
std::uint8_t KOVA_I2C_Read(std::uint8_t slave, std::uint16_t addr, std::uint16_t* buf, std::uint16_t count);

/// Writes count / 2 words of buf to register addr and the registers after it. count must be even.
/// @return KOVA_NO_ERROR
std::uint8_t KOVA_MultiWrite(std::uint16_t addr, const std::uint16_t* buf, std::uint16_t count);

/// Reads register addr and the registers after it into count / 2 words of buf. count must be even. A word whose
/// transfer fails becomes 0xFFFF.
/// @return KOVA_NO_ERROR
std::uint8_t KOVA_MultiRead(std::uint16_t addr, std::uint16_t* buf, std::uint16_t count);

/// Writes one register.
/// @return KOVA_NO_ERROR
std::uint8_t KOVA_RegWrite(std::uint16_t addr, std::uint16_t value);

/// Reads one register into *value. *value becomes 0xFFFF when the transfer fails.
/// @return KOVA_NO_ERROR
std::uint8_t KOVA_RegRead(std::uint16_t addr, std::uint16_t* value);

/// Writes one bit field of a register by a read-modify-write: two transfers. The other bits of the register stay as
/// they were read.
/// @param pos    lowest bit of the field, 0 to 15
/// @param width  1 to 16; pos + width is at most 16
/// @param data   value of the field, right-aligned. Bits above the width are dropped.
/// @return KOVA_NO_ERROR. KOVA_INVALID_PARAM, without any transfer, when the field does not lie inside the register.
std::uint8_t KOVA_RegField(std::uint16_t addr, std::uint16_t pos, std::uint16_t width, std::uint16_t data);
