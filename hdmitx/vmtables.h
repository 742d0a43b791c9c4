#pragma once
// The transmitter's video timings, and the map from the video processor's output formats to them.

#include <array>
#include <cstdint>

/// One video timing as the transmitter sends it.
struct VModeRow {
    std::uint8_t Vic; ///< CEA-861 video identification code (the 4:3 one of a pair); PC rows: the table's own number
    std::uint8_t WideVic;       ///< 16:9 code of the same timing, 0: none
    std::uint8_t SubMode;       ///< 1 to 3: line-count variants of one pair of codes
    std::uint16_t PixClk;       ///< pixel clock in 10 kHz
    std::uint8_t SyncFlags;     ///< VMODE_ bits below
    std::uint16_t VFreq;        ///< vertical frequency in 0.01 Hz; field rate when interlaced
    std::uint16_t HTotal;       ///< pixels per line
    std::uint16_t VTotal;       ///< lines per frame; per field when interlaced
    std::uint16_t DeDelay;      ///< pixels from the start of horizontal sync to the first active one
    std::uint16_t DeTop;        ///< lines from the start of vertical sync to the first active one
    std::uint16_t HActive;      ///< active pixels per line
    std::uint16_t VActive;      ///< active lines per frame, both fields
    std::uint8_t Aspect;        ///< picture aspect: 1 = 4:3, 2 = 16:9, 0 = not given
    std::uint8_t EmbSyncAdjust; ///< embedded-sync adjustment, 2 bits
    std::uint16_t HSyncWidth;   ///< pixels
    std::uint16_t VSyncWidth;   ///< lines
    std::uint16_t VBackPorch;   ///< lines
    std::uint16_t HBackPorch;   ///< pixels
    std::uint16_t HFrontPorch;  ///< pixels from the end of active video to horizontal sync
    std::uint16_t VFrontPorch;  ///< lines
    std::uint16_t Field2Offset; ///< pixels to the second field's vertical sync
    std::uint8_t PixRepeat;     ///< 1: a timing with repeated pixels
};

/// Bits of VModeRow::SyncFlags.
enum : std::uint8_t {
    VMODE_VSYNC_POSITIVE = 0x01,
    VMODE_HSYNC_POSITIVE = 0x02,
    VMODE_INTERLACED = 0x04,
};

/// Rows 0 to 27: the CEA-861 timings; 28 to 77: PC timings; 78 to 81: all zero.
extern const std::array<VModeRow, 82> VModeTables;

/// @param frmt  output format of the video processor
/// @return the format's row of VModeTables; for formats 18 and above row 78: no timing, no pixel clock, code 0.
std::uint8_t KovaFrmt2VMIndex(std::uint8_t frmt);

/// @param row  below 82   @return the row's pixel clock in 10 kHz; 0 outside the table
std::uint16_t GetPixelClock(std::uint8_t row);
