#pragma once
// The transmitter's video timings, and the timing that belongs to each output format of the video processor.

#include <array>
#include <cstdint>

/// One video timing as the transmitter sends it. Every DE, width, porch and offset field is 0 in the PC rows.
/// The driver does not read WideVic, SubMode, VFreq, HTotal, VBackPorch, HBackPorch and PixRepeat.
struct VModeRow {
    std::uint8_t Vic;           ///< CEA-861 video identification code, see below.
    std::uint8_t WideVic;       ///< Code of the same timing with 16:9 pictures. 0 when there is none.
    std::uint8_t SubMode;       ///< 1 to 3 in CEA-861 rows with the same Vic and WideVic but other line counts, else 0.
    std::uint16_t PixClk;       ///< Pixel clock in units of 10 kHz. 2700 in every PC row, which is not its real clock.
    std::uint8_t SyncFlags;     ///< The VMODE_ bits below.
    std::uint16_t VFreq;        ///< Vertical frequency in units of 0.01 Hz. Interlaced: the field rate.
    std::uint16_t HTotal;       ///< Pixels per line, with blanking.
    std::uint16_t VTotal;       ///< Lines per frame, with blanking. Rows 3, 4, 14 and 15: lines per field.
    std::uint16_t DeDelay;      ///< Pixels from the start of horizontal sync to the first active pixel.
    std::uint16_t DeTop;        ///< Lines from the start of vertical sync to the first active line of a field or frame.
    std::uint16_t HActive;      ///< Active pixels per line.
    std::uint16_t VActive;      ///< Active lines per frame. Interlaced: of both fields together.
    std::uint8_t Aspect;        ///< Picture aspect: 1 is 4:3, 2 is 16:9, 0 is not given.
    std::uint8_t EmbSyncAdjust; ///< Embedded-sync adjustment, 2 bits, for 0x72:0x3E.
    std::uint16_t HSyncWidth;   ///< Horizontal sync width in pixels.
    std::uint16_t VSyncWidth;   ///< Vertical sync width in lines.
    std::uint16_t VBackPorch;   ///< Vertical back porch in lines.
    std::uint16_t HBackPorch;   ///< Horizontal back porch in pixels.
    std::uint16_t HFrontPorch;  ///< Pixels from the end of active video to the start of horizontal sync.
    std::uint16_t VFrontPorch;  ///< Vertical front porch in lines.
    std::uint16_t Field2Offset; ///< Pixels to the vertical sync of the second field. 0 in progressive rows.
    std::uint8_t PixRepeat;     ///< 1 when the timing repeats pixels, else 0.
};

/// Bits of VModeRow::SyncFlags.
enum : std::uint8_t {
    VMODE_VSYNC_POSITIVE = 0x01,
    VMODE_HSYNC_POSITIVE = 0x02,
    VMODE_INTERLACED = 0x04,
};

/// Rows 0 to 27 are the CEA-861 timings. Their Vic is the video identification code. Where 4:3 and 16:9 pictures have
/// different codes, Vic is the code for 4:3. Rows 28 to 77 are PC timings. Their Vic is a number that only this table
/// uses, 35 to 83. Rows 78 to 81 are all zero.
extern const std::array<VModeRow, 82> VModeTables;

/// Finds the timing of an output format. Accesses no register.
/// @param frmt  output format of the video processor (OutVideoFormat)
/// @return the row of VModeTables. 78, a row of zeros, for formats 18 and above: the table has no timing for them.
std::uint8_t KovaFrmt2VMIndex(std::uint8_t frmt);

/// Returns the pixel clock of a timing. Accesses no register.
/// @param row  index of VModeTables
/// @return the pixel clock in units of 10 kHz. 0 for rows above 81.
std::uint16_t GetPixelClock(std::uint8_t row);
