#pragma once
// The EDID reader. It reads the monitor's EDID through the transmitter's DDC master, prints what it finds on
// standard error and stores the results in the variables below. An application includes this header to use the reader.
//
// Only one thread may call these functions: the thread that runs the transmitter's handlers. The reader uses no lock.

#include "MDDC.h" // DDC transfers, reading of raw EDID bytes

#include <cstdint>

/// Why a parse found no HDMI sink. A failed transfer has no code here. ParseEDID returns its MDDCResult.
enum EDIDErrCode : std::uint8_t {
    EDID_ERR_HEADER = 8,        ///< Block 0 does not start with the EDID header.
    EDID_ERR_VERSION = 9,       ///< The EDID version is not 1.3 or a later 1.x.
    EDID_ERR_CHECKSUM = 10,     ///< The sum of a block's bytes is not 0, modulo 256.
    EDID_ERR_NO_EXTENSION = 12, ///< The EDID has no extension block, so the sink is a DVI sink.
    EDID_ERR_NOT_HDMI = 13,     ///< The extension block has no HDMI signature, so the sink is a DVI sink.
    EDID_ERR_BLOCK_MAP = 14,    ///< There are several extension blocks, but block 1 is not a block map.
};

/// OutMode of an HDMI sink. A DVI sink has 0.
inline constexpr std::uint8_t EDID_OUTMODE_HDMI = 2;

/// Result of one parse.
struct EDIDParseResult {
    std::uint8_t ErrCode; ///< 0 when the sink can be used as parsed, else an EDIDErrCode.
    std::uint8_t OutMode; ///< EDID_OUTMODE_HDMI for an HDMI sink, 0 for a DVI sink.
    std::uint16_t CRC16;  ///< CRC of the bytes read. Two parses of the same EDID give the same CRC.
};

// ---- Results ----
// Each variable keeps its value until a later parse writes it. A parse also writes OutVideoMode (kova/formats.h).

extern std::uint8_t gbExtensionBlockExist;      ///< 1 when the EDID has an extension block, else 0.
extern std::uint8_t gbVendorSpecificBlockExist; ///< 1 when the CEA block has a vendor-specific data block, else 0.
extern std::uint16_t gwCECPhysicalAddr;         ///< CEC physical address. 0 when it could not be read.
extern std::uint8_t gbMonCap;                   ///< Capability byte of the CEA block (offset 3).
extern std::uint8_t gbNativeVIC;     ///< Output format of a DVI sink: 2 to 17; 24: none. A parsed CEA block sets 0.
extern std::uint8_t gbNativeVICtemp; ///< CEA-861 code of the last video format marked native. 0 for none.

// ---- Parse and accessors ----

/// Reads and parses the sink's EDID: block 0 first, then its CEA-861 extension. Prints a report on standard error.
/// Segment 0 must be selected (0x72:0xEE = 0) before the call. It is selected again at the end.
/// @param result  receives the result of the parse. It is valid only when the function returns 0.
/// @return 0 when every transfer succeeded, also when ErrCode is not 0. Otherwise the result of the transfer that
///         failed (see MDDC.h). MDDC_ERROR_BIT6 also when the parse ended in another segment than 0. This happens when
///         another segment was selected before the call, or when a read of 0x72:0xEE failed.
std::uint8_t ParseEDID(EDIDParseResult* result);

/// Returns the CEC physical address.
/// @param address  receives gwCECPhysicalAddr when gbExtensionBlockExist and gbVendorSpecificBlockExist are both set,
///                 otherwise 0
/// @return 1 when both are set, else 0
std::uint8_t ReturnCECPhyAddr(std::uint16_t* address);

/// Copies the short video descriptors of the last group that was parsed, as the monitor sent them. A group has at most
/// 8 descriptors of one byte. Prints the number of bytes on standard error.
/// @param destination  room for 8 bytes
/// @param count  receives the number of bytes copied. This is the size of the last group that had a native descriptor.
///               That group can be an earlier one than the copied group.
void LoadSupportHDMIVideoOut(std::uint8_t* destination, std::uint8_t* count);

/// Prints bits 6..0 of gbNativeVIC on standard error.
/// @return bits 6..0 of gbNativeVIC
std::uint8_t GetEDIDNativeVIC();

/// Stores gbNativeVIC in *vic.
void GetNativeVIC(std::uint8_t* vic);
