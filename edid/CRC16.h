#pragma once
// The CRC over the bytes of an EDID. A parse never holds a whole block, so two parses are compared by this CRC.
//
// It is none of the published CRC-16 variants: the register shifts right, but the polynomial 0x1021 is not reversed.
// The start value is 0.

#include <cstdint>

/// Adds one byte to the CRC, its least significant bit first.
void UpdateCRC16WithByte(std::uint16_t* crc, std::uint8_t byte);

/// Adds count bytes to the CRC, from the first to the last.
void UpdateCRC16WithBlock(std::uint16_t* crc, std::uint8_t count, const std::uint8_t* data);
