#pragma once
// Access to single bits of a register, for the transmitter driver's own use.

#include "hdmitx/hdmitx_i2c.h"

namespace hdmitx {

/// Sets (on) or clears bits of one register by read-modify-write. Every other bit keeps its value.
inline void WriteBits(std::uint8_t page, std::uint8_t reg, std::uint8_t bits, bool on) {
    const unsigned old = HDTX_RegRead(page, reg);
    HDTX_RegWrite(page, reg, static_cast<std::uint8_t>(on ? old | bits : old & ~unsigned{bits}));
}

/// Whether any of these bits of one register is set.
inline bool AnyBit(std::uint8_t page, std::uint8_t reg, std::uint8_t bits) {
    return (HDTX_RegRead(page, reg) & bits) != 0;
}

} // namespace hdmitx
