#include "kova/regs.h"

#include "app/transfer.h"

using kova::AsResult;

namespace {

// Address of the chip on the bus.
constexpr std::uint8_t kSlave = 0xDC;

} // namespace

std::uint8_t KOVA_I2C_Write(std::uint8_t /*slave*/, std::uint16_t addr, const std::uint16_t* buf, std::uint16_t count) {
    for (unsigned i = 0; i < count; i += 2) {
        const std::uint16_t word = buf[i / 2];
        write_kova(s_fd, static_cast<std::uint16_t>(addr + i / 2), static_cast<std::uint8_t>(word >> 8),
                   static_cast<std::uint8_t>(word & 0xFF));
    }
    return 0;
}

std::uint8_t KOVA_I2C_Read(std::uint8_t /*slave*/, std::uint16_t addr, std::uint16_t* buf, std::uint16_t count) {
    for (unsigned k = 0; k < count / 2U; ++k) {
        // The first byte of a transfer is the high byte of the register. A failed transfer returns -1, which becomes
        // 0xFFFF here.
        const auto result = static_cast<std::uint32_t>(read_kova(s_fd, static_cast<std::uint16_t>(addr + k), 0, 0));
        buf[k] = static_cast<std::uint16_t>((result & 0xFF) << 8 | ((result >> 8) & 0xFF));
    }
    return 0;
}

std::uint8_t KOVA_MultiWrite(std::uint16_t addr, const std::uint16_t* buf, std::uint16_t count) {
    return AsResult(KOVA_I2C_Write(kSlave, addr, buf, count));
}

std::uint8_t KOVA_MultiRead(std::uint16_t addr, std::uint16_t* buf, std::uint16_t count) {
    return AsResult(KOVA_I2C_Read(kSlave, addr, buf, count));
}

std::uint8_t KOVA_RegWrite(std::uint16_t addr, std::uint16_t value) {
    return AsResult(KOVA_MultiWrite(addr, &value, sizeof value));
}

std::uint8_t KOVA_RegRead(std::uint16_t addr, std::uint16_t* value) {
    return AsResult(KOVA_MultiRead(addr, value, sizeof *value));
}

std::uint8_t KOVA_RegField(std::uint16_t addr, std::uint16_t pos, std::uint16_t width, std::uint16_t data) {
    if (pos > 15 || width == 0 || width > 16 || pos + width > 16) {
        return KOVA_INVALID_PARAM;
    }
    std::uint16_t old = 0;
    if (KOVA_RegRead(addr, &old) != KOVA_NO_ERROR) {
        return KOVA_I2C_ERROR;
    }
    const unsigned mask = ((1U << width) - 1U) & 0xFFFFU;
    const unsigned value = (old & ~(mask << pos)) | ((data & mask) << pos);
    return AsResult(KOVA_RegWrite(addr, static_cast<std::uint16_t>(value)));
}
