#pragma once
// The routines of the EDID parse, for each other's use. No routine holds a whole block. Each one reads the bytes that it
// needs, at most 8 at a time, from the current segment. In segment n, block 2n starts at offset 0 and block 2n + 1 at
// offset 128.
//
// The monitor's bytes are not trusted. They are reported and stored, but no length that a monitor sends is used as an
// index, and every loop ends at an 8-bit offset.
//
// A result is the transfer result of BlockReadEDID. A routine ends at the first result that is not 0. err and crc belong
// to the caller's EDIDParseResult.

#include "edid/CRC16.h"
#include "edid/MDDC.h"
#include "edid/edid.h"

#include <array>
#include <span>

// ---- State ----

/// Position in the current segment of the CEA block that is being parsed. 1: at offset 0. 0: at offset 128.
extern std::uint8_t CEAOnFisrtPage;

/// The last group of short video descriptors, as sent. The count is the size of the last group that had a native format.
extern std::array<std::uint8_t, 30> EdidVFmts;
extern std::uint8_t EdidVFmtsCount;

// ---- Reading ----

namespace edid {

/// Size of a detailed timing or monitor descriptor (E-EDID).
inline constexpr unsigned kDescriptorSize = 18;

// A caller fills its buffer with zeros before each read. A transfer that times out may report success and leave the buffer
// unchanged. With zeros in it, two parses give the same CRC, and no byte of an earlier read is used again.

/// Selects the EDID segment of the requests that follow: 0x72:0xEE. TmpD.segment also gets the number, since it always
/// holds the segment that was written to the chip last.
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

/// Whether the parse ends here, because a transfer failed or the EDID has an error.
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

/// Checks header, checksum and version of block 0, in this order. Ends at the first one that is wrong.
std::uint8_t BasicParse(std::uint8_t* err, std::uint16_t* crc);

/// Dumps and checks the first block of the current segment: EDID_ERR_CHECKSUM.
std::uint8_t CheckCRCof1stEDIDBlock(std::uint8_t* err, std::uint16_t* crc);

/// Dumps and checks the second block of the current segment: EDID_ERR_CHECKSUM.
std::uint8_t CheckCRCof2ndEDIDBlock(std::uint8_t* err, std::uint16_t* crc);

// ---- Timings: EDIDTimings.cpp ----

namespace edid {

/// The numbers that identify a format: the totals in pixels and lines (lines of a field if interlaced), and the front
/// porch in pixels.
struct NativeTiming {
    std::uint16_t hTotal, vTotal, hFrontPorch;
};

/// SearchNativeFormat returns this if no format matches.
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

/// Each reports one part of a detailed timing: descriptor bytes 2 to 7, 8 to 11, 12 to 17.
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

/// Sets *isCEA to 1 if the block at this offset of the current segment has the tag of a CEA-861 extension, else to 0.
/// Leaves *isCEA unchanged if the read fails.
std::uint8_t CheckFor861BExtensionOffset(std::uint8_t* isCEA, std::uint8_t offset, std::uint16_t* crc);

/// Walks the data block collection for the first vendor-specific block. Sets gbVendorSpecificBlockExist.
/// @param address  receives the block's offset in the current segment, or 0 if there is none
std::uint8_t NewSearchForVendorSpecificBlock(std::uint8_t* address, std::uint16_t* crc);

/// Checks the HDMI signature (EDID_ERR_NOT_HDMI) and sets gwCECPhysicalAddr.
/// @return the result of its last read; failures of the reads before are not reported
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

/// Replaces the offset of a data block by the block's header byte. Leaves the offset unchanged if the read fails.
std::uint8_t GetCEA861BBlockTag(std::uint16_t* crc, std::uint8_t* offset);

/// Each reports the data block whose header is at this offset.
std::uint8_t ParsingVideoDATABlock(std::uint16_t* crc, std::uint8_t offset);
std::uint8_t ParsingAudioDATABlock(std::uint16_t* crc, std::uint8_t offset);
std::uint8_t ParsingSpeakerDATABlock(std::uint16_t* crc, std::uint8_t offset);

/// Reports a group of short video descriptors and stores it in EdidVFmts, which has room for 30. The caller passes at
/// most 8 descriptors.
/// @return the code of the last descriptor that is marked native, 0 if there is none
std::uint8_t ParsingShortTimeDescriptorBlock(const std::uint8_t* bytes, std::uint8_t count);

/// Reports one short audio descriptor.
void ParsingShortAudioDescriptor(std::span<const std::uint8_t, 3> bytes);

// ---- Bounds ----
// The largest number of DDC transfers of one parse, whatever a monitor sends and however its bytes change between two
// reads. The longest parse is that of an EDID with several extensions, where all 256 segments are searched and the last
// one has the CEA block.
//
// Two loops go over the data blocks. Each starts 4 bytes into the CEA block and goes on by at least one byte, up to the
// offset where the detailed timings start, at most 255. The longest data block takes one read for its tag, one for its
// length, and 11 for its audio descriptors. 11 descriptors belong to a length of 31, which a monitor can send in the
// second read even if its tag byte was 0 in the first one. Detailed timings start at offset 1 or later and are 18 bytes
// apart. The last one that is read is the first one above 108, so there are at most seven, with four reads each.

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
