// Extension blocks: finds them, and parses the CEA-861 extension and its HDMI signature.

#include "edid/EDIDParse.h"
#include "kova/formats.h"

#include <cstdio>

using namespace edid;

std::uint8_t gbVendorSpecificBlockExist = 0;
std::uint16_t gwCECPhysicalAddr = 0;
std::uint8_t gbMonCap = 0;

namespace {

constexpr unsigned kExtensionCountOffset = 126;
constexpr unsigned kSecondBlock = 128;
constexpr std::uint8_t kCEATag = 0x02;
constexpr std::uint8_t kBlockMapTag = 0xF0;

// Offsets in a CEA block. Byte 2 holds the offset of the detailed timings. The data block collection ends there.
constexpr unsigned kTimingsOffset = 2;
constexpr unsigned kCapabilitiesOffset = 3;
constexpr unsigned kCollectionOffset = 4;

constexpr unsigned kLastDescriptor = 108; // a descriptor that begins above this offset is the last one

constexpr std::array<std::uint8_t, 3> kHdmiOui{0x03, 0x0C, 0x00}; // IEEE OUI 0x000C03, low byte first

constexpr std::uint8_t kUnderscan = 0x80;
constexpr std::uint8_t kBasicAudio = 0x40;

// One row for each value of bits 5..4 of the capabilities: the text that names the colour formats of the sink, the
// OutVideoMode for this sink, and the text that reports this choice.
struct Colours {
    const char* supported;
    VideoMode mode;
    const char* choice;
};

// clang-format off
constexpr std::array<Colours, 4> kColours{{
    {" \n\r          Only RGB",                            RGB444_8, ""},
    {" \n\r          YCbCr 4:2:2 and RGB",                 SEP422_8, " \n\r         Set OutVideoMode to SEP422_8"},
    {" \n\r          YCbCr 4:4:4 and RGB",                 YUV444_8, " \n\r         Set OutVideoMode to YUV444_8"},
    {" \n\r          YCbCr4:4:4 and YCbCr4:2:2 and RGB",   YUV444_8, " \n\r         Set OutVideoMode to YUV444_8"},
}};
// clang-format on

// The offset of the CEA block that is being parsed, in the current segment.
unsigned CEABlock() { return CEAOnFisrtPage != 0 ? 0 : kSecondBlock; }

std::uint8_t ReadByte(unsigned address, std::uint8_t* byte, std::uint16_t* crc) {
    return ReadAndFeedEDID(address, std::span(byte, 1), crc);
}

// Returns the address of the next data block. The address does not wrap at 8 bits, so every walk reaches its end. Only
// a read reduces the address to 8 bits.
constexpr unsigned Next(unsigned address, std::uint8_t header) { return address + DataBlockLength(header) + 1; }

std::uint8_t ParseDataBlock(std::uint8_t header, std::uint8_t offset, std::uint16_t* crc) {
    switch (DataBlockCode(header)) {
    case kVideoBlock:
        return ParsingVideoDATABlock(crc, offset);
    case kSpeakerBlock:
        return ParsingSpeakerDATABlock(crc, offset);
    case kAudioBlock:
        return ParsingAudioDATABlock(crc, offset);
    default:
        return 0;
    }
}

} // namespace

std::uint8_t CheckFor861BExtension(std::uint8_t* count, std::uint16_t* crc) {
    return ReadByte(kExtensionCountOffset, count, crc);
}

std::uint8_t GetBlockMapTAG(std::uint8_t* err, std::uint16_t* crc) {
    std::uint8_t tag = 0;
    const std::uint8_t result = ReadByte(kSecondBlock, &tag, crc);
    if (result == 0 && tag != kBlockMapTag) {
        *err = EDID_ERR_BLOCK_MAP;
    }
    return result;
}

std::uint8_t CheckFor861BExtensionOffset(std::uint8_t* isCEA, std::uint8_t offset, std::uint16_t* crc) {
    std::uint8_t tag = 0;
    const std::uint8_t result = ReadByte(offset, &tag, crc);
    if (result == 0) {
        *isCEA = tag == kCEATag ? 1 : 0;
    }
    return result;
}

std::uint8_t NewSearchForVendorSpecificBlock(std::uint8_t* address, std::uint16_t* crc) {
    std::fputs(" \n\r[Read EDID] NewSearchForVendorSpecificBlock()", stderr);
    *address = 0;
    gbVendorSpecificBlockExist = 0;
    std::array<std::uint8_t, 2> bytes{};
    if (const std::uint8_t result = ReadAndFeedEDID(CEABlock() + kTimingsOffset, bytes, crc); result != 0) {
        return result;
    }
    if (bytes[0] < kCollectionOffset) {
        return 0;
    }
    unsigned at = CEABlock() + kCollectionOffset;
    const unsigned end = CEABlock() + bytes[0];
    while (at < end) {
        std::uint8_t header = 0;
        if (const std::uint8_t result = ReadByte(at, &header, crc); result != 0) {
            return result;
        }
        if (DataBlockCode(header) == kVendorSpecificBlock) {
            *address = static_cast<std::uint8_t>(at);
            gbVendorSpecificBlockExist = 1;
            break;
        }
        at = Next(at, header);
    }
    std::fprintf(stderr, " \n\r[Read EDID] gbVendorSpecificBlockExist = %d", gbVendorSpecificBlockExist);
    std::fprintf(stderr, " \n\r[Read EDID] EDID VSB Address = 0x%02X", at);
    return 0;
}

std::uint8_t NewCheckHDMISignature(std::uint8_t* err, std::uint16_t* crc) {
    std::fputs(" \n\r[Read EDID] NewCheckHDMISignature()", stderr);
    // The result of the search is not checked. A failed search leaves the address 0, like a search that finds no block.
    // The signature is then compared with bytes 1 to 3 of the segment. In segment 0 these are bytes of the EDID header.
    // In other segments these are the revision, the timings' offset and the capabilities of the CEA block.
    std::uint8_t address = 0;
    NewSearchForVendorSpecificBlock(&address, crc);

    std::array<std::uint8_t, 3> oui{};
    if (ReadAndFeedEDID(address + 1U, oui, crc) == 0 && oui != kHdmiOui) {
        *err = EDID_ERR_NOT_HDMI;
    }

    std::array<std::uint8_t, 2> cec{};
    const std::uint8_t result = ReadEDID(address + 4U, cec);
    gwCECPhysicalAddr = result == 0 ? static_cast<std::uint16_t>(cec[0] << 8 | cec[1]) : 0;
    std::fprintf(stderr, " \n\r[Read EDID] CEC Physical Address = 0x%04X", unsigned{gwCECPhysicalAddr});
    return result;
}

std::uint8_t Parse861BExtension(std::uint16_t* crc) {
    std::fputs(" \n\r[Read EDID] Parse861BExtension()", stderr);
    std::uint8_t result = MonitorCapable861(crc);
    if (result == 0) {
        result = ParsingCEADataBlockCollection(crc);
    }
    if (result == 0) {
        result = ParseCEADetailedTimingDescriptors(crc);
    }
    return result;
}

std::uint8_t MonitorCapable861(std::uint16_t* crc) {
    std::uint8_t capabilities = 0;
    if (const std::uint8_t result = ReadByte(CEABlock() + kCapabilitiesOffset, &capabilities, crc); result != 0) {
        return result;
    }
    std::fprintf(stderr, " \n\r[Read EDID] CapN 0x%02X", unsigned{capabilities});
    gbMonCap = capabilities;
    std::fputs(" \n\r[Read EDID] DTV monitor supports: ", stderr);
    if ((capabilities & kUnderscan) != 0) {
        std::fputs(" \n\r          Underscan", stderr);
    }
    if ((capabilities & kBasicAudio) != 0) {
        std::fputs(" \n\r          Basic audio", stderr);
    }
    const Colours& colours = kColours[(capabilities >> 4) & 3U];
    std::fputs(colours.supported, stderr);
    std::fprintf(stderr, " \n\r[Read EDID] Native formats in detail descriptors %i", capabilities & 0x0F);
    OutVideoMode = colours.mode;
    std::fputs(colours.choice, stderr);
    return 0;
}

std::uint8_t ParsingCEADataBlockCollection(std::uint16_t* crc) {
    gbNativeVICtemp = 0;
    gbNativeVIC = 0;
    std::uint8_t timings = 0;
    if (const std::uint8_t result = ReadEDID(CEABlock() + kTimingsOffset, std::span(&timings, 1)); result != 0) {
        return result;
    }
    if (timings == 0 || timings == kCollectionOffset) {
        return 0;
    }
    const unsigned end = CEABlock() + timings;
    unsigned at = CEABlock() + kCollectionOffset;
    do {
        const auto offset = static_cast<std::uint8_t>(at);
        std::uint8_t header = offset;
        std::uint8_t result = GetCEA861BBlockTag(crc, &header);
        if (result == 0) {
            result = ParseDataBlock(header, offset, crc);
        }
        if (result != 0) {
            return result;
        }
        at = Next(at, header);
    } while (at < end);
    return 0;
}

std::uint8_t ParseCEADetailedTimingDescriptors(std::uint16_t* crc) {
    std::uint8_t timings = 0;
    if (const std::uint8_t result = ReadEDID(CEABlock() + kTimingsOffset, std::span(&timings, 1)); result != 0) {
        return result;
    }
    if (timings == 0) {
        return 0;
    }
    UpdateCRC16WithByte(crc, timings);
    for (unsigned offset = timings;; offset += kDescriptorSize) {
        std::array<std::uint8_t, 2> pixelClock{};
        if (const std::uint8_t result = ReadAndFeedEDID(CEABlock() + offset, pixelClock, crc); result != 0) {
            return result;
        }
        if (!TestHeaderDetailedTimingDescr(pixelClock)) {
            return 0;
        }
        NativeTiming reported{};
        if (const std::uint8_t result = ParseDetailedTiming(CEABlock() + offset, &reported, crc); result != 0) {
            return result;
        }
        if (offset > kLastDescriptor) {
            return 0;
        }
    }
}
