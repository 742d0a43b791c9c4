#pragma once
// The source and the output of the chip: formats and modes, the two records that describe the picture, and the tables
// from which the driver completes the records.

#include <array>
#include <cstdint>

// ---- Modes and formats ----

/// How the picture data is carried on a port. The two modes of port B are for a source only.
enum VideoMode : std::uint8_t {
    RGB444_8 = 0,    ///< RGB 4:4:4, 8 bits, separate syncs
    YUV444_8 = 1,    ///< YCbCr 4:4:4, 8 bits, separate syncs
    EMB422_8 = 2,    ///< YCbCr 4:2:2, 8 bits, embedded syncs
    SEP422_8 = 3,    ///< YCbCr 4:2:2, 8 bits, separate syncs
    EMB422_10 = 4,   ///< YCbCr 4:2:2, 10 bits, embedded syncs
    SEP422_10 = 5,   ///< YCbCr 4:2:2, 10 bits, separate syncs
    MUX656_8 = 6,    ///< Y and C multiplexed on one bus, 8 bits, embedded syncs
    MUX656_10 = 7,   ///< Y and C multiplexed on one bus, 10 bits, embedded syncs
    MUX656_8_B = 8,  ///< MUX656_8 on port B
    MUX656_10_B = 9, ///< MUX656_10 on port B
};
inline constexpr unsigned kSrcModes = 10;
inline constexpr unsigned kOutModes = 8;

/// Source formats. They are the row numbers of defKOVASrcVideo.
enum SrcVideoFormat : std::uint8_t {
    VIDSRC_704x480i60,
    VIDSRC_720x576i50,
    VIDSRC_720x480p60,
    VIDSRC_720x576p50,
    VIDSRC_1280x720p60,
    VIDSRC_1280x720p50,
    VIDSRC_1920x1080i60,
    VIDSRC_1920x1080i50,
    VIDSRC_640x480p60,
    VIDSRC_800x600p60,
    VIDSRC_1024x768p60,
    VIDSRC_1280x1024p60,
    VIDSRC_COUNT
};

/// Output formats. They are the row numbers of the four output tables. RB means reduced blanking.
enum OutVideoFormat : std::uint8_t {
    VIDOUT_720x480i60,
    VIDOUT_720x576i50,
    VIDOUT_720x480p60,
    VIDOUT_720x576p50,
    VIDOUT_1280x720p60,
    VIDOUT_1280x720p50,
    VIDOUT_1920x1080i60,
    VIDOUT_1920x1080i50,
    VIDOUT_1920x1080p60,
    VIDOUT_1920x1080p50,
    VIDOUT_640x480p60,
    VIDOUT_640x480p75,
    VIDOUT_800x600p60,
    VIDOUT_800x600p75,
    VIDOUT_1024x768p60,
    VIDOUT_1024x768p75,
    VIDOUT_1280x1024p60,
    VIDOUT_1280x1024p75,
    VIDOUT_1360x768p60,
    VIDOUT_1440x900p60,
    VIDOUT_1680x1050p60,
    VIDOUT_1600x1200p60,
    VIDOUT_1680x1050p60RB,
    VIDOUT_1920x1080p60RB,
    VIDOUT_COUNT
};

namespace kova {

/// High-definition formats use the colours of ITU-R BT.709.
constexpr bool IsHdSrcFormat(unsigned frmt) { return frmt >= VIDSRC_1280x720p60 && frmt <= VIDSRC_1920x1080i50; }
constexpr bool IsHdOutFormat(unsigned frmt) { return frmt >= VIDOUT_1280x720p60 && frmt <= VIDOUT_1920x1080p50; }

} // namespace kova

// ---- Attributes ----

/// Bits of the flags in both records.
enum VideoFlag : std::uint16_t {
    VIDFLAG_YCBCR = 0x0001,       ///< set: YCbCr; clear: RGB
    VIDFLAG_422 = 0x0002,         ///< 4:2:2
    VIDFLAG_8BIT = 0x0004,        ///< 8-bit data. Also set in the source record when the frame memory uses 8 bits.
    VIDFLAG_PROGRESSIVE = 0x0008, ///< set: progressive scan; clear: interlaced
    VIDFLAG_VSYNC_HIGH = 0x0010,  ///< output only: vertical sync is active high
    VIDFLAG_HSYNC_HIGH = 0x0020,  ///< output only: horizontal sync is active high
    VIDFLAG_TABLE_OUT = 0x0100,   ///< output only, set in every table row. 0x498 is 0x4D with the flag, else 0x4C.
    VIDFLAG_HD = 0x4000,          ///< high-definition colorimetry
    VIDFLAG_PORT_A = 0x8000,      ///< source only, set: port A; clear: port B
};

/// Bits of auxFlags in the source record.
enum SrcAux : std::uint8_t {
    SRCAUX_COMP_HSYNC = 0x01,     ///< composite horizontal sync, port A only
    SRCAUX_HIGH_TOP_FIELD = 0x02, ///< option "high top field ID"; its effect is not known
    SRCAUX_INPUT_FIELD = 0x04,    ///< option "input field ID", port A only; its effect is not known
    SRCAUX_CBCR_SWAP = 0x08,      ///< Cb and Cr swapped
};

/// Bits of auxFlags in the output record.
enum OutAux : std::uint16_t {
    OUTAUX_VSYNC_VACT = 0x0001,    ///< V sync used as V active
    OUTAUX_HSYNC_HACT = 0x0002,    ///< H sync used as H active
    OUTAUX_VACT_INVERT = 0x0004,   ///< V active inverted
    OUTAUX_HACT_INVERT = 0x0008,   ///< H active inverted
    OUTAUX_DE_MODE1 = 0x0010,      ///< data enable mode 1
    OUTAUX_DE_MODE0 = 0x0020,      ///< data enable mode 0. When neither of the two bits is set, the mode is 2.
    OUTAUX_DAC_PBPR_SWAP = 0x0200, ///< Pb and Pr swapped at the DAC
    OUTAUX_DIG_CBCR_SWAP = 0x8000, ///< Cb and Cr swapped at the digital output
};

// ---- Pieces of the records ----

/// An area of a picture: w and x in pixels, h and y in lines.
struct VideoWindow {
    std::uint16_t w = 0, h = 0, x = 0, y = 0;

    bool operator==(const VideoWindow&) const = default;
};

/// A clock delay. The chip gets the value coarse * 4 + fine, so fine must be below 4. The unit is not known.
struct ClockDelay {
    std::uint8_t coarse{}, fine{};
};

namespace kova {

/// A window of the caller is used only when it has a width and a height.
constexpr bool IsInUse(const VideoWindow& win) { return win.w != 0 && win.h != 0; }

/// The register value of a clock delay.
constexpr std::uint16_t DelayValue(const ClockDelay& delay) {
    return static_cast<std::uint16_t>(delay.coarse * 4 | delay.fine);
}

} // namespace kova

/// Frame memory configuration.
struct MemoryConfig {
    std::uint8_t select; ///< When this byte is 0, register 0x012 bits 1..0 become 0, else 3.
    /// Each of three bits sets one field: to 0 when the bit is set, to 2 when the bit is clear. Bit 2 sets 0x022 bits
    /// 5..4, bit 1 sets 0x022 bits 3..2, bit 0 sets 0x03C bits 13..12.
    std::uint8_t flags;
    std::uint8_t mode; ///< register 0x022 bits 1..0, written unchanged
};

/// A colour conversion of 15 words: a 3 by 3 matrix row by row, then three input offsets, which are added before the
/// matrix, then three output offsets, which are added after it. The rows, the columns and the offsets have the order
/// G/Y, B/Cb, R/Cr. In the matrix, 512 stands for 1.0. Offsets are in 10-bit code units. The chip uses 12 bits of each
/// word, as two's complement.
using CscSet = std::array<std::int16_t, 15>;

/// A scaler filter: 64 entries of two coefficients. 2048 stands for 1.0.
using MfcTable = std::array<std::array<std::int16_t, 2>, 64>;

/// Words of the sync timing of an output. Horizontal words count pixel clocks, vertical words count lines.
enum SyncWord : std::uint8_t {
    SYNC_SETUP = 0, ///< three words for registers 0x484 to 0x486; their meaning is not known
    SYNC_H_TOTAL = 3,
    SYNC_H_ACTIVE_START,
    SYNC_H_ACTIVE_END,
    SYNC_H_SYNC_END,
    SYNC_H_SYNC_START,
    SYNC_V_TOTAL,
    SYNC_V_ACTIVE_START,
    SYNC_V_ACTIVE_END,
    SYNC_V_SYNC_END,
    SYNC_V_SYNC_START,
    SYNC_V2_ACTIVE_START, ///< V2: second field of an interlaced output
    SYNC_V2_ACTIVE_END,   ///< 0: the active lines end where the line count wraps to 0
    SYNC_V2_SYNC_END,
    SYNC_V2_SYNC_START,
    SYNC_V2_H_POSITION, ///< horizontal position of the vertical sync
    SYNC_PLL_P,         ///< pixel clock = 27 MHz * M / (P * 2^S)
    SYNC_PLL_M,
    SYNC_PLL_S,
    SYNC_WORDS
};

using SyncTiming = std::array<std::uint16_t, SYNC_WORDS>;
using DacData = std::array<std::uint16_t, 37>; ///< data for the sync data memory of the DAC
using TmdsDrive = std::array<std::uint8_t, 2>; ///< values for register 0x040 bits 6..4 and bits 3..0

// ---- Records ----
// The caller fills the first fields of a record. The driver fills the fields after the comment "Filled by the driver".
// The pointers are borrowed: the driver reads through them each time a setter runs, and never frees them.

/// The picture that enters the chip.
struct SrcVideoInfo {
    std::uint8_t frmt{};             ///< SrcVideoFormat
    std::uint8_t mode{};             ///< VideoMode
    std::uint8_t auxFlags{};         ///< SrcAux bits
    std::uint8_t ycOffset{};         ///< Y/C sample offset, 0 to 7
    const ClockDelay* pClockDelay{}; ///< clock delay of the input port; null: not written
    const CscSet* pCscCoef{};        ///< input colour conversion; null: a built-in one
    VideoWindow stClip{}; ///< clip window. Its x and y are also the input sync position, even when w or h is 0.
    // Filled by the driver.
    std::uint16_t hTotal{}; ///< total pixels per line
    std::uint16_t flags{};  ///< VideoFlag bits
    VideoWindow stActive{}; ///< w and h: active width and height; the driver does not write x and y
};

/// The picture that leaves the chip.
struct OutVideoInfo {
    std::uint8_t frmt{};          ///< OutVideoFormat
    std::uint8_t mode{};          ///< VideoMode, 0 to 7
    std::uint16_t auxFlags{};     ///< OutAux bits
    const ClockDelay* pOutVCLK{}; ///< five clock delays; null: not written
    const ClockDelay* pOutVCLKB{};
    const ClockDelay* pIntVCLK{};
    const ClockDelay* pIntVCLK2x{};
    const ClockDelay* pIntDACCLK{};
    const CscSet* pCscCoef{}; ///< output colour conversion; null: a built-in one
    const MfcTable* pMfcHY{}; ///< scaler filters: H horizontal, V vertical, Y luma, C chroma; null: a built-in one
    const MfcTable* pMfcHC{};
    const MfcTable* pMfcVY{};
    const MfcTable* pMfcVC{};
    VideoWindow stZoom{};      ///< the part of the picture that is scaled; w or h 0: the whole picture
    VideoWindow stView{};      ///< the area of the output that shows the picture; w or h 0: the whole output
    std::uint8_t brightness{}; ///< seven picture controls; 128 is neutral for each
    std::uint8_t contrast{};
    std::uint8_t saturation{};
    std::uint8_t hue{};
    std::uint8_t offsetG{};
    std::uint8_t offsetB{};
    std::uint8_t offsetR{};
    // Filled by the driver.
    std::uint16_t flags{};  ///< VideoFlag bits
    VideoWindow stActive{}; ///< w and h: active width and height; the driver does not write x and y
    SyncTiming sync{};
    DacData dac{};
    TmdsDrive tmds{};
};

extern SrcVideoInfo stSrcVideoInfo; ///< the source that the start-up sequence sets up
extern OutVideoInfo stOutVideoInfo; ///< the output that the start-up sequence sets up

/// The VideoMode that the transmitter uses for the output. It is 0 (RGB444_8) at the start. An application can set it.
/// The EDID parser writes it too.
extern std::uint8_t OutVideoMode;
/// A VIDOUT and a VIDSRC format that an application can set. They are 0 at the start. Only InitHDMITXVariable reads
/// OutVideoFrmt, only ConfigTXVideoMode reads SrcVideoFrmt. Everything else uses stOutVideoInfo and stSrcVideoInfo.
extern std::uint8_t OutVideoFrmt;
extern std::uint8_t SrcVideoFrmt;

// ---- Format tables ----

/// The values that a source format gives to the record.
struct SrcVideoRow {
    std::uint16_t hTotal, flags, width, height;
};

/// The values that an output format gives to the record, besides the sync timing, the DAC data and the TMDS drive.
struct OutVideoRow {
    std::uint16_t flags, width, height;
};

extern const std::array<SrcVideoRow, VIDSRC_COUNT> defKOVASrcVideo;
extern const std::array<OutVideoRow, VIDOUT_COUNT> defKOVAOutVideo;
extern const std::array<SyncTiming, VIDOUT_COUNT> defKOVAOutSync;
extern const std::array<DacData, VIDOUT_COUNT> defKOVADACData;
extern const std::array<TmdsDrive, VIDOUT_COUNT> defKOVAOutTMDS;
