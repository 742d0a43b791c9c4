#include "kova/irq.h"

#include "kova/field.h"

namespace {

constexpr std::uint16_t kEnable = 0x00E;
constexpr std::uint16_t kStatus = 0x010; // never written: interrupts are acknowledged at their source
constexpr std::uint16_t kSetting14 = 0x014;
constexpr std::uint16_t kSetting16 = 0x016;

std::uint16_t KOVAParseIRQ = 0;

} // namespace

std::uint8_t KOVAAPI_GetParseIRQ() { return KOVA_RegRead(kStatus, &KOVAParseIRQ); }

std::uint8_t KOVAAPI_GetIRQStatus(std::uint16_t irq, std::uint8_t* pending) {
    const unsigned bit = irq < 16 ? 1U << irq : 0;
    *pending = (KOVAParseIRQ & bit) != 0 ? 1 : 0;
    KOVAParseIRQ = static_cast<std::uint16_t>(KOVAParseIRQ & ~bit);
    return KOVA_NO_ERROR;
}

std::uint8_t KOVAAPI_EnableIRQ(std::uint16_t irq, std::uint8_t mode16, std::uint8_t mode14, std::uint8_t enable) {
    return kova::AsResult(KOVA_RegField(kEnable, irq, 1, enable) || KOVA_RegField(kSetting14, irq, 1, mode14)
                          || KOVA_RegField(kSetting16, irq, 1, mode16));
}
