#pragma once
// The pieces of the EDID parse among themselves. Nothing holds a block: every piece reads the bytes that it needs, at
// most 8 at a time, within the current segment: with segment n, offset 0 is the start of block 2n, 128 that of block
// 2n + 1. What a monitor sends is reported and stored, and nothing else is done with it: no length of its indexes
// anything, and every walk ends at an offset of 8 bits.
//
// Throughout, the result is the transfer result of BlockReadEDID, and a routine ends at the first that is not 0.
// err and crc are those of the caller's EDIDParseResult.

#include "edid/CRC16.h"
#include "edid/MDDC.h"
#include "edid/edid.h"

#include <array>
#include <span>

// ---- State ----

/// Where the CEA block under parse lies in the current segment. 1: at offset 0; 0: at offset 128.
extern std::uint8_t CEAOnFisrtPage;

/// The last group of short video descriptors, as sent, and the size of the last group with a native one.
extern std::array<std::uint8_t, 30> EdidVFmts;
extern std::uint8_t EdidVFmtsCount;

// ---- Reading ----

namespace edid {

/// Size of a detailed timing or monitor descriptor (E-EDID).
inline constexpr unsigned kDescriptorSize = 18;

// Buffers start at zero: a transfer that times out may report success and leave its buffer as it was. Then two parses
// say the same, and no byte of an earlier read is taken for a new one.

/// Selects a segment of the EDID, for the requests that follow: 0xEE. TmpD.segment keeps step: it is the segment that
/// the chip was told last.
void SelectSegment(std::uint8_t segment);

/// Reads bytes of the current segment without feeding them to the check value. An address beyond the segment wraps.
inline std::uint8_t ReadEDID(unsigned address, std::span<std::uint8_t> bytes) {
    return BlockReadEDID(static_cast<std::uint8_t>(bytes.size()), static_cast<std::uint8_t>(address), bytes.data());
}

/// Reads bytes of the current segment and feeds them to the check value.
inline std::uint8_t ReadAndFeedEDID(unsigned address, std::span<std::uint8_t> bytes, std::uint16_t* crc) {
    const std::uint8_t result = ReadEDID(address, bytes);
    if (result == 0) {
        UpdateCRC16WithBlock(crc, static_cast<std::uint8_t>(bytes.size()), bytes.data());
    }
    return result;
}

/// Whether the parse ends here: a transfer failed, or the EDID was found wanting.
constexpr bool Ends(std::uint8_t result, std::uint8_t err) { return result != 0 || err != 0; }

} // namespace edid

// ---- Base block: EDIDBase.cpp ----

/// Checks the header of block 0: EDID_ERR_HEADER.
std::uint8_t DecodeHeader(std::uint8_t* err, std::uint16_t* crc);

/// Checks the version of block 0: EDID_ERR_VERSION.
std::uint8_t CheckEDIDVersion(std::uint8_t* err, std::uint16_t* crc);

/// Dumps the 128 bytes from offset 0 or 128 on.
/// @param sum  receives their sum modulo 256, 0 for a sound block
std::uint8_t CheckCRC(std::uint8_t offset, std::uint8_t* sum, std::uint16_t* crc);

/// Header, checksum and version of block 0, each only after the one before was found right.
std::uint8_t BasicParse(std::uint8_t* err, std::uint16_t* crc);

/// Dumps and checks the first block of the current segment: EDID_ERR_CHECKSUM.
std::uint8_t CheckCRCof1stEDIDBlock(std::uint8_t* err, std::uint16_t* crc);

/// Dumps and checks the second block of the current segment: EDID_ERR_CHECKSUM.
std::uint8_t CheckCRCof2ndEDIDBlock(std::uint8_t* err, std::uint16_t* crc);

// ---- Timings: EDIDTimings.cpp ----

namespace edid {

/// What tells a format from another: totals in pixels and lines (of a field when interlaced), front porch in pixels.
struct NativeTiming {
    std::uint16_t hTotal, vTotal, hFrontPorch;
};

/// SearchNativeFormat's answer when no format matches.
inline constexpr std::uint8_t kNoNativeFormat = 24;

/// Reads and reports bytes 2 to 17 of the detailed timing at an address.
/// @param timing  receives what identifies the format
std::uint8_t ParseDetailedTiming(unsigned address, NativeTiming* timing, std::uint16_t* crc);

} // namespace edid

/// Reports the timings of block 0 and sets gbNativeVIC and OutVideoMode for a DVI sink.
std::uint8_t ParseTimingDescriptors(std::uint16_t* crc);

/// Reports the established timings.
void DecodeEstablishTiming(std::span<const std::uint8_t, 3> bytes);

/// Reports four standard timings.
/// @param half  0 for timings 1 to 4, 1 for 5 to 8
void DecodeStandardTiming(std::span<const std::uint8_t, 8> bytes, std::uint8_t half);

/// @return whether a descriptor with these first bytes is a detailed timing: its pixel clock is not 0
bool TestHeaderDetailedTimingDescr(std::span<const std::uint8_t, 2> bytes);

/// Report a third of a detailed timing each: descriptor bytes 2 to 7, 8 to 11 and 12 to 17.
void ParsingDetailedTDPart1(std::span<const std::uint8_t, 6> bytes);
void ParsingDetailedTDPart2(std::span<const std::uint8_t, 4> bytes);
void ParsingDetailedTDPart3(std::span<const std::uint8_t, 6> bytes);

/// @return the output format (OutVideoFormat) with this timing, each number within 1; kNoNativeFormat for none
std::uint8_t SearchNativeFormat(const edid::NativeTiming& timing);

// ---- Extension blocks: EDIDExtension.cpp ----

/// Reads the number of extension blocks.
std::uint8_t CheckFor861BExtension(std::uint8_t* count, std::uint16_t* crc);

/// Checks that block 1 is a block map: EDID_ERR_BLOCK_MAP.
std::uint8_t GetBlockMapTAG(std::uint8_t* err, std::uint16_t* crc);

/// Sets *isCEA to 1 when the block at an offset of the current segment has the tag of a CEA-861 extension, else to 0.
/// After a failed read it is untouched.
std::uint8_t CheckFor861BExtensionOffset(std::uint8_t* isCEA, std::uint8_t offset, std::uint16_t* crc);

/// Walks the data block collection for the first vendor-specific block. Sets gbVendorSpecificBlockExist.
/// @param address  receives the block's offset in the current segment, 0 for none
std::uint8_t NewSearchForVendorSpecificBlock(std::uint8_t* address, std::uint16_t* crc);

/// Checks the HDMI signature (EDID_ERR_NOT_HDMI) and sets gwCECPhysicalAddr.
/// @return the result of its last read, whether or not those before it failed
std::uint8_t NewCheckHDMISignature(std::uint8_t* err, std::uint16_t* crc);

/// Reports one CEA block: capabilities, data blocks, detailed timings.
std::uint8_t Parse861BExtension(std::uint16_t* crc);

/// Reports the capabilities; sets gbMonCap and OutVideoMode.
std::uint8_t MonitorCapable861(std::uint16_t* crc);

/// Reports the data block collection; sets gbNativeVIC to 0, and gbNativeVICtemp.
std::uint8_t ParsingCEADataBlockCollection(std::uint16_t* crc);

/// Reports the detailed timings.
std::uint8_t ParseCEADetailedTimingDescriptors(std::uint16_t* crc);

// ---- Data blocks: EDIDDataBlocks.cpp ----

namespace edid {

/// Code and payload length in the header of a data block (CEA-861).
constexpr std::uint8_t DataBlockCode(std::uint8_t header) { return header & 0xE0; }
constexpr std::uint8_t DataBlockLength(std::uint8_t header) { return header & 0x1F; }

inline constexpr std::uint8_t kAudioBlock = 0x20;
inline constexpr std::uint8_t kVideoBlock = 0x40;
inline constexpr std::uint8_t kVendorSpecificBlock = 0x60;
inline constexpr std::uint8_t kSpeakerBlock = 0x80;

} // namespace edid

/// Replaces the offset of a data block by its header byte. After a failed read the offset is untouched.
std::uint8_t GetCEA861BBlockTag(std::uint16_t* crc, std::uint8_t* offset);

/// Report the data block whose header is at an offset.
std::uint8_t ParsingVideoDATABlock(std::uint16_t* crc, std::uint8_t offset);
std::uint8_t ParsingAudioDATABlock(std::uint16_t* crc, std::uint8_t offset);
std::uint8_t ParsingSpeakerDATABlock(std::uint16_t* crc, std::uint8_t offset);

/// Reports a group of up to 8 short video descriptors and keeps it in EdidVFmts, which has room for 30: whoever calls
/// it cuts what the monitor sent into such groups.
/// @return the code of the last one marked native, 0 for none
std::uint8_t ParsingShortTimeDescriptorBlock(const std::uint8_t* bytes, std::uint8_t count);

/// Reports one short audio descriptor.
void ParsingShortAudioDescriptor(std::span<const std::uint8_t, 3> bytes);

// ---- Bounds ----
// Whatever a monitor sends, and however it changes between reads, a parse ends after this many DDC transfers: several
// extensions, all 256 segments searched, a CEA block in the last one. Both walks over its data blocks start 4 bytes
// into the block and step on by at least one byte until they reach the offset where the detailed timings start, 255 at
// most. The costliest data block takes one read for its tag, one for its length, and the 11 audio descriptors that a
// length of 31 makes, though its tag byte said 0. Detailed timings start at 1 or later, 18 bytes apart, and the last
// one read is the first above 108: seven, of four reads each.

namespace edid {

inline constexpr unsigned kBlockReads = 128 / 8;
inline constexpr unsigned kBaseBlockReads = 1 + kBlockReads + 1 + 1; // header, checksum, version, extension count
inline constexpr unsigned kMostDataBlocks = 255 - 4;
inline constexpr unsigned kMostSignatureReads = 1 + kMostDataBlocks + 2;
inline constexpr unsigned kMostDataBlockReads = 1 + 1 + 11;
inline constexpr unsigned kMostCEAReads = 1 + (1 + kMostDataBlocks * kMostDataBlockReads) + (1 + 7 * 4);
inline constexpr unsigned kMostEDIDReads =
    kBaseBlockReads + (kBlockReads + 1) + 256 + kBlockReads + kMostSignatureReads + kMostCEAReads + kBlockReads;
static_assert(kMostEDIDReads == 3872);

} // namespace edid
