#pragma once
// The transmitter's DDC master, which transfers bytes between the monitor's DDC channel and a buffer. Registers 0x72:0xEC
// to 0xF4. Every register access is a call of the driver, so transfers are short: at most 8 bytes for the EDID.
//
// A transfer result is an MDDCResult, or the result of the register layer.

#include <cstdint>

/// How a transfer ended, from its last status. Which error each status bit stands for is not known.
enum MDDCResult : std::uint8_t {
    MDDC_DONE = 0,
    MDDC_ERROR_BIT6 = 3, ///< status bit 6; also the result if the status cannot be read
    MDDC_ERROR_BIT5 = 4, ///< status bit 5
    MDDC_ERROR_BIT3 = 5, ///< status bit 3
};

/// One transfer. The first seven fields are written to registers 0xED to 0xF3 in this order. The command is the last one
/// and starts the transfer.
struct MDDCRequest {
    std::uint8_t deviceAddress;
    std::uint8_t segment;
    std::uint8_t offset;
    std::uint8_t countLow;
    std::uint8_t countHigh; ///< only for the chip; the transfer routines use countLow alone
    std::uint8_t status;    ///< 0
    std::uint8_t command;
    std::uint8_t* data; ///< the caller's bytes to send, or room for the received bytes; null after the transfer
};

/// The request of the current EDID transfer. Only one transfer may run at a time.
extern MDDCRequest TmpD;

/// Writes count bytes to consecutive page 0 registers from reg on.
/// @return the register layer's result
std::uint8_t BlockWriteHDMITXP0(std::uint8_t reg, std::uint8_t count, const std::uint8_t* data);

/// Reads count bytes, all from the page 0 register reg. This is how the FIFO is read.
/// @return the register layer's result
std::uint8_t BlockReadHDMITXP0(std::uint8_t reg, std::uint8_t count, std::uint8_t* data);

/// Replaces a status byte by its MDDCResult. If several error bits are set, the highest one decides.
void ConvertMDDCStateIntoErrCode(std::uint8_t& state);

/// Carries out a read. A transfer that ends with an error, or does not end in time, is aborted.
/// @return the transfer result. After a time-out this is the result of the last status, which may be 0, and the buffer is
///         unchanged.
std::uint8_t BlockRead_MDDC(MDDCRequest* request);

/// Carries out a write. Aborts and returns as BlockRead_MDDC does.
std::uint8_t BlockWrite_MDDC(MDDCRequest* request);

/// Reads count bytes of the EDID, from this offset in the segment that 0x72:0xEE selects.
/// @return the transfer result
std::uint8_t BlockReadEDID(std::uint8_t count, std::uint8_t offset, std::uint8_t* buffer);

/// Writes count bytes to the EDID device, at an offset within segment 0.
/// @return the transfer result
std::uint8_t BlockWriteEDID(std::uint8_t count, std::uint8_t offset, std::uint8_t* buffer);
