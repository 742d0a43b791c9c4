// The data blocks of a CEA-861 extension: video, audio, speakers.

#include "edid/EDIDParse.h"

#include <algorithm>
#include <cstdio>

using namespace edid;

std::uint8_t gbNativeVICtemp = 0;
std::array<std::uint8_t, 30> EdidVFmts{};
std::uint8_t EdidVFmtsCount = 0;

namespace {

constexpr unsigned kVideoGroup = 8;
constexpr unsigned kAudioDescriptor = 3;
constexpr unsigned kLinearPcm = 1;

constexpr std::array<const char*, 9> kAudioFormats{
    " reserved", " Liniar PCM", " AC-3", " MPEG-1", " MP3", " MPEG2", " ACC", " DTS", " ATRAC",
};

// Each table names the bits of a byte, beginning with bit 0.
constexpr std::array<const char*, 7> kSampleRates{"  32 ", "  44 ", "  48 ", "  88 ", "  96", "  176 ", "  192 "};
constexpr std::array<const char*, 3> kSampleSizes{" 16 ", " 20 ", " 24 "};
constexpr std::array<const char*, 7> kSpeakers{" FL/FR", " LFE", " FC", " RL/RR", " RC", " FLC/FRC", " RLC/RRC"};

void ReportBits(std::uint8_t bits, std::span<const char* const> names) {
    for (std::size_t bit = 0; bit < names.size(); ++bit) {
        if ((bits >> bit & 1) != 0) {
            std::fputs(names[bit], stderr);
        }
    }
}

std::uint8_t ReadLength(std::uint8_t offset, std::uint8_t* length, std::uint16_t* crc) {
    std::uint8_t header = offset;
    const std::uint8_t result = GetCEA861BBlockTag(crc, &header);
    *length = DataBlockLength(header);
    return result;
}

} // namespace

std::uint8_t GetCEA861BBlockTag(std::uint16_t* crc, std::uint8_t* offset) {
    std::uint8_t header = 0;
    const std::uint8_t result = ReadAndFeedEDID(*offset, std::span(&header, 1), crc);
    if (result == 0) {
        *offset = header;
    }
    return result;
}

std::uint8_t ParsingVideoDATABlock(std::uint16_t* crc, std::uint8_t offset) {
    std::uint8_t length = 0;
    if (const std::uint8_t result = ReadLength(offset, &length, crc); result != 0) {
        return result;
    }
    // The descriptors are reported in groups of at most 8. A block without descriptors counts as one empty group, which
    // also clears EdidVFmts.
    unsigned consumed = 0;
    do {
        std::array<std::uint8_t, kVideoGroup> bytes{};
        const unsigned count = std::min(length - consumed, kVideoGroup);
        const std::span<std::uint8_t> group = std::span(bytes).first(count);
        if (const std::uint8_t result = ReadAndFeedEDID(offset + 1U + consumed, group, crc); result != 0) {
            return result;
        }
        const std::uint8_t native = ParsingShortTimeDescriptorBlock(group.data(), static_cast<std::uint8_t>(count));
        if (native != 0) {
            gbNativeVICtemp = native;
        }
        consumed += count;
    } while (consumed < length);
    return 0;
}

std::uint8_t ParsingAudioDATABlock(std::uint16_t* crc, std::uint8_t offset) {
    std::uint8_t length = 0;
    if (const std::uint8_t result = ReadLength(offset, &length, crc); result != 0) {
        return result;
    }
    unsigned consumed = 0;
    do {
        std::array<std::uint8_t, kAudioDescriptor> bytes{};
        if (const std::uint8_t result = ReadAndFeedEDID(offset + 1U + consumed, bytes, crc); result != 0) {
            return result;
        }
        ParsingShortAudioDescriptor(bytes);
        consumed += kAudioDescriptor;
    } while (consumed < length);
    return 0;
}

std::uint8_t ParsingSpeakerDATABlock(std::uint16_t* crc, std::uint8_t offset) {
    std::uint8_t speakers = 0;
    if (const std::uint8_t result = ReadAndFeedEDID(offset + 1U, std::span(&speakers, 1), crc); result != 0) {
        return result;
    }
    std::fputs(" \n\r[Read EDID] Speakers' allocation: ", stderr);
    ReportBits(speakers, kSpeakers);
    return 0;
}

std::uint8_t ParsingShortTimeDescriptorBlock(const std::uint8_t* bytes, std::uint8_t count) {
    std::fputs(" \n\r[Read EDID] [ParsingShortTimeDescriptorBlock()]", stderr);
    std::fputs(" \n\r          ", stderr);
    EdidVFmts = {};
    std::uint8_t native = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t vic = bytes[i] & 0x7F;
        std::fprintf(stderr, "  VIC %i", vic);
        EdidVFmts[i] = bytes[i];
        if ((bytes[i] & 0x80) != 0) {
            native = vic;
            std::fputs(" (Native VIC)", stderr);
            EdidVFmtsCount = count;
        }
    }
    return native;
}

void ParsingShortAudioDescriptor(std::span<const std::uint8_t, 3> bytes) {
    const unsigned format = bytes[0] >> 3;
    std::fprintf(stderr, " \n\r[Read EDID] Audio Format Code %u : %s", format,
                 kAudioFormats[format < kAudioFormats.size() ? format : 0]);
    std::fprintf(stderr, " \n\r[Read EDID] Max N of channels %i", (bytes[0] & 0x07) + 1);
    std::fputs(" \n\r[Read EDID] Fs: ", stderr);
    ReportBits(bytes[1], kSampleRates);
    std::fputs(" KHz", stderr);
    if (format == kLinearPcm) {
        std::fputs(" \r\n[Read EDID] Supported length: ", stderr);
        ReportBits(bytes[2], kSampleSizes);
        std::fputs(" bits", stderr);
    } else {
        std::fprintf(stderr, " \n\r[Read EDID] Maximum bit rate %i KHz", bytes[2] * 8);
    }
}
