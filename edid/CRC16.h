#pragma once
// The check value over an EDID: a parse never holds a whole block, so two readings are compared by what was fed here.
// No published CRC-16: the polynomial 0x1021 goes unreversed into a register that shifts right. Start value 0.

#include <cstdint>

/// Feeds one byte, least significant bit first, to the running value.
void UpdateCRC16WithByte(std::uint16_t* crc, std::uint8_t byte);

/// Feeds count bytes, the first one first.
void UpdateCRC16WithBlock(std::uint16_t* crc, std::uint8_t count, const std::uint8_t* data);
