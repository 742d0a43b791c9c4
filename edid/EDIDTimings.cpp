// Parses the timings of block 0, and single detailed timings of any block (E-EDID 1.3).

#include "edid/EDIDParse.h"
#include "kova/formats.h"

#include <cstdio>

using namespace edid;

namespace {

constexpr unsigned kEstablishedOffset = 35;
constexpr std::array<unsigned, 2> kStandardOffsets{38, 46}; // timings 1 to 4, 5 to 8
constexpr unsigned kDescriptorOffset = 54;
constexpr unsigned kDescriptors = 4;

// In the order of the bits, from bit 7 of the first byte down. The other bits of the third byte belong to the
// manufacturer.
constexpr std::array<const char*, 17> kEstablishedTimings{
    "720 x 400 @ 70Hz",   "720 x 400 @ 88Hz",  "640 x 480 @ 60Hz",  "640 x 480 @ 67Hz",  "640 x 480 @ 72Hz",
    "640 x 480 @ 75Hz",   "800 x 600 @ 56Hz",  "800 x 600 @ 60Hz",  "800 x 600 @ 72Hz",  "800 x 600 @ 75Hz",
    "832 x 624 @ 75Hz",   "1024 x 768 @ 87Hz", "1024 x 768 @ 60Hz", "1024 x 768 @ 70Hz", "1024 x 768 @ 75Hz",
    "1280 x 1024 @ 75Hz", "1152 x 870 @ 75Hz",
};

constexpr std::array<const char*, 4> kAspectRatios{" 16:10", " 4:3", " 5:4", " 16:9"};

// clang-format off
struct NativeFormat {
    std::uint8_t frmt; // OutVideoFormat
    NativeTiming timing;
};

constexpr std::array<NativeFormat, 16> defNativeDVIFrmt{{
    //                      H total, V total, H front porch
    {VIDOUT_720x480p60,    { 858,  525,  16}},
    {VIDOUT_720x576p50,    { 864,  625,  12}},
    {VIDOUT_1280x720p60,   {1650,  750, 110}},
    {VIDOUT_1280x720p50,   {1980,  750, 440}},
    {VIDOUT_1920x1080i60,  {2200,  562,  88}},
    {VIDOUT_1920x1080i50,  {2640,  562, 528}},
    {VIDOUT_1920x1080p60,  {2200, 1125,  88}},
    {VIDOUT_1920x1080p50,  {2640, 1125, 528}},
    {VIDOUT_640x480p60,    { 800,  525,  16}},
    {VIDOUT_640x480p75,    { 840,  500,  16}},
    {VIDOUT_800x600p60,    {1056,  628,  40}},
    {VIDOUT_800x600p75,    {1056,  625,  16}},
    {VIDOUT_1024x768p60,   {1344,  806,  24}},
    {VIDOUT_1024x768p75,   {1312,  800,  16}},
    {VIDOUT_1280x1024p60,  {1688, 1066,  48}},
    {VIDOUT_1280x1024p75,  {1688, 1066,  16}},
}};
// clang-format on

constexpr unsigned High(std::uint8_t byte) { return byte >> 4; }
constexpr unsigned Low(std::uint8_t byte) { return byte & 0x0FU; }

// Joins the upper 4 or 2 bits of a number with its lower byte. The descriptor stores them in different bytes.
constexpr unsigned Join(unsigned upper, std::uint8_t lower) { return upper << 8 | lower; }

struct Active {
    unsigned hActive, hBlank, vActive, vBlank;
};

// Descriptor bytes 2 to 7.
constexpr Active ActiveOf(std::span<const std::uint8_t, 6> bytes) {
    return {.hActive = Join(High(bytes[2]), bytes[0]),
            .hBlank = Join(Low(bytes[2]), bytes[1]),
            .vActive = Join(High(bytes[5]), bytes[3]),
            .vBlank = Join(Low(bytes[5]), bytes[4])};
}

// Descriptor bytes 8 to 11.
constexpr unsigned SyncOffsetOf(std::span<const std::uint8_t, 4> bytes) { return Join(bytes[3] >> 6, bytes[0]); }

constexpr bool IsNear(unsigned a, unsigned b) { return a + 1 >= b && b + 1 >= a; }

std::uint8_t ParseEstablishedTimings(std::uint16_t* crc) {
    std::array<std::uint8_t, 3> bytes{};
    if (const std::uint8_t result = ReadAndFeedEDID(kEstablishedOffset, bytes, crc); result != 0) {
        return result;
    }
    DecodeEstablishTiming(bytes);
    return 0;
}

std::uint8_t ParseStandardTimings(std::uint8_t half, std::uint16_t* crc) {
    std::array<std::uint8_t, 8> bytes{};
    if (const std::uint8_t result = ReadAndFeedEDID(kStandardOffsets[half], bytes, crc); result != 0) {
        return result;
    }
    if (half == 0) {
        std::fputs(" \r\n[Read EDID] Standard Timing:", stderr);
    }
    DecodeStandardTiming(bytes, half);
    return 0;
}

// Only the first detailed timing is used. It is the sink's preferred timing.
std::uint8_t ParseFirstDetailedTiming(NativeTiming* timing, std::uint16_t* crc) {
    std::fputs(" \r\n[Read EDID] Detailed Timing: ", stderr);
    for (unsigned i = 0; i < kDescriptors; ++i) {
        std::fprintf(stderr, " \r\n[Read EDID] Descriptor %u:\n", i);
        const unsigned address = kDescriptorOffset + kDescriptorSize * i;
        std::array<std::uint8_t, 4> probe{};
        if (const std::uint8_t result = ReadAndFeedEDID(address, probe, crc); result != 0) {
            return result;
        }
        if (TestHeaderDetailedTimingDescr(std::span(probe).first<2>())) {
            return ParseDetailedTiming(address, timing, crc);
        }
    }
    return 0;
}

std::uint8_t ParseTimingSection(NativeTiming* timing, std::uint16_t* crc) {
    std::uint8_t result = ParseEstablishedTimings(crc);
    for (std::uint8_t half = 0; half < kStandardOffsets.size() && result == 0; ++half) {
        result = ParseStandardTimings(half, crc);
    }
    return result != 0 ? result : ParseFirstDetailedTiming(timing, crc);
}

} // namespace

std::uint8_t ParseTimingDescriptors(std::uint16_t* crc) {
    NativeTiming timing{};
    const std::uint8_t result = ParseTimingSection(&timing, crc);
    OutVideoMode = RGB444_8;
    gbNativeVIC = result != 0 ? kNoNativeFormat : SearchNativeFormat(timing);
    std::fprintf(stderr, " \n\r[Read EDID] GetDVINativeVIC() : %d", gbNativeVIC);
    return result;
}

void DecodeEstablishTiming(std::span<const std::uint8_t, 3> bytes) {
    if (bytes[0] == 0 && bytes[1] == 0 && bytes[2] == 0) {
        std::fputs(" \nNo established video modes", stderr);
        return;
    }
    for (std::size_t i = 0; i < kEstablishedTimings.size(); ++i) {
        if ((bytes[i / 8] & (0x80U >> i % 8)) != 0) {
            std::fprintf(stderr, " \n%s", kEstablishedTimings[i]);
        }
    }
}

void DecodeStandardTiming(std::span<const std::uint8_t, 8> bytes, std::uint8_t half) {
    for (unsigned k = 0; k < 4; ++k) {
        const unsigned width = bytes[2 * k];
        const unsigned ratioAndRate = bytes[2 * k + 1];
        std::fprintf(stderr, " \n\r[Read EDID] Mode %u ", 4U * half + k);
        if (width == 0x01 && ratioAndRate == 0x01) {
            std::fputs("  wasn't defined! ", stderr);
            continue;
        }
        std::fprintf(stderr, " \n\r[Read EDID] Hor Act pixels %u ", width * 8 + 248);
        std::fprintf(stderr, " \n\r[Read EDID] Aspect ratio: %s", kAspectRatios[ratioAndRate >> 6]);
        std::fprintf(stderr, " \n\r[Read EDID] Refresh rate %u Hz ", (ratioAndRate & 0x3F) + 60);
    }
}

bool TestHeaderDetailedTimingDescr(std::span<const std::uint8_t, 2> bytes) { return bytes[0] != 0 || bytes[1] != 0; }

void ParsingDetailedTDPart1(std::span<const std::uint8_t, 6> bytes) {
    const Active active = ActiveOf(bytes);
    std::fprintf(stderr, " \n\r[Read EDID] H Active %u,  H Blank %u   V Active %u   V Blank %u ", active.hActive,
                 active.hBlank, active.vActive, active.vBlank);
}

void ParsingDetailedTDPart2(std::span<const std::uint8_t, 4> bytes) {
    std::fprintf(stderr, " \n\r[Read EDID] H Sync Offset %u,  H Sync Pulse W %u  V Sync Offset %u  V Sync Pulse W %u",
                 SyncOffsetOf(bytes), Join((bytes[3] >> 4) & 3U, bytes[1]),
                 ((bytes[3] >> 2) & 3U) << 4 | High(bytes[2]), (bytes[3] & 3U) << 4 | Low(bytes[2]));
}

void ParsingDetailedTDPart3(std::span<const std::uint8_t, 6> bytes) {
    std::fprintf(stderr, " \n\r[Read EDID] H Image Size %u,  V Image Size %u  H Border %u  V Border %u",
                 Join(High(bytes[2]), bytes[0]), Join(Low(bytes[2]), bytes[1]), unsigned{bytes[3]}, unsigned{bytes[4]});
    const std::uint8_t flags = bytes[5];
    std::fputs((flags & 0x80) != 0 ? " \n\r[Read EDID] Interlaced" : " \n\r[Read EDID] Non-interlaced", stderr);
    std::fputs((flags & 0x60) != 0 ? " \n\r[Read EDID] Table 3.17 for defenition" : " \n\r[Read EDID] Normal Display:",
               stderr);
    std::fputs((flags & 0x10) != 0 ? "  Digital" : "  Analog", stderr);
}

std::uint8_t edid::ParseDetailedTiming(unsigned address, NativeTiming* timing, std::uint16_t* crc) {
    std::array<std::uint8_t, 6> part1{};
    if (const std::uint8_t result = ReadAndFeedEDID(address + 2, part1, crc); result != 0) {
        return result;
    }
    ParsingDetailedTDPart1(part1);

    std::array<std::uint8_t, 4> part2{};
    if (const std::uint8_t result = ReadAndFeedEDID(address + 8, part2, crc); result != 0) {
        return result;
    }
    ParsingDetailedTDPart2(part2);

    std::array<std::uint8_t, 6> part3{};
    if (const std::uint8_t result = ReadAndFeedEDID(address + 12, part3, crc); result != 0) {
        return result;
    }
    ParsingDetailedTDPart3(part3);

    const Active active = ActiveOf(part1);
    *timing = {.hTotal = static_cast<std::uint16_t>(active.hActive + active.hBlank),
               .vTotal = static_cast<std::uint16_t>(active.vActive + active.vBlank),
               .hFrontPorch = static_cast<std::uint16_t>(SyncOffsetOf(part2))};
    return 0;
}

std::uint8_t SearchNativeFormat(const NativeTiming& timing) {
    for (const NativeFormat& row : defNativeDVIFrmt) {
        if (IsNear(timing.hTotal, row.timing.hTotal) && IsNear(timing.vTotal, row.timing.vTotal)
            && IsNear(timing.hFrontPorch, row.timing.hFrontPorch)) {
            return row.frmt;
        }
    }
    return kNoNativeFormat;
}
