// The position of the active picture. The DE generator finds it from separate syncs. The embedded-sync decoder finds it
// from syncs in the data stream. All registers are on page 0.

#include "hdmitx/hdmitx.h"

#include "hdmitx/bits.h"
#include "hdmitx/presets.h"
#include "hdmitx/vmode.h"
#include "kova/api.h"

#include <cstdio>

using namespace hdmitx;

namespace {

// DE generator
constexpr std::uint8_t kDeDelay = 0x32;
constexpr std::uint8_t kDeControl = 0x33; // bits 1..0: DE delay bits 9..8, bits 5..4: sync polarities, bit 6: on
constexpr std::uint8_t kDeOn = 0x40;      // in kDeControl
constexpr std::uint8_t kDeTop = 0x34;
constexpr std::uint8_t kDePixels = 0x36; // low and high byte
constexpr std::uint8_t kDeLines = 0x38;  // low and high byte

// Embedded-sync decoder
constexpr std::uint8_t kSyncAdjust = 0x3E;   // bits 1..0
constexpr std::uint8_t kHSyncOffset = 0x40;  // low and high byte
constexpr std::uint8_t kField2Offset = 0x42; // low and high byte
constexpr std::uint8_t kHSyncWidth = 0x44;   // low and high byte
constexpr std::uint8_t kVSyncOffset = 0x46;
constexpr std::uint8_t kVSyncWidth = 0x47;

// The set-up for BT.656 input of 720x480 interlaced video.
constexpr std::array<TxSetting, 9> kBt656Setup{{
    {HDTX_SLV0, 0x05, 0x00}, // software reset released
    {HDTX_SLV0, 0x06, 0x19},
    {HDTX_SLV0, 0x07, 0x64},
    {HDTX_SLV0, 0x08, 0x07}, // output power on, input clock edge
    {HDTX_SLV0, 0x09, 0x87},
    {HDTX_SLV0, 0x0C, 0x88},
    {HDTX_SLV0, 0x48, 0x20}, // input clock
    {HDTX_SLV0, 0x4A, 0x07}, // sync extraction, YC demultiplexing, no upsampling
    {HDTX_SLV0, 0x82, 0x20},
}};

// The values of registers 0x32 to 0x47 for that input.
constexpr std::array<std::uint8_t, 22> defBT656_1440i{
    0x77, 0x70,             // DE delay 119, DE generator on, both syncs negative
    0x12, 0x00,             // DE top 18
    0xD0, 0x02, 0xF0, 0x00, // 720 pixels, 240 lines per field
    0xB4, 0x06, 0x06, 0x01, // 1716 pixels per line with blanking, 262 lines
    0x04, 0x07,             // 0x3E: embedded-sync adjustment 0; its other bits and 0x3F are not known
    0x13, 0x00,             // horizontal sync offset 19
    0xAD, 0x01,             // field 2 offset 429
    0x3E, 0x00,             // horizontal sync width 62
    0x04, 0x03,             // vertical sync offset 4, width 3
};

constexpr std::uint8_t Low(unsigned value) { return static_cast<std::uint8_t>(value & 0xFF); }
constexpr std::uint8_t High(unsigned value) { return static_cast<std::uint8_t>(value >> 8 & 0xFF); }

void Write(std::uint8_t reg, std::uint8_t value) { HDTX_RegWrite(HDTX_SLV0, reg, value); }

void WriteWord(std::uint8_t reg, std::uint16_t value) {
    Write(reg, Low(value));
    Write(static_cast<std::uint8_t>(reg + 1), High(value));
}

} // namespace

void HDMITX_SetDE(std::uint8_t embedded) {
    const std::uint8_t row = KovaFrmt2VMIndex(stOutVideoInfo.frmt);
    std::fprintf(stderr, " \n\rHDMI TX : UpdateTX_DE(), VMIndex=%d, stOutVideoInfo.frmt=%d", int{row},
                 int{stOutVideoInfo.frmt});
    if (embedded != 0) {
        UpdateTX_656(row);
        return;
    }
    UpdateTX_DE(row);
    SetDE(DefaultDataEnable);
}

void UpdateTX_DE(std::uint8_t row) {
    const VModeRow& timing = VModeRowAt(row);
    const bool interlaced = (timing.SyncFlags & VMODE_INTERLACED) != 0;
    Write(kDeDelay, Low(timing.DeDelay));
    Write(kDeControl, High(timing.DeDelay) & 0x03); // generator off, polarity bits 0
    WriteWord(kDePixels, timing.HActive);
    Write(kDeTop, Low(timing.DeTop));
    WriteWord(kDeLines, static_cast<std::uint16_t>(interlaced ? timing.VActive >> 1 : timing.VActive));
    // A polarity bit of the chip is 1 for a negative sync. A bit of SyncFlags is 1 for a positive sync.
    const unsigned negative = ~unsigned{timing.SyncFlags} & (VMODE_VSYNC_POSITIVE | VMODE_HSYNC_POSITIVE);
    WriteBits(HDTX_SLV0, kDeControl, static_cast<std::uint8_t>(negative << 4), true);
}

void UpdateTX_656(std::uint8_t row) {
    const VModeRow& timing = VModeRowAt(row);
    const unsigned adjust = HDTX_RegRead(HDTX_SLV0, kSyncAdjust);
    Write(kSyncAdjust, static_cast<std::uint8_t>((adjust & 0xFC) | timing.EmbSyncAdjust));
    WriteWord(kHSyncOffset, timing.HFrontPorch);
    WriteWord(kField2Offset, timing.Field2Offset);
    WriteWord(kHSyncWidth, timing.HSyncWidth);
    Write(kVSyncOffset, Low(timing.VFrontPorch));
    Write(kVSyncWidth, Low(timing.VSyncWidth));
}

void SetDE(std::uint8_t on) { WriteBits(HDTX_SLV0, kDeControl, kDeOn, on != 0); }

void DE_GenEn(std::uint8_t on) { SetDE(on); }

void HDMITX_OutVideoNormal() { WriteTxSettings(kTxNormalSetup); }

void HDMITX_OutVideoBT656() {
    WriteTxSettings(kBt656Setup);
    HDTX_MultiWrite(HDTX_SLV0, kDeDelay, defBT656_1440i.data(), defBT656_1440i.size());
}
