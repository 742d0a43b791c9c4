#pragma once
// Register transfers through the device node of the board. They go to the video processor or to one of the two register
// pages of the transmitter. Only device.cpp calls ioctl.

#include <array>
#include <cstddef>
#include <cstdint>

/// One register transfer. The kernel driver reads this record and, on a read request, writes the data bytes.
struct kova_xfer {
    std::uint16_t addr;               ///< register address in host byte order; a transmitter offset is zero-extended
    std::array<std::uint8_t, 2> data; ///< video processor: bits 15..8, then bits 7..0; transmitter: the value, then 0
};
static_assert(sizeof(kova_xfer) == 4 && offsetof(kova_xfer, data) == 2, "the driver's record has no padding");

/// Request codes of the kernel driver. They are plain numbers without direction and size bits. On PowerPC the requests
/// of the kernel itself use other numbers, so these six are free. On x86 and ARM, number 2 is the kernel request
/// FIGETBSZ. The kernel answers it and does not pass it to a driver.
enum KovaRequest : std::uint8_t {
    KOVA_310_READ = 0,
    KOVA_310_WRITE = 1,
    KOVA_310_READ_HDTX_SLV0 = 2,
    KOVA_310_WRITE_HDTX_SLV0 = 3,
    KOVA_310_READ_HDTX_SLV1 = 4,
    KOVA_310_WRITE_HDTX_SLV1 = 5,
};

/// Descriptor of the open device node. It is 0 before start-up. open_kova writes it once, before a second thread
/// exists.
extern std::int32_t s_fd;

/// Writes one video processor register, after a pause of 100 µs. The first pause that fails is reported on standard
/// error.
/// @param d0  bits 15..8 of the register   @param d1  bits 7..0 of the register
/// @return 1. When the request fails: -1, after a message on standard output.
std::int32_t write_kova(std::int32_t fd, std::uint16_t addr, std::uint8_t d0, std::uint8_t d1);

/// Reads one video processor register, after the same pause as write_kova.
/// @param d0, d1  the function stores these in the two data bytes of the record before the request
/// @return bits 15..8 of the register in bits 7..0, and bits 7..0 of the register in bits 15..8. When the request
///         fails: -1, after a message on standard output.
std::int32_t read_kova(std::int32_t fd, std::uint16_t addr, std::uint8_t d0, std::uint8_t d1);

/// Writes one transmitter register, without a pause. A successful transfer prints a trace line on standard output.
/// @param devaddr  register page: 0x72 or 0x7A. Any other value gives -1 without a request.
/// @return 1. When the request fails: -1, after a message on standard output.
std::int32_t write_hdmi(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t value);

/// Reads one transmitter register, without a pause. A successful transfer prints a trace line on standard output.
/// @param devaddr  register page: 0x72 or 0x7A. Any other value gives -1 without a request.
/// @return the register value in bits 7..0, and the second data byte of the driver in bits 15..8. When the request
///         fails: -1, after a message on standard output.
std::int32_t read_hdmi(std::uint8_t devaddr, std::uint8_t reg);
