#include "hdmitx/vmode.h"

namespace {

// The row of VModeTables for each output format. Formats 18 and above have no row.
constexpr std::array<std::uint8_t, 18> kRowOfFormat{
    4,  // 720x480i60
    15, // 720x576i50
    1,  // 720x480p60
    12, // 720x576p50
    2,  // 1280x720p60
    13, // 1280x720p50
    3,  // 1920x1080i60
    14, // 1920x1080i50
    11, // 1920x1080p60
    24, // 1920x1080p50
    34, // 640x480p60
    37, // 640x480p75
    43, // 800x600p60
    45, // 800x600p75
    51, // 1024x768p60
    53, // 1024x768p75
    58, // 1280x1024p60
    60, // 1280x1024p75
};

constexpr std::uint8_t kNoTiming = 78; // a row of zeros

} // namespace

std::uint8_t KovaFrmt2VMIndex(std::uint8_t frmt) { return frmt < kRowOfFormat.size() ? kRowOfFormat[frmt] : kNoTiming; }

const VModeRow& hdmitx::VModeRowAt(std::uint8_t row) { return VModeTables[row < VModeTables.size() ? row : kNoTiming]; }

std::uint16_t GetPixelClock(std::uint8_t row) { return hdmitx::VModeRowAt(row).PixClk; }
