#pragma once
// What enters the chip and what leaves it: formats and modes, the two records that describe the picture, and the tables
// from which the driver completes the records.

#include <array>
#include <cstdint>

// ---- Modes and formats ----

/// How the data come over a port. The two modes of port B exist for a source only.
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

/// Source formats: rows of defKOVASrcVideo.
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

/// Output formats: rows of the four output tables. RB: reduced blanking.
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

/// High-definition formats carry ITU-R BT.709 colours.
constexpr bool IsHdSrcFormat(unsigned frmt) { return frmt >= VIDSRC_1280x720p60 && frmt <= VIDSRC_1920x1080i50; }
constexpr bool IsHdOutFormat(unsigned frmt) { return frmt >= VIDOUT_1280x720p60 && frmt <= VIDOUT_1920x1080p50; }

} // namespace kova

// ---- Attributes ----

/// Bits of a record's flags.
enum VideoFlag : std::uint16_t {
    VIDFLAG_YCBCR = 0x0001,       ///< YCbCr; clear: RGB
    VIDFLAG_422 = 0x0002,         ///< 4:2:2
    VIDFLAG_8BIT = 0x0004,        ///< 8-bit data; in the source also: the frame memory must run at 8-bit precision
    VIDFLAG_PROGRESSIVE = 0x0008, ///< progressive scan; clear: interlaced
    VIDFLAG_VSYNC_HIGH = 0x0010,  ///< output: vertical sync active high
    VIDFLAG_HSYNC_HIGH = 0x0020,  ///< output: horizontal sync active high
    VIDFLAG_TABLE_OUT = 0x0100,   ///< output: set in every row of the format table; makes 0x498 0x4D, not 0x4C
    VIDFLAG_HD = 0x4000,          ///< high-definition colorimetry
    VIDFLAG_PORT_A = 0x8000,      ///< source: on port A; clear: on port B
};

/// Bits of a source record's auxFlags.
enum SrcAux : std::uint8_t {
    SRCAUX_COMP_HSYNC = 0x01,     ///< composite horizontal sync, port A only
    SRCAUX_HIGH_TOP_FIELD = 0x02, ///< high top field ID
    SRCAUX_INPUT_FIELD = 0x04,    ///< input field ID, port A only
    SRCAUX_CBCR_SWAP = 0x08,      ///< Cb and Cr swapped
};

/// Bits of an output record's auxFlags.
enum OutAux : std::uint16_t {
    OUTAUX_VSYNC_VACT = 0x0001,    ///< V sync used as V active
    OUTAUX_HSYNC_HACT = 0x0002,    ///< H sync used as H active
    OUTAUX_VACT_INVERT = 0x0004,   ///< V active inverted
    OUTAUX_HACT_INVERT = 0x0008,   ///< H active inverted
    OUTAUX_DE_MODE1 = 0x0010,      ///< data enable mode 1
    OUTAUX_DE_MODE0 = 0x0020,      ///< data enable mode 0; neither bit: mode 2
    OUTAUX_DAC_PBPR_SWAP = 0x0200, ///< Pb and Pr swapped at the DAC
    OUTAUX_DIG_CBCR_SWAP = 0x8000, ///< Cb and Cr swapped at the digital output
};

// ---- Pieces of the records ----

/// A picture area in pixels and lines.
struct VideoWindow {
    std::uint16_t w = 0, h = 0, x = 0, y = 0;

    bool operator==(const VideoWindow&) const = default;
};

/// A clock delay. Fine must be below 4, as coarse begins above its two bits.
struct ClockDelay {
    std::uint8_t coarse{}, fine{};
};

namespace kova {

/// Whether a caller's window is to be used: it has a width and a height.
constexpr bool IsInUse(const VideoWindow& win) { return win.w != 0 && win.h != 0; }

/// The value that goes to the chip.
constexpr std::uint16_t DelayValue(const ClockDelay& delay) {
    return static_cast<std::uint16_t>(delay.coarse * 4 | delay.fine);
}

} // namespace kova

/// Frame memory configuration.
struct MemoryConfig {
    std::uint8_t select; ///< non-zero: 3, zero: 0 in register 0x012 bits 1..0
    std::uint8_t flags;  ///< bit 2: 0x022 bits 5..4, bit 1: 0x022 bits 3..2, bit 0: 0x03C bits 13..12; set: 0, clear: 2
    std::uint8_t mode;   ///< register 0x022 bits 1..0
};

/// A colour conversion: the 3 by 3 matrix row by row, three input offsets, three output offsets. Rows, columns and
/// offsets stand for G/Y, B/Cb, R/Cr in this order; 512 is 1.0; the chip takes 12 bits of each word.
using CscSet = std::array<std::int16_t, 15>;

/// A scaler filter: 64 entries of two coefficients, 2048 standing for 1.0.
using MfcTable = std::array<std::array<std::int16_t, 2>, 64>;

/// Words of an output's sync timing. Horizontal ones count pixels, vertical ones lines.
enum SyncWord : std::uint8_t {
    SYNC_SETUP = 0, ///< three words for registers 0x484 to 0x486
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
    SYNC_V2_ACTIVE_START, ///< V2: an interlaced output's second field
    SYNC_V2_ACTIVE_END,
    SYNC_V2_SYNC_END,
    SYNC_V2_SYNC_START,
    SYNC_V2_H_POSITION,
    SYNC_PLL_P, ///< pixel clock = 27 MHz * M / (P * 2^S)
    SYNC_PLL_M,
    SYNC_PLL_S,
    SYNC_WORDS
};

using SyncTiming = std::array<std::uint16_t, SYNC_WORDS>;
using DacData = std::array<std::uint16_t, 37>; ///< the DAC's sync data memory
using TmdsDrive = std::array<std::uint8_t, 2>; ///< values of register 0x040 bits 6..4 and 3..0

// ---- Records ----
// The caller fills the first fields, the driver those after the comment. Pointers are borrowed: the driver reads
// through them each time a setter runs and never frees them.

/// The picture that enters the chip.
struct SrcVideoInfo {
    std::uint8_t frmt{};             ///< SrcVideoFormat
    std::uint8_t mode{};             ///< VideoMode
    std::uint8_t auxFlags{};         ///< SrcAux bits
    std::uint8_t ycOffset{};         ///< Y/C sample offset, 0 to 7
    const ClockDelay* pClockDelay{}; ///< input port clock; null: left as it is
    const CscSet* pCscCoef{};        ///< input colour conversion; null: built in
    VideoWindow stClip{}; ///< clip window; its x and y are also the input sync position offsets, in use or not
    // Kept by the driver.
    std::uint16_t hTotal{}; ///< pixels per line
    std::uint16_t flags{};  ///< VideoFlag bits
    VideoWindow stActive{}; ///< active width and height; x and y are not touched
};

/// The picture that leaves the chip.
struct OutVideoInfo {
    std::uint8_t frmt{};          ///< OutVideoFormat
    std::uint8_t mode{};          ///< VideoMode, 0 to 7
    std::uint16_t auxFlags{};     ///< OutAux bits
    const ClockDelay* pOutVCLK{}; ///< clock delays; null: left as it is
    const ClockDelay* pOutVCLKB{};
    const ClockDelay* pIntVCLK{};
    const ClockDelay* pIntVCLK2x{};
    const ClockDelay* pIntDACCLK{};
    const CscSet* pCscCoef{}; ///< output colour conversion; null: built in
    const MfcTable* pMfcHY{}; ///< scaler filters, horizontal and vertical, luma and chroma; null: built in
    const MfcTable* pMfcHC{};
    const MfcTable* pMfcVY{};
    const MfcTable* pMfcVC{};
    VideoWindow stZoom{};      ///< the part of the picture that is scaled, when in use
    VideoWindow stView{};      ///< where it is shown, when in use
    std::uint8_t brightness{}; ///< picture controls, 128 is neutral for each
    std::uint8_t contrast{};
    std::uint8_t saturation{};
    std::uint8_t hue{};
    std::uint8_t offsetG{};
    std::uint8_t offsetB{};
    std::uint8_t offsetR{};
    // Kept by the driver.
    std::uint16_t flags{};  ///< VideoFlag bits
    VideoWindow stActive{}; ///< active width and height; x and y are not touched
    SyncTiming sync{};
    DacData dac{};
    TmdsDrive tmds{};
};

extern SrcVideoInfo stSrcVideoInfo; ///< the source that the start-up sequence sets up
extern OutVideoInfo stOutVideoInfo; ///< the output that the start-up sequence sets up

/// The output as the transmitter sees it: a VideoMode, written when a sink's capabilities are read.
extern std::uint8_t OutVideoMode;
extern std::uint8_t OutVideoFrmt; ///< the transmitter's view of the output format
extern std::uint8_t SrcVideoFrmt; ///< the transmitter's view of the source format

// ---- Format tables ----

/// What a source format puts into the record.
struct SrcVideoRow {
    std::uint16_t hTotal, flags, width, height;
};

/// What an output format puts into the record, besides its timing, DAC data and TMDS drive.
struct OutVideoRow {
    std::uint16_t flags, width, height;
};

extern const std::array<SrcVideoRow, VIDSRC_COUNT> defKOVASrcVideo;
extern const std::array<OutVideoRow, VIDOUT_COUNT> defKOVAOutVideo;
extern const std::array<SyncTiming, VIDOUT_COUNT> defKOVAOutSync;
extern const std::array<DacData, VIDOUT_COUNT> defKOVADACData;
extern const std::array<TmdsDrive, VIDOUT_COUNT> defKOVAOutTMDS;
