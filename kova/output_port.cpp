#include "kova/output_port.h"

#include "kova/field.h"
#include "kova/shared_regs.h"
#include "kova/state.h"

#include <cstddef>
#include <span>
#include <tuple>

using namespace kova;

namespace {

// ---- Registers ----

constexpr Field kIntVclkSelect{0x018, 2, 1};
constexpr Field kDacOff{0x01E, 0, 1};
constexpr Field kOutPinsOff{0x01E, 1, 4};
constexpr Field kOutVclkDelay{0x024, 0, 3};
constexpr Field kOutVclkBDelay{0x024, 4, 3};
constexpr Field kClocksOff{0x03C, 0, 12};
constexpr Field kClock14Off{0x03C, 14, 1};
constexpr Field kTmdsDriveHigh{0x040, 4, 3};
constexpr Field kTmdsDriveLow{0x040, 0, 4};
constexpr Field kOutSetupLow{0x445, 0, 2};
constexpr Field kOutSetupHigh{0x445, 8, 8};
constexpr Field kDigFormatLow{0x4A2, 0, 4};
constexpr Field kDigFormatHigh{0x4A2, 5, 5};
constexpr Field kDigCbCrSwap{0x4A2, 4, 1};
constexpr Field kDacFormat{0x4A3, 0, 4};
constexpr Field kDacPbPrSwap{0x4A3, 4, 1};
constexpr Field kDeMode{0x4B4, 8, 2};
constexpr Field kHActInvert{0x4B4, 7, 1};
constexpr Field kVActInvert{0x4B4, 6, 1};
constexpr Field kHSyncHigh{0x4B4, 5, 1};
constexpr Field kVSyncHigh{0x4B4, 4, 1};
constexpr Field kHSyncHAct{0x4B4, 3, 1};
constexpr Field kVSyncVAct{0x4B4, 2, 1};

constexpr std::uint16_t kIntVclkDelay = 0x018;
constexpr std::uint16_t kOutControl = 0x01C;
constexpr std::uint16_t kPinsOff = 0x01E;
constexpr std::uint16_t kIntVclk2xDelay = 0x026;
constexpr std::uint16_t kIntDacClkDelay = 0x028;
constexpr std::uint16_t kVclkSource = 0x02A;
constexpr std::uint16_t kVideoPllP = 0x02C, kVideoPllM = 0x02E, kVideoPllS = 0x030;
constexpr std::uint16_t kMemoryPllA = 0x032, kMemoryPllB = 0x034;
constexpr std::uint16_t kVclkSource3 = 0x03A;
constexpr std::uint16_t kClockDrive = 0x03C;
constexpr std::uint16_t kSoftReset = 0x070;
constexpr std::uint16_t kHardReset = 0x072;
constexpr std::uint16_t kSyncSetup = 0x484;
constexpr std::uint16_t kSyncTiming = 0x488;
constexpr std::uint16_t kInterlaced = 0x497;
constexpr std::uint16_t kSyncControl = 0x498;
constexpr std::uint16_t kSyncReset = 0x499;
constexpr std::uint16_t kDacValue = 0x588;
constexpr std::uint16_t kDacIndex = 0x589;

// ---- Modes ----

struct ModeRow {
    std::uint16_t flags;
    std::uint16_t digFormat; // bits 3..0 and 9..5 go to the same bits of 0x4A2; bit 4 of 0x4A2 is the Cb/Cr swap
};

// clang-format off
constexpr std::array<ModeRow, kOutModes> kModes{{
    // flags  format
    {0x0004, 0x104}, // RGB444_8
    {0x0005, 0x044}, // YUV444_8
    {0x0007, 0x06D}, // EMB422_8
    {0x0007, 0x045}, // SEP422_8
    {0x0003, 0x069}, // EMB422_10
    {0x0003, 0x041}, // SEP422_10
    {0x0007, 0x06E}, // MUX656_8
    {0x0003, 0x06A}, // MUX656_10
}};
// clang-format on

// The flags that come from the format table. All other flags follow from the mode and the format.
constexpr unsigned kTableFlags = 0xBFF8;

std::uint16_t Flags(std::uint8_t frmt, std::uint16_t table, std::uint16_t mode) {
    return static_cast<std::uint16_t>((table & kTableFlags) | mode | (IsHdOutFormat(frmt) ? unsigned{VIDFLAG_HD} : 0U));
}

bool Has(const OutVideoInfo& out, VideoFlag flag) { return (out.flags & flag) != 0; }
bool Has(const OutVideoInfo& out, OutAux option) { return (out.auxFlags & option) != 0; }

// A multiplexed output sends luma and chroma of a pixel one after the other, so a line needs twice as many clocks.
// Position x becomes 2 * x - 1. So positions probably count from 1, but this is not known.
void DoubleHorizontalTiming(OutVideoInfo& out) {
    const auto doubledPosition = [](std::uint16_t x) { return static_cast<std::uint16_t>(x * 2 - 1); };
    SyncTiming& sync = out.sync;
    sync[SYNC_H_TOTAL] = static_cast<std::uint16_t>(sync[SYNC_H_TOTAL] * 2);
    sync[SYNC_H_ACTIVE_START] = doubledPosition(sync[SYNC_H_ACTIVE_START]);
    sync[SYNC_H_ACTIVE_END] = doubledPosition(sync[SYNC_H_ACTIVE_END]);
    sync[SYNC_H_SYNC_END] = doubledPosition(sync[SYNC_H_SYNC_END]);
    --sync[SYNC_PLL_S];
    out.stActive.w = static_cast<std::uint16_t>(out.stActive.w * 2);
}

void Complete(OutVideoInfo& out, const ModeRow& mode) {
    const OutVideoRow& row = defKOVAOutVideo[out.frmt];
    out.flags = Flags(out.frmt, row.flags, mode.flags);
    out.stActive.w = row.width;
    out.stActive.h = row.height;
    out.sync = defKOVAOutSync[out.frmt];
    out.dac = defKOVADACData[out.frmt];
    out.tmds = defKOVAOutTMDS[out.frmt];
    const bool multiplexed = out.mode == MUX656_8 || out.mode == MUX656_10;
    if (multiplexed && out.stActive.w < 1024) {
        DoubleHorizontalTiming(out);
    }
}

// ---- Helpers of the setters ----

std::uint16_t DacFormat(const OutVideoInfo& out) {
    return static_cast<std::uint16_t>((Has(out, VIDFLAG_HD) ? 2U : 0U) | (Has(out, VIDFLAG_YCBCR) ? 5U : 0U));
}

std::uint16_t DeMode(const OutVideoInfo& out) {
    return Has(out, OUTAUX_DE_MODE1) ? 1 : Has(out, OUTAUX_DE_MODE0) ? 0 : 2;
}

std::uint8_t WriteSyncTiming(const SyncTiming& sync) {
    const std::span<const std::uint16_t> words = sync;
    return AsResult(Write(kSyncSetup, words.first(SYNC_H_TOTAL))
                    || Write(kSyncTiming, words.subspan(SYNC_H_TOTAL, SYNC_PLL_P - SYNC_H_TOTAL)));
}

std::uint8_t WriteDelay(Field field, const ClockDelay* delay) {
    return delay != nullptr ? Write(field, DelayValue(*delay)) : std::uint8_t{KOVA_NO_ERROR};
}

std::uint8_t WriteDelay(std::uint16_t addr, const ClockDelay* delay) {
    return delay != nullptr ? KOVA_RegWrite(addr, DelayValue(*delay)) : std::uint8_t{KOVA_NO_ERROR};
}

std::uint8_t SetOption(OutVideoInfo& out, OutAux bit, Field field, std::uint8_t on) {
    SetBits(out.auxFlags, bit, on != 0);
    return SetAndUpdate(field, on != 0);
}

// A set bit switches its driver or pin group off. KOVA_RegField refuses a bit number above 15 before any transfer.
std::uint8_t SwitchOff(std::uint16_t addr, std::uint8_t bit, bool off) {
    return AsResult(Write(Field{addr, bit, 1}, off));
}

std::uint8_t PulseReset(std::uint16_t addr) { return AsResult(KOVA_RegWrite(addr, 0) || KOVA_RegWrite(addr, 1)); }

} // namespace

// ---- The whole output ----

std::uint8_t KOVAAPI_SetOutPortMode(OutVideoInfo* out) {
    if (out->frmt >= VIDOUT_COUNT || out->mode >= kOutModes) {
        return KOVA_INVALID_FORMAT;
    }
    const ModeRow& mode = kModes[out->mode];
    Complete(*out, mode);
    // clang-format off
    return AsResult(Write(kDigFormatLow, mode.digFormat)
                 || Write(kDigFormatHigh, mode.digFormat >> 5)
                 || Write(kDacFormat, DacFormat(*out))
                 || KOVAAPI_SetDACSyncData(Has(*out, VIDFLAG_YCBCR) ? &out->dac : nullptr)
                 || WriteSyncTiming(out->sync)
                 || KOVAAPI_SetPLLVideoClock(out->sync[SYNC_PLL_P], out->sync[SYNC_PLL_M], out->sync[SYNC_PLL_S])
                 || KOVAAPI_SetPLLMemoryClock(2, 10)
                 || KOVA_RegWrite(kOutControl, 0)
                 || Write(kOutSetupLow, 2)
                 || Write(kOutSetupHigh, 0xA6)
                 || Write(kTmdsDriveHigh, out->tmds[0])
                 || Write(kTmdsDriveLow, out->tmds[1])
                 || KOVA_RegWrite(kInterlaced, !Has(*out, VIDFLAG_PROGRESSIVE))
                 // VIDFLAG_TABLE_OUT is set in every row of the format table.
                 || KOVA_RegWrite(kSyncControl, Has(*out, VIDFLAG_TABLE_OUT) ? 0x4D : 0x4C)
                 || Write(kHSyncHigh, Has(*out, VIDFLAG_HSYNC_HIGH))
                 || Write(kVSyncHigh, Has(*out, VIDFLAG_VSYNC_HIGH))
                 || KOVAAPI_SetOutVideoAUX(out));
    // clang-format on
}

std::uint8_t KOVAAPI_SetOutVideoAUX(const OutVideoInfo* out) {
    // clang-format off
    return AsResult(Write(kDigCbCrSwap, Has(*out, OUTAUX_DIG_CBCR_SWAP))
                 || Write(kDacPbPrSwap, Has(*out, OUTAUX_DAC_PBPR_SWAP))
                 || Write(kDeMode, DeMode(*out))
                 || Write(kHActInvert, Has(*out, OUTAUX_HACT_INVERT))
                 || Write(kVActInvert, Has(*out, OUTAUX_VACT_INVERT))
                 || Write(kHSyncHAct, Has(*out, OUTAUX_HSYNC_HACT))
                 || Write(kVSyncVAct, Has(*out, OUTAUX_VSYNC_VACT))
                 || LocalUpdate()
                 || WriteDelay(kOutVclkDelay, out->pOutVCLK)
                 || WriteDelay(kOutVclkBDelay, out->pOutVCLKB)
                 || WriteDelay(kIntVclkDelay, out->pIntVCLK)
                 || WriteDelay(kIntVclk2xDelay, out->pIntVCLK2x)
                 || WriteDelay(kIntDacClkDelay, out->pIntDACCLK));
    // clang-format on
}

// ---- Sync, DAC and clocks ----

std::uint8_t KOVAAPI_SetDACSyncData(const DacData* data) {
    constexpr std::uint16_t kStrobe = 0x80;
    for (std::size_t i = 0; i < std::tuple_size_v<DacData>; ++i) {
        const std::uint16_t value = data != nullptr ? (*data)[i] : std::uint16_t{0};
        if (KOVA_RegWrite(kDacValue, value) || KOVA_RegWrite(kDacIndex, static_cast<std::uint16_t>(i | kStrobe))) {
            return KOVA_I2C_ERROR;
        }
    }
    return KOVA_NO_ERROR;
}

std::uint8_t KOVAAPI_SetPLLVideoClock(std::uint16_t p, std::uint16_t m, std::uint16_t s) {
    // clang-format off
    return AsResult(Write(kVideoPllHold, 1)
                 || KOVA_RegWrite(kVideoPllP, p)
                 || KOVA_RegWrite(kVideoPllM, m)
                 || KOVA_RegWrite(kVideoPllS, s)
                 || Write(kVideoPllHold, 0));
    // clang-format on
}

std::uint8_t KOVAAPI_SetPLLMemoryClock(std::uint16_t a, std::uint16_t b) {
    // clang-format off
    return AsResult(Write(kMemoryPllHold, 1)
                 || KOVA_RegWrite(kMemoryPllA, a)
                 || KOVA_RegWrite(kMemoryPllB, b)
                 || Write(kMemoryPllHold, 0));
    // clang-format on
}

std::uint8_t KOVAAPI_ResetOutSync(std::uint16_t value) {
    return AsResult(KOVA_RegWrite(kSyncReset, 0) || KOVA_RegWrite(kSyncReset, value | 0x1000) || LocalUpdate());
}

std::uint8_t KOVAAPI_SetVCLKPLLSource(std::uint16_t source) {
    // Source 3 is source 1 with register 0x03A set to 1.
    const bool third = source == 3;
    if (KOVA_RegWrite(kVclkSource3, third) || KOVA_RegWrite(kVclkSource, third ? 1 : source)
        || Write(kIntVclkSelect, 1)) {
        return KOVA_I2C_ERROR;
    }
    KOVAPLLClock = source;
    return KOVAAPI_SoftReset();
}

std::uint8_t KOVAAPI_SoftReset() { return PulseReset(kSoftReset); }

std::uint8_t KOVAAPI_HardReset() { return PulseReset(kHardReset); }

// ---- Drivers and pins ----

std::uint8_t KOVAAPI_EnableClockDrive(std::uint8_t clock, std::uint8_t on) {
    if (clock == kAllClocks) {
        return AsResult(Write(kClocksOff, on != 0 ? 0 : 0xFFF) || Write(kClock14Off, on == 0));
    }
    return SwitchOff(kClockDrive, clock, on == 0);
}

std::uint8_t KOVAAPI_EnableOutPortPin(std::uint8_t pin, std::uint8_t on) {
    if (pin == kAllOutPins) {
        return AsResult(Write(kOutPinsOff, on != 0 ? 0 : 0xF));
    }
    return SwitchOff(kPinsOff, pin, on == 0);
}

std::uint8_t KOVAAPI_EnableDACPortOut(std::uint8_t on) { return AsResult(Write(kDacOff, on == 0)); }

// ---- Options ----

std::uint8_t KOVAAPI_SetDIGCbCrSwap(OutVideoInfo* out, std::uint8_t on) {
    return SetOption(*out, OUTAUX_DIG_CBCR_SWAP, kDigCbCrSwap, on);
}

std::uint8_t KOVAAPI_SetDACPbPrSwap(OutVideoInfo* out, std::uint8_t on) {
    return SetOption(*out, OUTAUX_DAC_PBPR_SWAP, kDacPbPrSwap, on);
}

std::uint8_t KOVAAPI_SetOutHActInvert(OutVideoInfo* out, std::uint8_t on) {
    return SetOption(*out, OUTAUX_HACT_INVERT, kHActInvert, on);
}

std::uint8_t KOVAAPI_SetOutVActInvert(OutVideoInfo* out, std::uint8_t on) {
    return SetOption(*out, OUTAUX_VACT_INVERT, kVActInvert, on);
}

std::uint8_t KOVAAPI_SetOutHSyncHAct(OutVideoInfo* out, std::uint8_t on) {
    return SetOption(*out, OUTAUX_HSYNC_HACT, kHSyncHAct, on);
}

std::uint8_t KOVAAPI_SetOutVSyncVAct(OutVideoInfo* out, std::uint8_t on) {
    return SetOption(*out, OUTAUX_VSYNC_VACT, kVSyncVAct, on);
}

std::uint8_t KOVAAPI_SetDEOutMode(OutVideoInfo* out, std::uint8_t demode) {
    SetBits(out->auxFlags, OUTAUX_DE_MODE0, demode == 0);
    SetBits(out->auxFlags, OUTAUX_DE_MODE1, demode == 1);
    return SetAndUpdate(kDeMode, demode);
}

// ---- Clock delays ----

std::uint8_t KOVAAPI_SetOutVCLKDelay(OutVideoInfo* out, const ClockDelay* delay) {
    return WriteDelay(kOutVclkDelay, out->pOutVCLK = delay);
}

std::uint8_t KOVAAPI_SetOutVCLKBDelay(OutVideoInfo* out, const ClockDelay* delay) {
    return WriteDelay(kOutVclkBDelay, out->pOutVCLKB = delay);
}

std::uint8_t KOVAAPI_SetIntVCLKDelay(OutVideoInfo* out, const ClockDelay* delay) {
    return WriteDelay(kIntVclkDelay, out->pIntVCLK = delay);
}

std::uint8_t KOVAAPI_SetIntVCLK2xDelay(OutVideoInfo* out, const ClockDelay* delay) {
    return WriteDelay(kIntVclk2xDelay, out->pIntVCLK2x = delay);
}

std::uint8_t KOVAAPI_SetIntDACCLKDelay(OutVideoInfo* out, const ClockDelay* delay) {
    return WriteDelay(kIntDacClkDelay, out->pIntDACCLK = delay);
}
