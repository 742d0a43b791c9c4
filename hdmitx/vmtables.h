#pragma once
// The transmitter's video timings, and the map from the video processor's output formats to them.

#include <array>
#include <cstdint>

/// One video timing as the transmitter sends it.
struct VModeRow {
    std::uint8_t Vic;           ///< CEA-861 video identification code, the 4:3 one of a pair; PC timings: own number
    std::uint8_t WideVic;       ///< CEA-861 code of the same timing in 16:9, 0 if there is none
    std::uint8_t SubMode;       ///< 1 to 3: variants of one pair of codes with different numbers of lines
    std::uint16_t PixClk;       ///< pixel clock in 10 kHz
    std::uint8_t SyncFlags;     ///< VMODE_ bits below
    std::uint16_t VFreq;        ///< vertical frequency in 0.01 Hz, of fields if the timing is interlaced
    std::uint16_t HTotal;       ///< pixels per line
    std::uint16_t VTotal;       ///< lines per frame, per field if the timing is interlaced
    std::uint16_t DeDelay;      ///< pixels from the start of horizontal sync to the first active pixel
    std::uint16_t DeTop;        ///< lines from the start of vertical sync to the first active line
    std::uint16_t HActive;      ///< active pixels per line
    std::uint16_t VActive;      ///< active lines per frame, of both fields together
    std::uint8_t Aspect;        ///< aspect ratio of the picture: 1 is 4:3, 2 is 16:9, 0 is not given
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

/// Rows 0 to 27 are the CEA-861 timings, rows 28 to 77 PC timings. Rows 78 to 81 are all zero.
extern const std::array<VModeRow, 82> VModeTables;

/// @param frmt  output format of the video processor
/// @return the format's row of VModeTables; 78 for formats 18 and above. Row 78 is all zero: no timing, no pixel clock,
///         code 0.
std::uint8_t KovaFrmt2VMIndex(std::uint8_t frmt);

/// @param row  index into VModeTables, 0 to 81
/// @return the row's pixel clock in 10 kHz; 0 for an index outside the table
std::uint16_t GetPixelClock(std::uint8_t row);
