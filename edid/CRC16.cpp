#include "edid/CRC16.h"

void UpdateCRC16WithByte(std::uint16_t* crc, std::uint8_t byte) {
    constexpr unsigned kPolynomial = 0x1021;
    unsigned value = *crc;
    unsigned left = byte;
    for (int bit = 0; bit < 8; ++bit) {
        const unsigned mix = value ^ left;
        value >>= 1;
        left >>= 1;
        if ((mix & 1U) != 0) {
            value ^= kPolynomial;
        }
    }
    *crc = static_cast<std::uint16_t>(value);
}

void UpdateCRC16WithBlock(std::uint16_t* crc, std::uint8_t count, const std::uint8_t* data) {
    for (unsigned i = 0; i < count; ++i) {
        UpdateCRC16WithByte(crc, data[i]);
    }
}
