#pragma once
// The functions and variables that the source files of the EDID parse share.
//
// No function holds a whole block. Each function reads the bytes that it needs, at most 8 at a time, from the current
// segment. In segment n, block 2n begins at offset 0 and block 2n + 1 at offset 128.
//
// The bytes that a monitor sends are not trusted. No length from a monitor is used as an index, and every walk through
// a block ends at an offset of at most 255 from the start of the block.
//
// Each function that reads the EDID returns the result of BlockReadEDID: 0 when all reads succeeded. It ends at the
// first read that fails, unless its description says otherwise. The arguments err and crc point to ErrCode and CRC16 of
// the caller's EDIDParseResult. A function that finds an error stores its code in *err and returns 0.

#include "edid/CRC16.h"
#include "edid/MDDC.h"
#include "edid/edid.h"

#include <array>
#include <span>

// ---- State ----

/// Where the CEA block that is being parsed lies in the current segment. 1 is offset 0, 0 is offset 128.
extern std::uint8_t CEAOnFisrtPage;

/// The last group of short video descriptors, as the monitor sent them.
extern std::array<std::uint8_t, 30> EdidVFmts;
/// The size of the last group that had a native descriptor.
extern std::uint8_t EdidVFmtsCount;

// ---- Reading ----

namespace edid {

/// Size of a detailed timing or monitor descriptor (E-EDID).
inline constexpr unsigned kDescriptorSize = 18;

// Callers of the two read functions below set their buffer to zero first. A transfer that times out can return 0 and
// leave the buffer unchanged. Without the zeros, the parse would take the bytes of an earlier read for new ones, and
// two parses of the same EDID could give different CRCs.

/// Selects the segment of the EDID that the next reads use: register 0x72:0xEE. Also stores it in TmpD.segment, which
/// therefore always holds the segment that the chip received last.
void SelectSegment(std::uint8_t segment);

/// Reads bytes of the current segment and does not add them to the CRC. Only bits 7..0 of the address are used.
inline std::uint8_t ReadEDID(unsigned address, std::span<std::uint8_t> bytes) {
    return BlockReadEDID(static_cast<std::uint8_t>(bytes.size()), static_cast<std::uint8_t>(address), bytes.data());
}

/// Reads bytes of the current segment and adds them to the CRC. A failed read adds nothing.
inline std::uint8_t ReadAndFeedEDID(unsigned address, std::span<std::uint8_t> bytes, std::uint16_t* crc) {
    const std::uint8_t result = ReadEDID(address, bytes);
    if (result == 0) {
        UpdateCRC16WithBlock(crc, static_cast<std::uint8_t>(bytes.size()), bytes.data());
    }
    return result;
}

/// @return whether the parse must stop: a transfer failed, or an error code was stored
constexpr bool Ends(std::uint8_t result, std::uint8_t err) { return result != 0 || err != 0; }

} // namespace edid

// ---- Base block: EDIDBase.cpp ----

/// Checks and prints the header of block 0. Error: EDID_ERR_HEADER.
std::uint8_t DecodeHeader(std::uint8_t* err, std::uint16_t* crc);

/// Checks and prints the EDID version in block 0. Error: EDID_ERR_VERSION.
std::uint8_t CheckEDIDVersion(std::uint8_t* err, std::uint16_t* crc);

/// Prints the 128 bytes of a block and adds them up.
/// @param offset  start of the block in the current segment, 0 or 128
/// @param sum  receives the sum of the bytes modulo 256; it is 0 for a correct block
std::uint8_t CheckCRC(std::uint8_t offset, std::uint8_t* sum, std::uint16_t* crc);

/// Checks the header, the checksum and the version of block 0, in this order. Stops at the first error.
std::uint8_t BasicParse(std::uint8_t* err, std::uint16_t* crc);

/// Prints the first block of the current segment and checks its checksum. Error: EDID_ERR_CHECKSUM.
std::uint8_t CheckCRCof1stEDIDBlock(std::uint8_t* err, std::uint16_t* crc);

/// Prints the second block of the current segment and checks its checksum. Error: EDID_ERR_CHECKSUM.
std::uint8_t CheckCRCof2ndEDIDBlock(std::uint8_t* err, std::uint16_t* crc);

// ---- Timings: EDIDTimings.cpp ----

namespace edid {

/// The three numbers that identify a video format: total pixels per line, total lines per frame, and horizontal front
/// porch in pixels. For an interlaced format, the lines are those of a field.
struct NativeTiming {
    std::uint16_t hTotal, vTotal, hFrontPorch;
};

/// Result of SearchNativeFormat when no format matches.
inline constexpr std::uint8_t kNoNativeFormat = 24;

/// Reads and prints bytes 2 to 17 of the detailed timing at an address of the current segment.
/// @param timing  receives the numbers that identify the format
std::uint8_t ParseDetailedTiming(unsigned address, NativeTiming* timing, std::uint16_t* crc);

} // namespace edid

/// Prints the timings of block 0. Sets gbNativeVIC from the first detailed timing and OutVideoMode to RGB444_8. After a
/// failed read gbNativeVIC is kNoNativeFormat.
std::uint8_t ParseTimingDescriptors(std::uint16_t* crc);

/// Prints the established timings.
void DecodeEstablishTiming(std::span<const std::uint8_t, 3> bytes);

/// Prints four standard timings.
/// @param half  0 for timings 1 to 4, 1 for 5 to 8
void DecodeStandardTiming(std::span<const std::uint8_t, 8> bytes, std::uint8_t half);

/// @param bytes  the first two bytes of a descriptor, which are the pixel clock of a detailed timing
/// @return whether the descriptor is a detailed timing: the pixel clock is not 0
bool TestHeaderDetailedTimingDescr(std::span<const std::uint8_t, 2> bytes);

/// Each of these three functions prints a part of a detailed timing. Part 1 is bytes 2 to 7 of the descriptor, part 2
/// is bytes 8 to 11, part 3 is bytes 12 to 17.
void ParsingDetailedTDPart1(std::span<const std::uint8_t, 6> bytes);
void ParsingDetailedTDPart2(std::span<const std::uint8_t, 4> bytes);
void ParsingDetailedTDPart3(std::span<const std::uint8_t, 6> bytes);

/// @return the output format (OutVideoFormat) with this timing, kNoNativeFormat when there is none. Each of the three
///         numbers may differ by 1. The first match of the table counts.
std::uint8_t SearchNativeFormat(const edid::NativeTiming& timing);

// ---- Extension blocks: EDIDExtension.cpp ----

/// Reads the number of extension blocks (byte 126 of block 0) into *count.
std::uint8_t CheckFor861BExtension(std::uint8_t* count, std::uint16_t* crc);

/// Checks that block 1 is a block map. Error: EDID_ERR_BLOCK_MAP.
std::uint8_t GetBlockMapTAG(std::uint8_t* err, std::uint16_t* crc);

/// Sets *isCEA to 1 when the block at an offset of the current segment has the tag of a CEA-861 extension, else to 0.
/// A failed read leaves *isCEA unchanged.
std::uint8_t CheckFor861BExtensionOffset(std::uint8_t* isCEA, std::uint8_t offset, std::uint16_t* crc);

/// Searches the data block collection for the first vendor-specific block. Sets gbVendorSpecificBlockExist.
/// @param address  receives the offset of the block in the current segment, 0 when there is none
std::uint8_t NewSearchForVendorSpecificBlock(std::uint8_t* address, std::uint16_t* crc);

/// Checks the HDMI signature and sets gwCECPhysicalAddr. Error: EDID_ERR_NOT_HDMI.
/// @return the result of the last read. A failure of an earlier read does not stop the function and is not returned.
std::uint8_t NewCheckHDMISignature(std::uint8_t* err, std::uint16_t* crc);

/// Parses and prints one CEA block: capabilities, data blocks, detailed timings.
std::uint8_t Parse861BExtension(std::uint16_t* crc);

/// Prints the capabilities. Sets gbMonCap and OutVideoMode.
std::uint8_t MonitorCapable861(std::uint16_t* crc);

/// Prints the data block collection. Sets gbNativeVIC to 0. Sets gbNativeVICtemp to the native video format, or to 0.
std::uint8_t ParsingCEADataBlockCollection(std::uint16_t* crc);

/// Prints the detailed timings.
std::uint8_t ParseCEADetailedTimingDescriptors(std::uint16_t* crc);

// ---- Data blocks: EDIDDataBlocks.cpp ----

namespace edid {

/// The tag code (bits 7..5, not shifted) and the payload length in bytes from the header of a data block (CEA-861).
constexpr std::uint8_t DataBlockCode(std::uint8_t header) { return header & 0xE0; }
constexpr std::uint8_t DataBlockLength(std::uint8_t header) { return header & 0x1F; }

inline constexpr std::uint8_t kAudioBlock = 0x20;
inline constexpr std::uint8_t kVideoBlock = 0x40;
inline constexpr std::uint8_t kVendorSpecificBlock = 0x60;
inline constexpr std::uint8_t kSpeakerBlock = 0x80;

} // namespace edid

/// Reads the header byte of a data block.
/// @param offset  holds the offset of the block and receives the header byte; a failed read leaves it unchanged
std::uint8_t GetCEA861BBlockTag(std::uint16_t* crc, std::uint8_t* offset);

/// Each of these three functions parses and prints the data block whose header is at the offset.
std::uint8_t ParsingVideoDATABlock(std::uint16_t* crc, std::uint8_t offset);
std::uint8_t ParsingAudioDATABlock(std::uint16_t* crc, std::uint8_t offset);
std::uint8_t ParsingSpeakerDATABlock(std::uint16_t* crc, std::uint8_t offset);

/// Prints a group of short video descriptors and stores it in EdidVFmts.
/// @param count  at most 8. The caller must limit it, since the function does not check it. EdidVFmts has room for 30.
/// @return the video identification code of the last descriptor that is marked native, 0 when there is none
std::uint8_t ParsingShortTimeDescriptorBlock(const std::uint8_t* bytes, std::uint8_t count);

/// Prints one short audio descriptor.
void ParsingShortAudioDescriptor(std::span<const std::uint8_t, 3> bytes);

// ---- Bounds ----
// kMostEDIDReads is the largest number of DDC transfers of one parse. It holds for every monitor, even when the bytes
// change between two reads. The longest parse has several extensions, searches all 256 segments and finds the CEA block
// in the last one. Its parts are:
// - Data blocks. Both walks over the data blocks start at offset 4 of the CEA block. Each step advances by at least one
//   byte. The walks end at the offset of the detailed timings, which is at most 255.
// - One data block. The longest one takes 13 reads: one for its tag, one for its length, and 11 for the audio
//   descriptors of a length of 31. Tag and length are two reads of the same byte. The step after the block uses the
//   first read. That read can give the length 0, so the step can be one byte even then.
// - Detailed timings. They start at offset 1 or later and are 18 bytes apart. This walk ends after the first one
//   that begins above offset 108. These are at most seven detailed timings, with four reads each.

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
