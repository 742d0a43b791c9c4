#pragma once
// The transmitter's DDC master. It moves a few bytes at a time between the monitor's DDC channel and a buffer. Its
// registers are 0x72:0xEC to 0x72:0xF4. Every register access is a call of the driver, so EDID reads are kept short, at
// most 8 bytes each.
//
// Each transfer function returns an MDDCResult. When a block transfer of the register layer returns a value other than
// 0, the function returns this value. The register layer always returns 0.

#include <cstdint>

/// How a transfer ended, from the last read of the status register 0x72:0xF2. The meaning of the three error bits is
/// not known.
enum MDDCResult : std::uint8_t {
    MDDC_DONE = 0,       ///< No error bit is set.
    MDDC_ERROR_BIT6 = 3, ///< Bit 6 is set. A failed read of the status, which gives 0xFF, has this result too.
    MDDC_ERROR_BIT5 = 4, ///< Bit 5 is set.
    MDDC_ERROR_BIT3 = 5, ///< Bit 3 is set.
};

/// One transfer. The first seven fields are written to registers 0xED to 0xF3 in this order. The command is written
/// last and starts the transfer.
struct MDDCRequest {
    std::uint8_t deviceAddress; ///< DDC address of the device: 0xA0 for the EDID.
    std::uint8_t segment;       ///< E-DDC segment.
    std::uint8_t offset;        ///< Offset at the device, within the segment.
    std::uint8_t countLow;      ///< Number of bytes.
    std::uint8_t countHigh;     ///< Upper byte of the number. The chip gets it, but the functions below ignore it.
    std::uint8_t status;        ///< Always 0.
    std::uint8_t command;       ///< 0x02 read, 0x04 read through the segment pointer, 0x06 write.
    std::uint8_t* data;         ///< The caller's buffer: bytes to send, or room for the bytes to receive.
};

/// The request of the current EDID transfer. Only one transfer may run at a time. The buffer pointer is null when no
/// transfer runs.
extern MDDCRequest TmpD;

/// Writes count bytes to consecutive registers of page 0x72, beginning with reg.
/// @return the result of HDTX_MultiWrite, 0
std::uint8_t BlockWriteHDMITXP0(std::uint8_t reg, std::uint8_t count, const std::uint8_t* data);

/// Reads count bytes, all of them from register reg of page 0x72. This empties the FIFO (0xF4).
/// @return the result of HDTX_MultiRead, 0
std::uint8_t BlockReadHDMITXP0(std::uint8_t reg, std::uint8_t count, std::uint8_t* data);

/// Replaces a value of the status register by the MDDCResult that belongs to it. When several error bits are set, the
/// highest bit determines the result.
void ConvertMDDCStateIntoErrCode(std::uint8_t& state);

/// Reads the bytes that the request describes. Writes 0xF3 = 0x09, then the request to 0xED to 0xF3. Waits until bit 4
/// of 0xF2 is clear, which is the end of the transfer. Then copies the bytes from the FIFO (0xF4) to the buffer.
///
/// The time-out is a number of reads of 0xF2: countLow + 11 for up to 245 bytes, countLow - 245 for more bytes.
/// After an error or a time-out, aborts the transfer: writes 0xF3 = 0x0F, 0xF3 = 0x0A and 0xEC = 0x00.
/// @return MDDC_DONE, or the error of the last status. After a time-out the buffer is unchanged, and the result is
///         MDDC_DONE when the last status has no error bit.
std::uint8_t BlockRead_MDDC(MDDCRequest* request);

/// Writes the bytes that the request describes. Writes 0xF3 and the request like BlockRead_MDDC, then the bytes to the
/// FIFO (0xF4). Waits, aborts and returns like BlockRead_MDDC.
std::uint8_t BlockWrite_MDDC(MDDCRequest* request);

/// Reads bytes of the EDID with BlockRead_MDDC, in the segment that 0x72:0xEE selects. Segment n holds block 2n at
/// offset 0 and block 2n + 1 at offset 128.
/// @param count  number of bytes   @param offset  offset within the segment   @param buffer  receives the bytes
/// @return the result of BlockRead_MDDC
std::uint8_t BlockReadEDID(std::uint8_t count, std::uint8_t offset, std::uint8_t* buffer);

/// Writes bytes to the EDID with BlockWrite_MDDC, always in segment 0.
/// @param count  number of bytes   @param offset  offset within segment 0   @param buffer  the bytes
/// @return the result of BlockWrite_MDDC
std::uint8_t BlockWriteEDID(std::uint8_t count, std::uint8_t offset, std::uint8_t* buffer);
