#pragma once
// The transmitter's DDC master: short transfers between the monitor's DDC channel and a buffer. Registers 0x72:0xEC to
// 0xF4. Every register access is a driver call, so transfers stay short: 8 bytes at most for the EDID.
//
// Transfer results: an MDDCResult, or what the register layer returned.

#include <cstdint>

/// How a transfer ended, by its last status. What tells the chip's error conditions apart is not known.
enum MDDCResult : std::uint8_t {
    MDDC_DONE = 0,
    MDDC_ERROR_BIT6 = 3, ///< status bit 6; a channel that cannot be read at all shows it too
    MDDC_ERROR_BIT5 = 4, ///< status bit 5
    MDDC_ERROR_BIT3 = 5, ///< status bit 3
};

/// One transfer. The first seven fields go to registers 0xED to 0xF3 in this order, so the command starts it.
struct MDDCRequest {
    std::uint8_t deviceAddress;
    std::uint8_t segment;
    std::uint8_t offset;
    std::uint8_t countLow;
    std::uint8_t countHigh; ///< for the chip only; the transfer routines count by countLow
    std::uint8_t status;    ///< 0
    std::uint8_t command;
    std::uint8_t* data; ///< the caller's bytes to send, or room for those to receive; null once they are transferred
};

/// The request of the EDID transfer in hand: one at a time.
extern MDDCRequest TmpD;

/// Writes count bytes to consecutive page 0 registers from reg on.
/// @return the register layer's result
std::uint8_t BlockWriteHDMITXP0(std::uint8_t reg, std::uint8_t count, const std::uint8_t* data);

/// Reads count bytes from the one page 0 register reg: this drains the FIFO.
/// @return the register layer's result
std::uint8_t BlockReadHDMITXP0(std::uint8_t reg, std::uint8_t count, std::uint8_t* data);

/// Replaces a status byte by its MDDCResult; of several error bits the highest counts.
void ConvertMDDCStateIntoErrCode(std::uint8_t& state);

/// Carries out a read. A transfer that ends in error or not in time is aborted.
/// @return the transfer result. A timed-out transfer has that of its last status, which may be 0; its buffer is as
///         it was.
std::uint8_t BlockRead_MDDC(MDDCRequest* request);

/// Carries out a write. Aborts and result as BlockRead_MDDC.
std::uint8_t BlockWrite_MDDC(MDDCRequest* request);

/// Reads count bytes of the EDID from an offset within the segment that 0x72:0xEE selects.
/// @return the transfer result
std::uint8_t BlockReadEDID(std::uint8_t count, std::uint8_t offset, std::uint8_t* buffer);

/// Writes count bytes to the EDID device, at an offset within segment 0.
/// @return the transfer result
std::uint8_t BlockWriteEDID(std::uint8_t count, std::uint8_t offset, std::uint8_t* buffer);
