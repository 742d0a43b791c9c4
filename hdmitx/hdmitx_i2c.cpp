#include "hdmitx/hdmitx_i2c.h"

#include "app/transfer.h"

std::uint8_t I2C_Write(std::uint8_t devaddr, std::uint8_t reg, const std::uint8_t* buf, std::uint16_t count) {
    for (unsigned i = 0; i < count; ++i) {
        write_hdmi(devaddr, static_cast<std::uint8_t>(reg + i), buf[i]);
    }
    return 0;
}

std::uint8_t I2C_Read(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t* buf, std::uint16_t count) {
    for (unsigned i = 0; i < count; ++i) {
        buf[i] = static_cast<std::uint8_t>(read_hdmi(devaddr, reg));
    }
    return 0;
}

std::uint8_t HDTX_MultiWrite(std::uint8_t devaddr, std::uint8_t reg, const std::uint8_t* buf, std::uint16_t count) {
    return I2C_Write(devaddr, reg, buf, count);
}

std::uint8_t HDTX_MultiRead(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t* buf, std::uint16_t count) {
    return I2C_Read(devaddr, reg, buf, count);
}

std::uint8_t HDTX_RegWrite(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t value) {
    return HDTX_MultiWrite(devaddr, reg, &value, 1);
}

std::uint8_t HDTX_RegRead(std::uint8_t devaddr, std::uint8_t reg) {
    std::uint8_t value = 0;
    HDTX_MultiRead(devaddr, reg, &value, 1);
    return value;
}

std::uint8_t HDTX_RegField(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t pos, std::uint8_t width,
                           std::uint8_t data) {
    const unsigned old = HDTX_RegRead(devaddr, reg);
    // A shift by 32 bits or more would be undefined behaviour. These limits avoid it and change no result. A width of 8
    // covers the whole register, and a position of 8 lies outside it.
    const unsigned mask = width < 8 ? (1U << width) - 1U : 0xFFU;
    const unsigned shift = pos < 8 ? pos : 8;
    return HDTX_RegWrite(devaddr, reg, static_cast<std::uint8_t>((old & ~(mask << shift)) | ((data & mask) << shift)));
}
