#pragma once
// The check value (CRC) over an EDID. A parse never holds a whole block, so two reads of the EDID are compared by this
// value. It is none of the published CRC-16: the polynomial 0x1021 is used unreversed, but the register shifts right. The
// start value is 0.

#include <cstdint>

/// Feeds one byte, least significant bit first, to the running value.
void UpdateCRC16WithByte(std::uint16_t* crc, std::uint8_t byte);

/// Feeds count bytes, beginning with the first.
void UpdateCRC16WithBlock(std::uint16_t* crc, std::uint8_t count, const std::uint8_t* data);
