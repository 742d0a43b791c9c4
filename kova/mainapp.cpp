#include "kova/mainapp.h"

#include "hdmitx/presets.h"
#include "kova/deinterlacer.h"
#include "kova/filters.h"
#include "kova/input_port.h"
#include "kova/memory.h"
#include "kova/output_port.h"
#include "kova/state.h"
#include "kova/status.h"
#include "kova/video_process.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int kMostIdReads = 100'000;
constexpr useconds_t kSettleMicroseconds = 100'000;
constexpr std::uint8_t kNeutral = 128;

bool AwaitDeviceId() {
    for (int reads = 0; reads < kMostIdReads; ++reads) {
        std::uint16_t id = 0;
        KOVAAPI_GetDeviceID(&id);
        std::printf("nID=%x \n", unsigned{id});
        if (id == KOVA_DEVICE_ID) {
            std::fputs("ok \n", stdout);
            return true;
        }
    }
    std::printf("The video processor did not show its device ID %x in %d reads. The start-up was given up. No register "
                "was written.\n",
                unsigned{KOVA_DEVICE_ID}, kMostIdReads);
    return false;
}

void PrepareChip() {
    stKOVAMemory = {.select = 0, .flags = 1, .mode = 0};
    KOVAAPI_SetMemory(&stKOVAMemory);
    KOVAAPI_DisplayOutWindow(0);
    usleep(kSettleMicroseconds);
    KOVAAPI_SetVCLKPLLSource(1);
    KOVAAPI_EnableClockDrive(kAllClocks, 1);
    KOVAAPI_SetInDataMapMode(3);
}

void PrepareDeinterlacer() {
    KOVAAPI_LoadDeintData();
    KOVAAPI_SetDeintYMode(1);
    KOVAAPI_SetDeintFilmMode(3);
    KOVAAPI_EnableDeintNR(1);
    KOVAAPI_EnableDeintCCS(1);
}

void PrepareFilters() {
    // A null pointer selects the built-in coefficients.
    KOVAAPI_SetSurfaceFilterCoef(nullptr);
    KOVAAPI_SetPeakingFilterCoef(nullptr);
    KOVAAPI_SetColorEnhFilterCoef(nullptr);
    KOVAAPI_SetFrontNRYFilterCoef(nullptr);
    KOVAAPI_SetFrontNRCFilterCoef(nullptr);
    KOVAAPI_SetBWExtensionPoint(nullptr, nullptr);

    KOVAAPI_EnableLTI(0);
    KOVAAPI_EnableCTICb(0);
    KOVAAPI_EnableCTICr(0);
    KOVAAPI_SetPeakingFilterGain(64);
    KOVAAPI_EnablePeakingFilter(1);
    KOVAAPI_EnableFrontNRYFilter(0);
    KOVAAPI_EnableFrontNRCFilter(0);
    KOVAAPI_EnableMedianFilter(0);
    KOVAAPI_EnableBWExtension(0);
}

void DescribeVideo() {
    stSrcVideoInfo = {};
    stOutVideoInfo = {};

    stSrcVideoClock = {.coarse = 1, .fine = 0};
    stSrcVideoInfo.frmt = VIDSRC_704x480i60;
    stSrcVideoInfo.mode = MUX656_10;
    stSrcVideoInfo.auxFlags = SRCAUX_HIGH_TOP_FIELD | SRCAUX_INPUT_FIELD;
    stSrcVideoInfo.pClockDelay = &stSrcVideoClock;

    stOutVideoInfo.frmt = VIDOUT_1280x1024p60;
    std::printf("\n =========> stOutVideoInfo.frmt(%x)\n", unsigned{stOutVideoInfo.frmt});
    stOutVideoInfo.mode = RGB444_8;
    stOutVideoInfo.brightness = kNeutral;
    stOutVideoInfo.contrast = kNeutral;
    stOutVideoInfo.saturation = kNeutral;
    stOutVideoInfo.hue = kNeutral;
    stOutVideoInfo.offsetG = kNeutral;
    stOutVideoInfo.offsetB = kNeutral;
    stOutVideoInfo.offsetR = kNeutral;
    std::printf("stSrcVideoInfo (%x)(%x)(%x)(%x)\n", unsigned{stSrcVideoInfo.frmt}, unsigned{stSrcVideoInfo.mode},
                unsigned{stSrcVideoInfo.hTotal}, unsigned{stSrcVideoInfo.flags});
}

void SwitchOutputsOn() {
    KOVAAPI_EnableOutPortPin(kAllOutPins, 1);
    KOVAAPI_EnableDACPortOut(1);
    KOVAAPI_DisplayOutWindow(1);
}

// Every successful transfer to or from the transmitter prints a trace line. Reading the registers back therefore shows
// their values on the console.
std::uint8_t StartTransmitter() {
    hdmitx::WriteTxSettings(hdmitx::kTxNormalSetup);
    std::fputs("\n$$$$$$$$$$$$$$ HDMI Read Teset $$$$$$$$$$\n\n", stdout);
    std::uint8_t last = 0;
    for (const hdmitx::TxSetting& row : hdmitx::kTxNormalSetup) {
        last = HDTX_RegRead(row.page, row.reg);
    }
    return last;
}

} // namespace

std::uint8_t CreateKOVAAPIVideoInstance() {
    if (!AwaitDeviceId()) {
        return 0;
    }
    PrepareChip();
    PrepareDeinterlacer();
    PrepareFilters();
    DescribeVideo();
    KOVAAPI_VideoProcess(&stSrcVideoInfo, &stOutVideoInfo);
    SwitchOutputsOn();
    return StartTransmitter();
}
