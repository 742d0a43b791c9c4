// A starting point for an application that drives the HDMI output itself. This program starts the transmitter for one
// output format. Then it runs the interrupt handler and the timer handler of the transmitter once a second.
//
// usage: transmitter [PASSES]     PASSES is the number of times that the handlers run. Without PASSES, the program runs
//                                 until it is stopped.
//
// CMakeLists.txt in the same folder builds this program. This command builds it as well:
//     c++ -std=c++20 transmitter.cpp $(pkg-config --cflags --libs kova)

#include <cstdio>
#include <cstdlib>
#include <hdmitx/hdmitx.h>
#include <kova/api.h>
#include <unistd.h>

int main(int argc, char** argv) {
    long passes = -1;
    if (argc > 1) {
        char* end = nullptr;
        passes = std::strtol(argv[1], &end, 10);
        if (argc > 2 || *end != '\0' || passes < 1) {
            std::fputs("usage: transmitter [PASSES]\n", stderr);
            return 2;
        }
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // keeps the transfer trace in order with the reports on standard error
    if (open_kova() < 0) {
        std::perror(kDeviceNode);
        return 1;
    }

    // The format that the video processor sends. This example does not set up the video processor.
    stOutVideoInfo.frmt = VIDOUT_1920x1080p60; // timing, InfoFrame and audio clock
    OutVideoFrmt = VIDOUT_1920x1080p60;        // aspect ratio of the active picture
    OutVideoMode = RGB444_8;                   // the EDID parser may change this

    // Starts the transmitter with the default configuration. To use your own values, call InitHDMITXVariable, set the
    // values, and call InitHDMITX. InitHDMITX also enables the interrupts of HDMI or DVI operation.
    if (InitializeHDMITX() == 0) {
        std::fputs("\n", stderr);
        close_kova();
        return 1;
    }

    // The handlers share their state without a lock. Only one thread may run them, and no other thread may start the
    // transmitter.
    for (long pass = 0; passes < 0 || pass < passes; ++pass) {
        sleep(1);
        KOVAAPI_GetParseIRQ(); // stores the interrupt status, which HDMITxInterruptHandler uses
        HDMITxInterruptHandler();
        HDMITxTimerHandler();
    }
    HDMITXTotalPowerDownEnable(1);
    close_kova();
    return 0;
}
