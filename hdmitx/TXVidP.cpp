// The transmitter's video input stage. It converts the video processor's data before they are sent.

#include "hdmitx/hdmitx.h"

#include "hdmitx/bits.h"
#include "hdmitx/registers.h"
#include "hdmitx/vmode.h"
#include "kova/api.h"

#include <array>
#include <cstdio>

using namespace hdmitx;

namespace {

// Page 0
constexpr std::uint8_t kHdColorimetry = 0x10; // in kInputClock: colour conversion uses the high-definition coefficients
constexpr std::uint8_t kVideoMode = 0x4A;

// Bits of kVideoMode
constexpr std::uint8_t kSyncExtraction = 0x01;
constexpr std::uint8_t kYcDemux = 0x02;
constexpr std::uint8_t kNoUpsampling = 0x04;
constexpr std::uint8_t kColourConversion = 0x08;
constexpr std::uint8_t kRangeExpansion = 0x10;
constexpr std::uint8_t kDithering = 0x20;

// The port mode determines these four bits. The table gives the bits to set. The rest of the four bits is cleared.
constexpr std::uint8_t kPortBits = kSyncExtraction | kYcDemux | kNoUpsampling | kDithering;
constexpr std::array<std::uint8_t, 8> kBitsOfPortMode{
    0,                                            // RGB444_8
    0,                                            // YUV444_8
    kSyncExtraction | kNoUpsampling,              // EMB422_8
    kNoUpsampling,                                // SEP422_8
    kSyncExtraction | kNoUpsampling | kDithering, // EMB422_10
    kNoUpsampling | kDithering,                   // SEP422_10
    kSyncExtraction | kYcDemux | kNoUpsampling,   // MUX656_8
    kSyncExtraction | kNoUpsampling | kDithering, // MUX656_10
};

struct ReportLine {
    std::uint8_t bit;
    const char *set, *clear;
};

constexpr std::array<ReportLine, 6> kReport{{
    {kSyncExtraction, "Sync Extraction : Enabled", "Sync Extraction : Disable"},
    {kYcDemux, "YC Demux : Enabled", "YC Demux : Disable"},
    {kNoUpsampling, "Upsampling(422->444) : Disabled", "Upsampling(422->444) : Enabled"},
    {kColourConversion, "CSC(YCbCr->RGB) : Enabled", "CSC(YCbCr->RGB) : Disabled"},
    {kRangeExpansion, "Data Range Expanded: Enabled(0~255)", "Data Range Expanded: Disabled(16~235)"},
    {kDithering, "Dithering : Enabled", "Dithering : Disable"},
}};

constexpr std::uint8_t Replace(std::uint8_t value, std::uint8_t mask, std::uint8_t bits) {
    return static_cast<std::uint8_t>((value & ~unsigned{mask}) | bits);
}

// Computes the setting of the input stage from the current port mode, output state and output format.
std::uint8_t VideoModeBits(std::uint8_t value) {
    if (OutVideoMode < kBitsOfPortMode.size()) {
        value = Replace(value, kPortBits, kBitsOfPortMode[OutVideoMode]);
    } else { // Modes above 7 do not exist at an output. Sync extraction and upsampling stay as they are.
        value = Replace(value, kYcDemux | kDithering, 0);
    }
    // A DVI sink accepts RGB only.
    if (OutVideoMode == RGB444_8) {
        value = Replace(value, kColourConversion, 0);
    } else if (OutputState == OUTPUT_DVI && (OutVideoMode == YUV444_8 || OutVideoMode == SEP422_8)) {
        value = Replace(value, kColourConversion, kColourConversion);
    }
    return Replace(value, kRangeExpansion, IsCeaRow(KovaFrmt2VMIndex(stOutVideoInfo.frmt)) ? 0 : kRangeExpansion);
}

void Report(std::uint8_t value) {
    for (const ReportLine& line : kReport) {
        std::fprintf(stderr, " \n\r          %s", (value & line.bit) != 0 ? line.set : line.clear);
        if (line.bit == kColourConversion && OutputState == OUTPUT_DVI) {
            std::fputs(" (DVI Output)", stderr);
        }
    }
}

} // namespace

void ConfigTXVideoMode() {
    std::fputs(" \n\rHDMI TX : ConfigTXVideoMode():TX_VID_MODE_ADDR", stderr);
    const std::uint8_t value = VideoModeBits(HDTX_RegRead(HDTX_SLV0, kVideoMode));
    HDTX_RegWrite(HDTX_SLV0, kVideoMode, value);
    Report(value);
    if ((value & kColourConversion) != 0) {
        WriteBits(HDTX_SLV0, kInputClock, kHdColorimetry, kova::IsHdSrcFormat(SrcVideoFrmt));
    }
}
