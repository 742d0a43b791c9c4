// Starting point for an application that drives the HDMI output itself: it starts the transmitter for its output
// format, then runs the transmitter's interrupt and timer handlers once a second.
//
// usage: transmitter [PASSES]     without a number: until it is stopped
//
// To build it, see CMakeLists.txt beside it, or: c++ -std=c++20 transmitter.cpp $(pkg-config --cflags --libs kova)

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
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // the transfer trace, in order with the reports on standard error
    if (open_kova() < 0) {
        std::perror(kDeviceNode);
        return 1;
    }

    // What the video processor sends. Its own set-up is not part of this example.
    stOutVideoInfo.frmt = VIDOUT_1920x1080p60; // timing, InfoFrame and audio clock
    OutVideoFrmt = VIDOUT_1920x1080p60;        // aspect of the active picture
    OutVideoMode = RGB444_8;                   // the EDID may change it

    // Sets the configuration to its defaults. For another one: InitHDMITXVariable, your own values, InitHDMITX, which
    // enables the interrupts of HDMI or DVI operation as well.
    if (InitializeHDMITX() == 0) {
        std::fputs("\n", stderr);
        close_kova();
        return 1;
    }

    // The handlers share their state without a lock: one thread runs them, and no other one starts the transmitter.
    for (long pass = 0; passes < 0 || pass < passes; ++pass) {
        sleep(1);
        KOVAAPI_GetParseIRQ(); // what HDMITxInterruptHandler looks at
        HDMITxInterruptHandler();
        HDMITxTimerHandler();
    }
    HDMITXTotalPowerDownEnable(1);
    close_kova();
    return 0;
}
