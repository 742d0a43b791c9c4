// Audio clock regeneration: the sink rebuilds the sample clock as pixel clock x N / (128 x CTS). This file chooses N.
// The transmitter measures CTS.

#include "hdmitx/hdmitx.h"

#include "hdmitx/bits.h"
#include "hdmitx/registers.h"
#include "kova/api.h"

#include <array>
#include <cstddef>
#include <cstdio>

using namespace hdmitx;

namespace {

// Page 1
constexpr std::uint8_t kN = 0x03;                      // three registers, low byte first
constexpr std::uint8_t kCts = 0x09;                    // three registers, low byte first
constexpr std::uint8_t kAudioOn = 0x01, kSpdif = 0x02; // in kAudioInput

// One row for each sample rate.
struct RateRow {
    std::uint16_t above, below; // in units of 100 Hz; the limits are excluded
    std::uint8_t rate;          // kHz
    std::uint8_t code;          // IEC 60958-3 channel status
};

// clang-format off
constexpr std::array<RateRow, 7> kRates{{
    // measured     rate  code
    { 310,  330,    32,  0x03},
    { 430,  450,    44,  0x00},
    { 470,  490,    48,  0x02},
    { 870,  890,    88,  0x08},
    { 950,  970,    96,  0x0A},
    {1700, 1800,   176,  0x0C},
    {1800, 2000,   192,  0x0E},
}};

// N for each pixel clock. Row 0 is for every clock that has no row of its own.
struct NValRow {
    std::uint16_t PixClk; // 10 kHz
    std::array<std::uint32_t, kRates.size()> N;
};

constexpr std::array<NValRow, 3> N_Val{{
    // kHz:   32     44.1    48     88.2    96    176.4   192
    {   0, { 4096,  6272,  6144, 12544, 12288, 25088, 24576}},
    {2517, { 4576,  7007,  6864, 14014, 13728, 28028, 27456}},
    {7425, {11648, 17836, 11648, 35672, 23296, 71344, 46592}},
}};
// clang-format on

constexpr std::uint8_t kNoIndex = 0xFF;

std::uint32_t Read24(std::uint8_t reg) {
    const std::uint32_t low = HDTX_RegRead(HDTX_SLV1, reg);
    const std::uint32_t middle = HDTX_RegRead(HDTX_SLV1, static_cast<std::uint8_t>(reg + 1));
    const std::uint32_t high = HDTX_RegRead(HDTX_SLV1, static_cast<std::uint8_t>(reg + 2));
    return high << 16 | middle << 8 | low;
}

} // namespace

std::uint32_t ReadCTSValue() { return Read24(kCts); }

std::uint32_t ReadNValue() { return Read24(kN); }

void WriteNValue(std::uint32_t n) {
    for (unsigned i = 0; i < 3; ++i) {
        HDTX_RegWrite(HDTX_SLV1, static_cast<std::uint8_t>(kN + i), static_cast<std::uint8_t>(n >> (8 * i) & 0xFF));
    }
}

std::uint8_t WaitForStableCTS() {
    constexpr int kRounds = 10;
    constexpr std::uint8_t kStableRounds = 5;
    constexpr std::uint32_t kNoClock = 5000; // a CTS of this value or less means that there is no audio clock
    constexpr std::int32_t kJitter = 2;
    std::uint8_t count = 0;
    for (int round = 0; round < kRounds; ++round) {
        const std::uint32_t a = ReadCTSValue();
        const std::uint32_t b = ReadCTSValue();
        if (a <= kNoClock) {
            continue;
        }
        // CTS has 24 bits, so the signed difference cannot overflow.
        const auto difference = static_cast<std::int32_t>(a) - static_cast<std::int32_t>(b);
        count = difference >= -kJitter && difference <= kJitter ? static_cast<std::uint8_t>(count + 1) : 0;
        if (count == kStableRounds) {
            return 1;
        }
    }
    std::fputs(" \n\rHDMI TX : CTS Time out expired!", stderr);
    return 0;
}

std::uint8_t GetFs(std::uint16_t pixclk) {
    const std::uint32_t cts = ReadCTSValue() / 100;
    const std::uint32_t n = ReadNValue();
    // The product needs 64 bits, because N can have 24 bits. CTS is read again here, after the wait, and can be below
    // 100. The rate is 0 then, which avoids a division by zero.
    const std::uint64_t fs = cts != 0 ? (std::uint64_t{pixclk} * n >> 7) / cts : 0;
    std::fprintf(stderr, " \n\rHDMI TX : CTS Value = %u, N Value = %u, Fs Value = %llu", cts, n,
                 static_cast<unsigned long long>(fs));
    for (const RateRow& row : kRates) {
        if (fs > row.above && fs < row.below) {
            return row.rate;
        }
    }
    return 0;
}

std::uint8_t GetFsIndex(std::uint8_t rate) {
    for (std::size_t i = 0; i < kRates.size(); ++i) {
        if (kRates[i].rate == rate) {
            return static_cast<std::uint8_t>(i);
        }
    }
    return kNoIndex;
}

std::uint32_t SearchOptimumNValue(std::uint16_t pixclk, std::uint8_t rate) {
    std::uint8_t index = GetFsIndex(rate);
    if (index == kNoIndex) {
        index = 0;
    }
    for (std::size_t row = 1; row < N_Val.size(); ++row) {
        if (N_Val[row].PixClk == pixclk) {
            return N_Val[row].N[index];
        }
    }
    return N_Val[0].N[index];
}

void SetI2SFsStatus(std::uint8_t rate) {
    const std::uint8_t index = GetFsIndex(rate);
    if (index != kNoIndex) {
        HDTX_RegWrite(HDTX_SLV1, kChannelStatusFs, kRates[index].code);
    }
}

void TXAudio(std::uint8_t on) { WriteBits(HDTX_SLV1, kAudioInput, kAudioOn, on != 0); }

void TXSPDIFSelect(std::uint8_t on) { WriteBits(HDTX_SLV1, kAudioInput, kSpdif, on != 0); }

std::uint8_t IsSPDIFSelected() { return AnyBit(HDTX_SLV1, kAudioInput, kSpdif) ? 1 : 0; }

std::uint8_t IsAudioDisabled() { return AnyBit(HDTX_SLV1, kAudioInput, kAudioOn) ? 0 : 1; }

void ClearBiphaseSampleDroppedInterrupts() { HDTX_RegWrite(HDTX_SLV0, kInterruptStatus, kAudioInputEvents); }

void SetN() {
    ClearBiphaseSampleDroppedInterrupts();
    if (WaitForStableCTS() == 0) {
        std::fputs(" \n\rHDMI TX: WaitForStableCTS() --> UnStable", stderr);
        return;
    }
    std::fputs(" \n\rHDMI TX: WaitForStableCTS() --> Stable", stderr);
    const std::uint16_t pixclk = GetPixelClock(KovaFrmt2VMIndex(stOutVideoInfo.frmt));
    const std::uint8_t rate = GetFs(pixclk);
    std::fprintf(stderr, " \n\rHDMI TX : Get Audio Sample Rate = %dkHz", int{rate});
    if (rate != 0) {
        WriteNValue(SearchOptimumNValue(pixclk, rate));
        SetI2SFsStatus(rate);
    }
    TXAudio(1);
}
