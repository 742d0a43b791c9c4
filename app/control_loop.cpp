#include "app/control_loop.h"

#include "hdmitx/hdmitx.h"
#include "kova/api.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <pthread.h>
#include <unistd.h>

std::atomic<std::int32_t> ControlLoop_OnOff{0};

namespace {

// The loop thread that was started last. Only the shell thread uses these two variables.
pthread_t loopThread;
bool loopStarted = false;

void* RunLoop(void* /*unused*/) {
    SystemMainCtrlLoop();
    return nullptr;
}

} // namespace

void HDMIHandler() {
    HDMITxInterruptHandler();
    HDMITxTimerHandler();
}

void SystemMainCtrlLoop() {
    while (ControlLoop_OnOff != 0) {
        // A failed sleep is not reported here. The pauses before the transfers then fail as well, and the first failed
        // pause reports the reason.
        sleep(1);
        // The order matters. The interrupt handler uses the interrupt status that KOVAAPI_GetParseIRQ stores. The timer
        // handler uses the output state, which the interrupt handler may have changed.
        KOVAAPI_GetParseIRQ();
        HDMIHandler();
    }
    std::fputs("ControlLoopStoped! \n", stdout);
}

void ControlLoopStart() {
    if (ControlLoop_OnOff != 0) {
        return;
    }
    // No lock protects the state of the handlers. The old thread must therefore end before the new thread starts.
    if (loopStarted) {
        pthread_join(loopThread, nullptr);
    }
    ControlLoop_OnOff = 1;
    const int error = pthread_create(&loopThread, nullptr, RunLoop, nullptr);
    if (error != 0) {
        errno = error;
        std::perror("Thread creation failed");
        std::exit(1);
    }
    loopStarted = true;
}
