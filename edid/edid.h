#pragma once
// The sink capability reader: reads the monitor's EDID over the transmitter's DDC master, reports what it finds on
// standard error and leaves the results below. For one thread alone, the one that runs the transmitter's handlers.

#include "MDDC.h" // DDC transfers, reading of raw EDID bytes

#include <cstdint>

/// Why a parse ended without an HDMI sink. Transfer failures are results of ParseEDID, not error codes.
enum EDIDErrCode : std::uint8_t {
    EDID_ERR_HEADER = 8,        ///< block 0 does not start with the EDID header
    EDID_ERR_VERSION = 9,       ///< not EDID version 1.3 or a later 1.x
    EDID_ERR_CHECKSUM = 10,     ///< a block's bytes do not add up to 0
    EDID_ERR_NO_EXTENSION = 12, ///< no extension block: a DVI sink; block 0's timings were parsed
    EDID_ERR_NOT_HDMI = 13,     ///< no HDMI vendor-specific data block
    EDID_ERR_BLOCK_MAP = 14,    ///< several extensions, but block 1 is not a block map
};

/// EDIDParseResult::OutMode of an HDMI sink; a DVI sink has 0.
inline constexpr std::uint8_t EDID_OUTMODE_HDMI = 2;

/// What one parse found.
struct EDIDParseResult {
    std::uint8_t ErrCode; ///< 0 when the sink can be used as parsed, else an EDIDErrCode
    std::uint8_t OutMode; ///< EDID_OUTMODE_HDMI, or 0 for DVI
    std::uint16_t CRC16;  ///< check value of the bytes read: equal for two parses of the same EDID
};

// ---- Results ----
// They keep the values of the last parse that reached them. OutVideoMode (kova/formats.h) is set by a parse as well.

extern std::uint8_t gbExtensionBlockExist;      ///< 1 when the EDID has an extension block
extern std::uint8_t gbVendorSpecificBlockExist; ///< 1 when the CEA block has a vendor-specific data block
extern std::uint16_t gwCECPhysicalAddr;         ///< CEC physical address, 0 when it could not be read
extern std::uint8_t gbMonCap;                   ///< capability byte of the CEA block
extern std::uint8_t gbNativeVIC;     ///< native format of a DVI sink: 2 to 17, 24 for none; 0 after a CEA block
extern std::uint8_t gbNativeVICtemp; ///< CEA-861 code of the last video format marked native, 0 for none

// ---- Parse and accessors ----

/// Reads and parses the sink's EDID: base block, then its CEA-861 extension. Expects segment 0 to be selected, and
/// leaves it selected (0x72:0xEE). A parse that ends in another one, selected before or by a failed read of its
/// register, fails.
/// @param result  filled in as far as the parse came; valid when 0 is returned
/// @return 0, or the result of the transfer that failed, see MDDC.h
std::uint8_t ParseEDID(EDIDParseResult* result);

/// Hands out the CEC physical address.
/// @param address  receives it, or 0 when the last parse saw no vendor-specific data block
/// @return 1 when there is an address, else 0
std::uint8_t ReturnCECPhyAddr(std::uint16_t* address);

/// Hands out the short video descriptors of the last group, as the monitor sent them, and reports their number: that of
/// the last group with a native one.
/// @param destination  room for 8 bytes   @param count  receives the number of bytes copied
void LoadSupportHDMIVideoOut(std::uint8_t* destination, std::uint8_t* count);

/// @return gbNativeVIC without its top bit, reported on standard error as well
std::uint8_t GetEDIDNativeVIC();

/// Stores gbNativeVIC in *vic.
void GetNativeVIC(std::uint8_t* vic);
