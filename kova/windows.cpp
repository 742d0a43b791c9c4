#include "kova/windows.h"

#include "kova/field.h"
#include "kova/ports.h"
#include "kova/shared_regs.h"
#include "kova/state.h"

#include <algorithm>
#include <array>

using namespace kova;

namespace {

constexpr std::uint16_t kViewWindow = 0x436;  // w, h, x, y
constexpr std::uint16_t kScalerInput = 0x43A; // w, h

// The active size is rounded down to multiples of these numbers.
constexpr unsigned kWidthStep8Bit = 8;
constexpr unsigned kWidthStep10Bit = 24;
constexpr unsigned kHeightStep = 8;

constexpr std::uint16_t kWidestInterlaced = 1024;
constexpr std::uint16_t kWidestProgressive = 1280;
constexpr std::uint16_t kDecimatedWidth = 1024;

constexpr std::uint16_t RoundDown(unsigned value, unsigned step) {
    return static_cast<std::uint16_t>(value - value % step);
}

std::uint8_t WriteSize(std::uint16_t addr, const VideoWindow& win) { return Write(addr, std::array{win.w, win.h}); }

std::uint8_t WriteWindow(std::uint16_t addr, const VideoWindow& win) {
    return Write(addr, std::array{win.w, win.h, win.x, win.y});
}

} // namespace

std::uint8_t KOVAAPI_SetWindowSrcVideo(SrcVideoInfo* src) {
    const bool is8Bit = (src->flags & VIDFLAG_8BIT) != 0;
    src->stActive.w = RoundDown(src->stActive.w, is8Bit ? kWidthStep8Bit : kWidthStep10Bit);
    src->stActive.h = RoundDown(src->stActive.h, kHeightStep);

    stKOVASrcWIN = IsInUse(src->stClip) ? src->stClip : src->stActive;
    const PortRegs& port = PortOf(*src);
    if (Write(port.positionX, src->stClip.x) || Write(port.positionY, src->stClip.y)
        || KOVA_RegWrite(port.windowW, stKOVASrcWIN.w) || KOVA_RegWrite(port.windowH, stKOVASrcWIN.h)) {
        return KOVA_I2C_ERROR;
    }
    // The port has cut the picture out. For all later stages the picture starts at 0, 0.
    stKOVASrcWIN.x = 0;
    stKOVASrcWIN.y = 0;
    return AsResult(WriteSize(kScalerInput, stKOVASrcWIN) || LocalUpdate());
}

std::uint8_t KOVAAPI_SetWindowSrcCLIP(SrcVideoInfo* src, const VideoWindow* win) {
    src->stClip = *win;
    return KOVAAPI_SetWindowSrcVideo(src);
}

std::uint8_t KOVAAPI_SetHDecimateVideo(const SrcVideoInfo* src) {
    const bool interlaced = (src->flags & VIDFLAG_PROGRESSIVE) == 0;
    const bool decimating = stKOVASrcWIN.w > (interlaced ? kWidestInterlaced : kWidestProgressive);
    SetBits(stKOVADeint.state, DEINT_DECIMATING, decimating);
    if (decimating) {
        stKOVASrcWIN.w = kDecimatedWidth;
    }
    return KOVA_NO_ERROR;
}

std::uint8_t KOVAAPI_SetWindowOutVideo(const OutVideoInfo* out) {
    stKOVADstWIN = stKOVASrcWIN;
    stKOVAViewWIN = IsInUse(out->stView) ? out->stView : out->stActive;
    stKOVADstWIN.w = std::min(stKOVADstWIN.w, stKOVAViewWIN.w);
    if (WriteSize(kDestination, stKOVADstWIN)) {
        return KOVA_I2C_ERROR;
    }
    stKOVAZoomWIN = IsInUse(out->stZoom) ? out->stZoom : stKOVADstWIN;
    return AsResult(WriteWindow(kZoomWindow, stKOVAZoomWIN) || WriteWindow(kViewWindow, stKOVAViewWIN)
                    || LocalUpdate());
}

std::uint8_t KOVAAPI_SetWindowOutZOOM(OutVideoInfo* out, const VideoWindow* win) {
    out->stZoom = *win;
    return KOVAAPI_SetWindowOutVideo(out);
}

std::uint8_t KOVAAPI_SetWindowOutVIEW(OutVideoInfo* out, const VideoWindow* win) {
    out->stView = *win;
    return KOVAAPI_SetWindowOutVideo(out);
}

std::uint8_t KOVAAPI_GetWindowHDECI(VideoWindow* win) {
    if (KOVA_RegRead(kDestination, &win->w) || KOVA_RegRead(kDestinationH, &win->h)) {
        return KOVA_I2C_ERROR;
    }
    win->x = 0;
    win->y = 0;
    return KOVA_NO_ERROR;
}
