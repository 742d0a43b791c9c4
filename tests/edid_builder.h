#pragma once
// Builds EDIDs for tests. The blocks are valid except for the bytes that a test sets.

#include <cstdint>
#include <numeric>
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
    bytes[127] = static_cast<std::uint8_t>(-std::accumulate(bytes.begin(), bytes.end() - 1, 0));
    return bytes;
}

// clang-format off
/// The detailed timing of 1280 x 720 at 60 Hz, 530 x 300 mm. Active + blanking: H 1280 + 370, V 720 + 30. Sync offset +
/// width: H 110 + 40, V 5 + 5. Bit 0 of its flags has no meaning while bits 6 and 5 are 0.
inline Bytes Hd720() {
    return {0x01, 0x1D, 0x00, 0x72, 0x51, 0xD0, 0x1E, 0x20, 0x6E, 0x28, 0x55, 0x00, 0x12, 0x2C, 0x21, 0, 0, 0x19};
}

/// Block 0, the base block.
struct Base {
    std::uint8_t extensions = 0;
    Bytes established{0, 0, 0};
    Bytes standard = Bytes(16, 1);
    Bytes descriptors = Hd720();
    Bytes version{1, 3};

    Bytes Build() const {
        Bytes block = Join({{0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0}, Bytes(10), version,
                            Bytes(15), established, standard, descriptors});
        block.resize(126);
        block.push_back(extensions);
        return Block(block);
    }
};
// clang-format on

inline Bytes DataBlock(unsigned code, const Bytes& payload) {
    return Join({{static_cast<std::uint8_t>(code << 5 | payload.size())}, payload});
}
inline Bytes Audio(const Bytes& descriptors) { return DataBlock(1, descriptors); }
inline Bytes Video(const Bytes& codes) { return DataBlock(2, codes); }
inline Bytes Hdmi() { return DataBlock(3, {0x03, 0x0C, 0x00, 0x21, 0x43}); } // physical address 2.1.4.3
inline Bytes Speakers(std::uint8_t bits) { return DataBlock(4, {bits, 0, 0}); }

/// A CEA-861 extension, revision 3.
inline Bytes Cea(std::uint8_t capabilities, const Bytes& dataBlocks, const Bytes& timings = {}) {
    return Block(Join({{2, 3, static_cast<std::uint8_t>(4 + dataBlocks.size()), capabilities}, dataBlocks, timings}));
}

/// An extension block that holds only its tag and its checksum.
inline Bytes Other(std::uint8_t tag) { return Block({tag}); }
inline Bytes BlockMap() { return Other(0xF0); }

/// Valid EDIDs that cover most of the parse: a DVI monitor, HDMI in block 1, HDMI behind a block map.
inline std::vector<Bytes> ValidEdids() {
    const Bytes blocks = Join({Video(Bytes(20, 0x84)), Audio(Bytes(9, 0x0F)), Speakers(1), Hdmi()});
    const Bytes cea = Cea(0xF1, blocks, Hd720());
    return {Base{}.Build(), Join({Base{.extensions = 1}.Build(), cea}),
            Join({Base{.extensions = 2}.Build(), BlockMap(), cea, cea})};
}

} // namespace edid
