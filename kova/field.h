#pragma once
// Named register fields, and functions that most setters use to write registers.

#include "kova/regs.h"

#include <cstdint>
#include <span>

namespace kova {

/// A bit field of one video processor register.
struct Field {
    std::uint16_t addr;
    std::uint8_t pos;
    std::uint8_t width;
};

/// Writes a field by a read-modify-write. Bits of value above the width of the field are dropped.
inline std::uint8_t Write(Field field, std::uint16_t value) {
    return KOVA_RegField(field.addr, field.pos, field.width, value);
}

/// Writes words to register addr and the registers after it.
inline std::uint8_t Write(std::uint16_t addr, std::span<const std::uint16_t> words) {
    return KOVA_MultiWrite(addr, words.data(), static_cast<std::uint16_t>(words.size_bytes()));
}

/// Makes the local register update: the staged settings take effect.
inline std::uint8_t LocalUpdate() { return KOVA_RegWrite(KOVA_LOCAL_UPDATE, 1); }

inline std::uint8_t SetAndUpdate(Field field, std::uint16_t value) {
    return AsResult(Write(field, value) || LocalUpdate());
}

/// Sets or clears bits of an attribute word.
template <typename Word>
constexpr void SetBits(Word& word, unsigned bits, bool on) {
    word = static_cast<Word>(on ? word | bits : word & ~bits);
}

} // namespace kova
