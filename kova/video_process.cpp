#include "kova/video_process.h"

#include "kova/csc.h"
#include "kova/deinterlacer.h"
#include "kova/field.h"
#include "kova/filters.h"
#include "kova/input_port.h"
#include "kova/memory.h"
#include "kova/output_port.h"
#include "kova/ports.h"
#include "kova/scaler.h"
#include "kova/shared_regs.h"
#include "kova/state.h"
#include "kova/windows.h"

using namespace kova;

namespace {

constexpr Field kDoubleRateSync{0x498, 1, 1};

constexpr std::uint16_t kOutSyncReset = 100;

} // namespace

std::uint8_t KOVAAPI_SetSrcHDMapBug(const SrcVideoInfo* src) {
    if (src->frmt >= VIDSRC_COUNT) {
        return KOVA_I2C_ERROR;
    }
    return AsResult(KOVA_RegWrite(kDestination, 720) || KOVA_RegWrite(kDestinationH, 480) || LocalUpdate());
}

// Several steps use results of earlier steps, so the order matters. The two port setters fill the flags that the colour
// converters read. The decimation may narrow the source window, and the output windows start from the result. The front
// filters, the scaler coefficients, the precision and the deinterlacer depend on the windows. The deinterlacer also
// depends on the precision.
std::uint8_t KOVAAPI_VideoProcess(SrcVideoInfo* src, OutVideoInfo* out) {
    // clang-format off
    return AsResult(KOVAAPI_SetSrcHDMapBug(src)
                 || KOVAAPI_SetSrcPortMode(src)
                 || KOVAAPI_SetOutPortMode(out)
                 || KOVAAPI_SetCSCSrcVideo(src, out)
                 || KOVAAPI_SetCSCOutVideo(src, out)
                 || KOVAAPI_SetWindowSrcVideo(src)
                 || KOVAAPI_SetHDecimateVideo(src)
                 || KOVAAPI_SetWindowOutVideo(out)
                 || KOVAAPI_SetFrontNRFilterInHD()
                 || KOVAAPI_SetMFCFilterCoef(out)
                 || KOVAAPI_SetMemPrecision(src, out)
                 || KOVAAPI_SetDeinterMode(src)
                 || KOVAAPI_ResetOutSync(kOutSyncReset));
    // clang-format on
}

std::uint8_t KOVAAPI_HDDBLProcess(SrcVideoInfo* src, OutVideoInfo* out, std::uint8_t on) {
    SetBits(stKOVADeint.state, DEINT_HD_DOUBLE, on != 0);
    if (KOVAAPI_SetVCLKPLLSource(1) || KOVAAPI_SetDeintYMode(on != 0 ? 2 : 1) || KOVAAPI_VideoProcess(src, out)) {
        return KOVA_I2C_ERROR;
    }
    if (on == 0) {
        return KOVA_NO_ERROR;
    }
    // The video PLL stays held from here on, because the video clock now comes from the input port.
    if (Write(kVideoPllHold, 1) || KOVAAPI_SetVCLKPLLSource(OnPortA(*src) ? 2 : 0)) {
        return KOVA_I2C_ERROR;
    }
    stKOVASrcWIN = IsInUse(src->stClip) ? src->stClip : src->stActive;
    // clang-format off
    return AsResult(KOVA_RegWrite(kZoomWindow, stKOVASrcWIN.w)
                 || KOVA_RegWrite(kDestination, stKOVASrcWIN.w)
                 || KOVAAPI_EnableDeintHDMode(1)
                 || Write(kDoubleRateSync, 1)
                 || KOVAAPI_ResetOutSync(kOutSyncReset));
    // clang-format on
}
