#include "kova/input_port.h"

#include "kova/field.h"
#include "kova/ports.h"

using namespace kova;

namespace {

constexpr Field kDataMapMode{0x400, 14, 2};
constexpr Field kHTotal{0x401, 4, 12};
constexpr Field kSourceOnPortA{0x4B0, 3, 1};

struct ModeRow {
    std::uint16_t flags;
    std::uint8_t syncType1, syncType2;
};

// clang-format off
constexpr std::array<ModeRow, kSrcModes> kModes{{
    // flags  sync type
    {0x8004, 0, 0}, // RGB444_8
    {0x8005, 0, 0}, // YUV444_8
    {0x8007, 2, 1}, // EMB422_8
    {0x8007, 0, 1}, // SEP422_8
    {0x8003, 2, 1}, // EMB422_10
    {0x8003, 0, 1}, // SEP422_10
    {0x8007, 1, 2}, // MUX656_8
    {0x8003, 1, 2}, // MUX656_10
    {0x0007, 1, 2}, // MUX656_8_B
    {0x0003, 1, 2}, // MUX656_10_B
}};
// clang-format on

// The flags that come from the format table. All other flags follow from the mode and the format.
constexpr unsigned kTableFlags = 0x3FF8;

std::uint16_t Flags(std::uint8_t frmt, std::uint16_t table, std::uint16_t mode) {
    return static_cast<std::uint16_t>((table & kTableFlags) | mode | (IsHdSrcFormat(frmt) ? unsigned{VIDFLAG_HD} : 0U));
}

// The position register holds x in bits 8..0 and y in bits 15..9.
std::uint16_t Position(std::uint16_t x, std::uint16_t y) { return static_cast<std::uint16_t>((y & 0x7FU) << 9 | x); }

std::uint8_t WriteClockDelay(const SrcVideoInfo& src) {
    if (src.pClockDelay == nullptr) {
        return KOVA_NO_ERROR;
    }
    return KOVA_RegWrite(PortOf(src).clockDelay, DelayValue(*src.pClockDelay));
}

std::uint8_t SetOption(SrcVideoInfo& src, SrcAux bit, Field field, std::uint8_t on) {
    SetBits(src.auxFlags, bit, on != 0);
    return SetAndUpdate(field, on != 0);
}

std::uint8_t SetOptionOfPortA(SrcVideoInfo& src, SrcAux bit, Field field, std::uint8_t on) {
    if (!OnPortA(src)) {
        return KOVA_NO_ERROR;
    }
    return SetOption(src, bit, field, on);
}

} // namespace

std::uint8_t KOVAAPI_SetSrcPortMode(SrcVideoInfo* src) {
    if (src->frmt >= VIDSRC_COUNT || src->mode >= kSrcModes) {
        return KOVA_INVALID_FORMAT;
    }
    const SrcVideoRow& row = defKOVASrcVideo[src->frmt];
    const ModeRow& mode = kModes[src->mode];
    src->hTotal = row.hTotal;
    src->flags = Flags(src->frmt, row.flags, mode.flags);
    src->stActive.w = row.width;
    src->stActive.h = row.height;

    const PortRegs& port = PortOf(*src);
    // clang-format off
    return AsResult(Write(kSyncType1, mode.syncType1)
                 || Write(kSyncType2, mode.syncType2)
                 || Write(port.scan, (src->flags & VIDFLAG_PROGRESSIVE) != 0)
                 || Write(kHTotal, src->hTotal)
                 || Write(kSourceOnPortA, OnPortA(*src))
                 || KOVA_RegWrite(port.position, Position(src->stClip.x, src->stClip.y))
                 || KOVAAPI_SetSrcVideoAUX(src));
    // clang-format on
}

std::uint8_t KOVAAPI_SetSrcVideoAUX(const SrcVideoInfo* src) {
    const PortRegs& port = PortOf(*src);
    // Port B has fixed values for these two options.
    const bool compHsync = OnPortA(*src) && (src->auxFlags & SRCAUX_COMP_HSYNC) != 0;
    const bool inputField = !OnPortA(*src) || (src->auxFlags & SRCAUX_INPUT_FIELD) != 0;
    // clang-format off
    return AsResult(Write(port.compHsync, compHsync)
                 || Write(port.highTopField, (src->auxFlags & SRCAUX_HIGH_TOP_FIELD) != 0)
                 || Write(port.inputField, inputField)
                 || Write(port.ycOffset, src->ycOffset)
                 || Write(port.cbcrSwap, (src->auxFlags & SRCAUX_CBCR_SWAP) != 0)
                 || LocalUpdate()
                 || WriteClockDelay(*src));
    // clang-format on
}

std::uint8_t KOVAAPI_SetSrcCompHsync(SrcVideoInfo* src, std::uint8_t on) {
    return SetOptionOfPortA(*src, SRCAUX_COMP_HSYNC, kPortA.compHsync, on);
}

std::uint8_t KOVAAPI_SetSrcInputFieldID(SrcVideoInfo* src, std::uint8_t on) {
    return SetOptionOfPortA(*src, SRCAUX_INPUT_FIELD, kPortA.inputField, on);
}

std::uint8_t KOVAAPI_SetSrcHighTopFieldID(SrcVideoInfo* src, std::uint8_t on) {
    return SetOption(*src, SRCAUX_HIGH_TOP_FIELD, PortOf(*src).highTopField, on);
}

std::uint8_t KOVAAPI_SetSrcYCOffset(SrcVideoInfo* src, std::uint8_t value) {
    src->ycOffset = value;
    return SetAndUpdate(PortOf(*src).ycOffset, value);
}

std::uint8_t KOVAAPI_SetSrcCbCrSwap(SrcVideoInfo* src, std::uint8_t on) {
    return SetOption(*src, SRCAUX_CBCR_SWAP, PortOf(*src).cbcrSwap, on);
}

std::uint8_t KOVAAPI_SetSrcClockDelay(SrcVideoInfo* src, const ClockDelay* delay) {
    src->pClockDelay = delay;
    return WriteClockDelay(*src);
}

std::uint8_t KOVAAPI_SetSrcPosition(SrcVideoInfo* src, std::uint16_t x, std::uint16_t y) {
    src->stClip.x = x;
    src->stClip.y = y;
    return AsResult(KOVA_RegWrite(PortOf(*src).position, Position(x, y)) || LocalUpdate());
}

std::uint8_t KOVAAPI_SetInDataMapMode(std::uint8_t value) { return SetAndUpdate(kDataMapMode, value); }
