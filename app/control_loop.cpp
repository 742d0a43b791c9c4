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

// The last thread that was started; the shell's thread alone looks at it.
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
        sleep(1); // where it fails, so do the pauses before the transfers: the first one says why
        // The interrupt handler looks at the status just stored, the timer at the output state that it may have
        // changed.
        KOVAAPI_GetParseIRQ();
        HDMIHandler();
    }
    std::fputs("ControlLoopStoped! \n", stdout);
}

void ControlLoopStart() {
    if (ControlLoop_OnOff != 0) {
        return;
    }
    // The handlers' state has no lock: a thread that was told to stop ends its last pass before the next one starts.
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
