#pragma once
// One register transfer through the board's device node, to the video processor or to one of the transmitter's two
// register pages. Only device.cpp calls ioctl.

#include <array>
#include <cstddef>
#include <cstdint>

/// One register transfer, as the kernel driver takes and returns it.
struct kova_xfer {
    std::uint16_t addr;               ///< register address, host byte order; a transmitter offset is zero-extended
    std::array<std::uint8_t, 2> data; ///< video processor: bits 15..8, bits 7..0; transmitter: value, 0
};
static_assert(sizeof(kova_xfer) == 4 && offsetof(kova_xfer, data) == 2, "the driver's record has no padding");

/// Request codes of the kernel driver: plain numbers, no direction or size encoding. They are free on PowerPC, where
/// the kernel's own requests to any file carry other bits. On x86 and ARM number 2 is one of those, FIGETBSZ: the
/// kernel answers it before any driver sees it.
enum KovaRequest : std::uint8_t {
    KOVA_310_READ = 0,
    KOVA_310_WRITE = 1,
    KOVA_310_READ_HDTX_SLV0 = 2,
    KOVA_310_WRITE_HDTX_SLV0 = 3,
    KOVA_310_READ_HDTX_SLV1 = 4,
    KOVA_310_WRITE_HDTX_SLV1 = 5,
};

/// Descriptor of the open device node, 0 before start-up; written by open_kova once, before a second thread exists.
extern std::int32_t s_fd;

/// Writes one video processor register after a pause of 100 µs. The first pause that fails is reported on standard
/// error.
/// @param d0  bits 15..8   @param d1  bits 7..0
/// @return 1, or -1 with a message on standard output when the request failed.
std::int32_t write_kova(std::int32_t fd, std::uint16_t addr, std::uint8_t d0, std::uint8_t d1);

/// Reads one video processor register after a pause, as write_kova.
/// @param d0, d1  the record's data bytes before the request
/// @return the record's first byte (bits 15..8 of the register) in bits 7..0 and its second in bits 15..8, or -1 with a
///         message on standard output when the request failed.
std::int32_t read_kova(std::int32_t fd, std::uint16_t addr, std::uint8_t d0, std::uint8_t d1);

/// Writes one transmitter register, without a pause, and traces the transfer on standard output.
/// @param devaddr  0x72 or 0x7A: the register page; any other: -1 and no request
/// @return 1, or -1 with a message on standard output when the request failed.
std::int32_t write_hdmi(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t value);

/// Reads one transmitter register, without a pause, and traces the transfer on standard output.
/// @param devaddr  0x72 or 0x7A: the register page; any other: -1 and no request
/// @return the register's value in bits 7..0 (the driver's second byte in bits 15..8), or -1 with a message on standard
///         output when the request failed.
std::int32_t read_hdmi(std::uint8_t devaddr, std::uint8_t reg);
