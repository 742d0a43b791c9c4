#include "kova/memory.h"

#include "kova/field.h"
#include "kova/state.h"

#include <algorithm>
#include <array>

using namespace kova;

namespace {

// clang-format off
constexpr Field kSelect      {0x012,  0, 2};
constexpr Field kFlag2       {0x022,  4, 2};
constexpr Field kFlag1       {0x022,  2, 2};
constexpr Field kMode        {0x022,  0, 2};
constexpr Field kFlag0       {0x03C, 12, 2};
constexpr Field kAlwaysOne   {0x454,  3, 1};
constexpr Field kAlwaysZero  {0x455,  0, 2};
constexpr Field kPrecision10 {0x455,  2, 1}; // 1: 10 bits, 0: 8 bits
// clang-format on

/// The widest picture that is stored with 10 bits.
constexpr std::uint16_t kWidest10Bit = 768;

/// Output formats for which the precision is 8 bits, whatever the width of the stored picture is.
constexpr std::array<std::uint8_t, 7> k8BitOutputs{
    VIDOUT_1920x1080p60, VIDOUT_1920x1080p50, VIDOUT_1024x768p75,  VIDOUT_1280x1024p60,
    VIDOUT_1280x1024p75, VIDOUT_1440x900p60,  VIDOUT_1680x1050p60,
};

std::uint8_t WritePrecision(const SrcVideoInfo& src) { return Write(kPrecision10, (src.flags & VIDFLAG_8BIT) == 0); }

} // namespace

std::uint8_t KOVAAPI_SetMemPrecision(SrcVideoInfo* src, const OutVideoInfo* out) {
    if (WritePrecision(*src)) {
        return KOVA_I2C_ERROR;
    }
    if (stKOVADstWIN.w > kWidest10Bit || std::ranges::find(k8BitOutputs, out->frmt) != k8BitOutputs.end()) {
        SetBits(src->flags, VIDFLAG_8BIT, true);
    }
    return AsResult(WritePrecision(*src) || LocalUpdate());
}

std::uint8_t KOVAAPI_SetMemory(const MemoryConfig* mem) {
    const auto flagValue = [mem](unsigned bit) -> std::uint16_t { return (mem->flags & 1U << bit) != 0 ? 0 : 2; };
    return AsResult(Write(kSelect, mem->select != 0 ? 3 : 0) || Write(kFlag2, flagValue(2))
                    || Write(kFlag1, flagValue(1)) || Write(kMode, mem->mode) || Write(kFlag0, flagValue(0))
                    || Write(kAlwaysOne, 1) || Write(kAlwaysZero, 0) || LocalUpdate());
}
