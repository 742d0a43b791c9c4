#pragma once
// The sink capability reader. It reads the monitor's EDID over the transmitter's DDC master, reports the contents on
// standard error, and stores the results below. Only one thread may use it: the thread that runs the transmitter's handlers.

#include "MDDC.h" // DDC transfers, reading of raw EDID bytes

#include <cstdint>

/// Why a parse did not find an HDMI sink. A failed transfer is not one of these codes but a result of ParseEDID.
enum EDIDErrCode : std::uint8_t {
    EDID_ERR_HEADER = 8,        ///< block 0 does not start with the EDID header
    EDID_ERR_VERSION = 9,       ///< not EDID version 1.3 or a later 1.x
    EDID_ERR_CHECKSUM = 10,     ///< a block's bytes do not add up to 0
    EDID_ERR_NO_EXTENSION = 12, ///< no extension block, so a DVI sink; the timings of block 0 were parsed
    EDID_ERR_NOT_HDMI = 13,     ///< no HDMI vendor-specific data block
    EDID_ERR_BLOCK_MAP = 14,    ///< several extensions, but block 1 is not a block map
};

/// The OutMode of an HDMI sink. A DVI sink has 0.
inline constexpr std::uint8_t EDID_OUTMODE_HDMI = 2;

/// The result of one parse.
struct EDIDParseResult {
    std::uint8_t ErrCode; ///< 0 if no error was found, else an EDIDErrCode
    std::uint8_t OutMode; ///< EDID_OUTMODE_HDMI, or 0 for DVI
    std::uint16_t CRC16;  ///< CRC of the bytes read; two parses of the same EDID give the same CRC
};

// ---- Results ----
// A parse that ends early leaves some of these as the parse before set them. A parse also sets OutVideoMode
// (kova/formats.h).

extern std::uint8_t gbExtensionBlockExist;      ///< 1 if the EDID has an extension block
extern std::uint8_t gbVendorSpecificBlockExist; ///< 1 if the CEA block has a vendor-specific data block
extern std::uint16_t gwCECPhysicalAddr;         ///< CEC physical address, 0 if it could not be read
extern std::uint8_t gbMonCap;                   ///< capability byte of the CEA block
extern std::uint8_t gbNativeVIC;     ///< native format of a DVI sink: 2 to 17, 24 for none; 0 after a CEA block
extern std::uint8_t gbNativeVICtemp; ///< CEA-861 code of the last video format marked native, 0 for none

// ---- Parse and accessors ----

/// Reads and parses the sink's EDID: the base block, then the CEA-861 extension. Segment 0 must be selected before
/// (0x72:0xEE), and is selected afterwards. If another segment is selected at the end of the parse, because it was so
/// before or because a read of the segment register failed, the parse fails.
/// @param result  filled in as far as the parse came; valid if 0 is returned
/// @return 0, or the result of the transfer that failed (see MDDC.h)
std::uint8_t ParseEDID(EDIDParseResult* result);

/// Hands out the CEC physical address.
/// @param address  receives the address, or 0 if the last parse found no vendor-specific data block
/// @return 1 if there is an address, else 0
std::uint8_t ReturnCECPhyAddr(std::uint16_t* address);

/// Hands out the short video descriptors of the last group, as the monitor sent them. The number of them, which is that of
/// the last group with a native format, is reported on standard error.
/// @param destination  room for 8 bytes   @param count  receives the number of bytes copied
void LoadSupportHDMIVideoOut(std::uint8_t* destination, std::uint8_t* count);

/// @return gbNativeVIC without its top bit. The value is also reported on standard error.
std::uint8_t GetEDIDNativeVIC();

/// Stores gbNativeVIC in *vic.
void GetNativeVIC(std::uint8_t* vic);
