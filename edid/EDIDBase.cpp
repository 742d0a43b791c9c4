// Checks EDID block 0: header, checksum and version (E-EDID 1.3). Checks the checksum of extension blocks too.

#include "edid/EDIDParse.h"

#include <cstdio>

using namespace edid;

namespace {

constexpr unsigned kHeaderOffset = 0;
constexpr unsigned kVersionOffset = 18;
constexpr unsigned kBlockSize = 128;
constexpr unsigned kChunk = 8;
constexpr std::array<std::uint8_t, 8> kHeader{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};

// A wrong sum means that the block was damaged in the transfer or in the monitor. The parse does not use such a block.
std::uint8_t CheckBlock(std::uint8_t offset, std::uint8_t* err, std::uint16_t* crc) {
    std::uint8_t sum = 0;
    const std::uint8_t result = CheckCRC(offset, &sum, crc);
    if (result == 0 && sum != 0) {
        *err = EDID_ERR_CHECKSUM;
    }
    return result;
}

} // namespace

std::uint8_t DecodeHeader(std::uint8_t* err, std::uint16_t* crc) {
    std::array<std::uint8_t, 8> h{};
    if (const std::uint8_t result = ReadAndFeedEDID(kHeaderOffset, h, crc); result != 0) {
        return result;
    }
    std::fprintf(stderr, "%s[%d](%X)(%X)(%X)(%X)(%X)(%X)(%X)(%X)\n", __func__, __LINE__, unsigned{h[0]}, unsigned{h[1]},
                 unsigned{h[2]}, unsigned{h[3]}, unsigned{h[4]}, unsigned{h[5]}, unsigned{h[6]}, unsigned{h[7]});
    if (h != kHeader) {
        *err = EDID_ERR_HEADER;
    }
    return 0;
}

std::uint8_t CheckEDIDVersion(std::uint8_t* err, std::uint16_t* crc) {
    std::array<std::uint8_t, 2> bytes{};
    if (const std::uint8_t result = ReadAndFeedEDID(kVersionOffset, bytes, crc); result != 0) {
        return result;
    }
    const auto [version, revision] = bytes;
    std::fprintf(stderr, "%s[%d](%X)(%X)\n", __func__, __LINE__, unsigned{version}, unsigned{revision});
    if (version != 1 || revision < 3) {
        *err = EDID_ERR_VERSION;
    }
    return 0;
}

std::uint8_t CheckCRC(std::uint8_t offset, std::uint8_t* sum, std::uint16_t* crc) {
    std::fputs(" \n\r[Read EDID Data]", stderr);
    *sum = 0;
    for (unsigned at = 0; at < kBlockSize; at += kChunk) {
        std::array<std::uint8_t, kChunk> bytes{};
        const std::uint8_t result = ReadAndFeedEDID(offset + at, bytes, crc);
        std::fputs(" \n\r", stderr);
        if (result != 0) {
            return result;
        }
        for (const std::uint8_t byte : bytes) {
            *sum = static_cast<std::uint8_t>(*sum + byte);
            std::fprintf(stderr, " 0x%02X, ", unsigned{byte});
        }
    }
    return 0;
}

std::uint8_t BasicParse(std::uint8_t* err, std::uint16_t* crc) {
    std::uint8_t result = DecodeHeader(err, crc);
    if (!Ends(result, *err)) {
        result = CheckCRCof1stEDIDBlock(err, crc);
    }
    // The version is checked last: only a block with a correct checksum has valid version bytes. Extension blocks have
    // no version bytes.
    if (!Ends(result, *err)) {
        result = CheckEDIDVersion(err, crc);
    }
    return result;
}

std::uint8_t CheckCRCof1stEDIDBlock(std::uint8_t* err, std::uint16_t* crc) { return CheckBlock(0, err, crc); }

std::uint8_t CheckCRCof2ndEDIDBlock(std::uint8_t* err, std::uint16_t* crc) { return CheckBlock(kBlockSize, err, crc); }
