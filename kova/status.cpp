#include "kova/status.h"

#include "kova/field.h"
#include "kova/input_port.h"
#include "kova/output_port.h"
#include "kova/ports.h"
#include "kova/shared_regs.h"

#include <array>
#include <cstddef>

using namespace kova;

namespace {

constexpr Field kPortOptions{0x401, 0, 4};
constexpr Field kOutWindowShown{0x4B0, 5, 1};
constexpr Field kDarkScreen{0x4C2, 1, 1};
constexpr Field kOutPattern{0x4C2, 2, 4};
// The field that freezes the main picture is not known. Of the known fields, the dark screen has the nearest effect.
constexpr Field kMainFreeze = kDarkScreen;

constexpr std::uint16_t kDeviceId = 0x004;
constexpr std::uint16_t kInputPattern = 0x4C0;
constexpr std::uint16_t kStatusSelect = 0x4C6;
constexpr std::uint16_t kMeasure = 0x4D0;
constexpr std::uint16_t kSyncStatus = 0x4E0;
constexpr std::uint16_t kHFrequency = 0x4E2;
constexpr std::uint16_t kLinesField1 = 0x4E8;
constexpr std::uint16_t kLinesField2 = 0x4E9;

// Other bits of kInputPattern. The number of the pattern is in bits 4..2.
constexpr unsigned kPatternRgb = 0x20;
constexpr unsigned kPatternWide = 0x02;
constexpr unsigned kPatternInterlaced = 0x01;

// kReady is in kMeasure, kValid in each result register.
constexpr unsigned kReady = 0x8000;
constexpr unsigned kValid = 0x8000;

constexpr int kMostPolls = 5000;

bool IsMultiplexed(const SrcVideoInfo& src) { return src.mode > SEP422_10; }

// Reads a status register. The select register is written before every such read.
std::uint8_t ReadStatus(std::uint16_t addr, std::uint16_t& value) {
    constexpr std::uint16_t kSelected = 9;
    return AsResult(KOVA_RegWrite(kStatusSelect, kSelected) || KOVA_RegRead(addr, &value));
}

// Polls until the measurement is ready. ready stays false when the chip does not finish it in kMostPolls polls.
std::uint8_t AwaitMeasurement(bool& ready) {
    ready = false;
    for (int poll = 0; poll < kMostPolls && !ready; ++poll) {
        std::uint16_t status = 0;
        if (ReadStatus(kMeasure, status)) {
            return KOVA_I2C_ERROR;
        }
        ready = (status & kReady) != 0;
    }
    return KOVA_NO_ERROR;
}

// Requests one measurement and reads its result registers. When the chip does not finish the measurement, the results
// stay 0. The callers take 0 for an invalid result.
template <std::size_t N>
std::uint8_t Measure(const std::array<std::uint16_t, N>& registers, std::array<std::uint16_t, N>& results) {
    bool ready = false;
    if (KOVA_RegWrite(kMeasure, 1) || LocalUpdate() || AwaitMeasurement(ready)) {
        return KOVA_I2C_ERROR;
    }
    for (std::size_t i = 0; i < N && ready; ++i) {
        if (ReadStatus(registers[i], results[i])) {
            return KOVA_I2C_ERROR;
        }
    }
    return AsResult(KOVA_RegWrite(kMeasure, 0) || LocalUpdate());
}

} // namespace

// ---- Status ----

std::uint8_t KOVAAPI_GetDeviceID(std::uint16_t* id) { return KOVA_RegRead(kDeviceId, id); }

std::uint8_t KOVAAPI_GetSyncStatus(std::uint8_t* status) {
    std::uint16_t value = 0;
    if (ReadStatus(kSyncStatus, value)) {
        return KOVA_I2C_ERROR;
    }
    *status = value & 3;
    return KOVA_NO_ERROR;
}

std::uint8_t KOVAAPI_GetInputPattern(std::uint8_t* pattern) {
    std::uint16_t value = 0;
    if (KOVA_RegRead(kInputPattern, &value)) {
        return KOVA_I2C_ERROR;
    }
    *pattern = (value >> 2) & 7;
    return KOVA_NO_ERROR;
}

// ---- Measurement ----

std::uint8_t KOVAAPI_GetSyncHfreq(std::uint16_t* value) {
    *value = KOVA_NO_MEASUREMENT;
    std::uint8_t status = 0;
    std::uint8_t pattern = 0;
    if (KOVAAPI_GetSyncStatus(&status)) {
        return KOVA_I2C_ERROR;
    }
    if (status != 0) {
        return KOVA_NO_ERROR;
    }
    if (KOVAAPI_GetInputPattern(&pattern)) {
        return KOVA_I2C_ERROR;
    }
    if (pattern != 0) {
        return KOVA_NO_ERROR;
    }
    std::array<std::uint16_t, 1> result{};
    if (Measure({kHFrequency}, result)) {
        return KOVA_I2C_ERROR;
    }
    // A failed read gives 0xFFFF.
    if ((result[0] & kValid) != 0 && result[0] != 0xFFFF) {
        *value = result[0] & 0x7FFF;
    }
    return KOVA_NO_ERROR;
}

std::uint8_t KOVAAPI_GetSyncVline(std::uint16_t* value) {
    *value = KOVA_NO_MEASUREMENT;
    std::array<std::uint16_t, 2> results{};
    if (Measure({kLinesField1, kLinesField2}, results)) {
        return KOVA_I2C_ERROR;
    }
    unsigned lines = 0;
    for (const std::uint16_t result : results) {
        const unsigned count = result & 0xFFFU;
        if ((result & kValid) == 0 || count == 0xFFF) {
            return KOVA_NO_ERROR;
        }
        lines += count;
    }
    *value = static_cast<std::uint16_t>(lines);
    return KOVA_NO_ERROR;
}

// ---- Test patterns ----

std::uint8_t KOVAAPI_SetInputPattern(SrcVideoInfo* src, std::uint16_t pattern) {
    unsigned control = pattern * 4U;
    if ((src->flags & VIDFLAG_YCBCR) == 0) {
        control |= kPatternRgb;
    }
    if (src->stActive.w >= 1024) {
        control |= kPatternWide;
    }
    if ((src->flags & VIDFLAG_PROGRESSIVE) == 0 && !IsMultiplexed(*src)) {
        control |= kPatternInterlaced;
    }
    if (KOVA_RegWrite(kInputPattern, static_cast<std::uint16_t>(control))) {
        return KOVA_I2C_ERROR;
    }
    return pattern != 0 ? KOVAAPI_SetSrcPtrnMode(src) : KOVAAPI_SetSrcPortMode(src);
}

std::uint8_t KOVAAPI_SetSrcPtrnMode(const SrcVideoInfo* src) {
    const PortRegs& port = PortOf(*src);
    if (Write(kPortOptions, 0xC) || KOVA_RegWrite(port.position, 0)) {
        return KOVA_I2C_ERROR;
    }
    // Sync type and scan change only for a multiplexed source.
    if (IsMultiplexed(*src) && (Write(kSyncType1, 0) || Write(kSyncType2, 1) || Write(port.patternScan, 1))) {
        return KOVA_I2C_ERROR;
    }
    return LocalUpdate();
}

std::uint8_t KOVAAPI_SetOutputPattern(std::uint8_t pattern) { return SetAndUpdate(kOutPattern, pattern); }

// ---- Display ----

std::uint8_t KOVAAPI_DisplayOutWindow(std::uint8_t on) { return SetAndUpdate(kOutWindowShown, on != 0); }

std::uint8_t KOVAAPI_EnableDarkScreen(std::uint8_t on) { return SetAndUpdate(kDarkScreen, on != 0); }

std::uint8_t KOVAAPI_EnableMainFreeze(std::uint8_t on) { return SetAndUpdate(kMainFreeze, on != 0); }

std::uint8_t KOVAAPI_PowerSaveEnable(std::uint8_t on) {
    const bool save = on == 1;
    // clang-format off
    return AsResult(KOVAAPI_EnableClockDrive(kAllClocks, !save)
                 || KOVAAPI_EnableDACPortOut(!save)
                 || KOVAAPI_EnableOutPortPin(kAllOutPins, !save)
                 || Write(kVideoPllHold, save)
                 || Write(kMemoryPllHold, save));
    // clang-format on
}
