#pragma once
// Builds monitors for tests: blocks that are right, from the few bytes that a test is about.

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <span>
#include <string>
#include <vector>

namespace edid {

using Bytes = std::vector<std::uint8_t>;

inline Bytes Join(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

/// A block of 128 bytes with its checksum.
inline Bytes Block(Bytes bytes) {
    bytes.resize(128);
    bytes[127] = 0;
    bytes[127] = static_cast<std::uint8_t>(-std::accumulate(bytes.begin(), bytes.end(), 0));
    return bytes;
}

struct Timing {
    unsigned hActive, hBlank, vActive, vBlank, hOffset, hPulse, vOffset, vPulse, width, height;
    std::uint8_t hBorder, vBorder, flags;
};

/// 1280 x 720 at 60 Hz.
inline constexpr Timing k720p60{1280, 370, 720, 30, 110, 40, 5, 5, 530, 300, 0, 0, 0x18};

/// A detailed timing descriptor.
inline Bytes Detailed(const Timing& t) {
    const auto low = [](unsigned value) { return static_cast<std::uint8_t>(value & 0xFF); };
    const auto uppers = [&](unsigned left, unsigned right) { return low((left >> 8) << 4 | right >> 8); };
    const unsigned syncs = (t.hOffset >> 8) << 6 | (t.hPulse >> 8) << 4 | (t.vOffset >> 4) << 2 | t.vPulse >> 4;
    // clang-format off
    return {0x01, 0x1D, // pixel clock
            low(t.hActive), low(t.hBlank), uppers(t.hActive, t.hBlank),
            low(t.vActive), low(t.vBlank), uppers(t.vActive, t.vBlank),
            low(t.hOffset), low(t.hPulse), low((t.vOffset & 0x0F) << 4 | (t.vPulse & 0x0F)), low(syncs),
            low(t.width), low(t.height), uppers(t.width, t.height), t.hBorder, t.vBorder, t.flags};
    // clang-format on
}

/// A descriptor that is not a timing.
inline Bytes NoTiming() { return {0, 0, 0, 0x10, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}; }

/// Block 0.
struct Base {
    std::uint8_t extensions = 0;
    Bytes established{0, 0, 0};
    Bytes standard{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    Bytes descriptors = Detailed(k720p60);
    Bytes version{1, 3};

    Bytes Build() const {
        Bytes block = Join({{0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0},
                            Bytes(10),
                            version,
                            Bytes(15),
                            established,
                            standard,
                            descriptors});
        block.resize(128);
        block[126] = extensions;
        return Block(block);
    }
};

inline Bytes DataBlock(unsigned code, const Bytes& payload) {
    return Join({{static_cast<std::uint8_t>(code << 5 | payload.size())}, payload});
}
inline Bytes Audio(const Bytes& descriptors) { return DataBlock(1, descriptors); }
inline Bytes Video(const Bytes& codes) { return DataBlock(2, codes); }
inline Bytes Hdmi() { return DataBlock(3, {0x03, 0x0C, 0x00, 0x21, 0x43}); } // physical address 2.1.4.3
inline Bytes Speakers(std::uint8_t bits) { return DataBlock(4, {bits, 0, 0}); }

/// A CEA-861 extension, revision 3.
inline Bytes Cea(std::uint8_t capabilities, const Bytes& dataBlocks, const Bytes& timings = {}) {
    const auto end = static_cast<std::uint8_t>(4 + dataBlocks.size());
    return Block(Join({{0x02, 0x03, end, capabilities}, dataBlocks, timings}));
}

/// A block of another kind.
inline Bytes Other(std::uint8_t tag) { return Block({tag}); }
inline Bytes BlockMap() { return Other(0xF0); }

} // namespace edid
