#include "app/device.h"
#include "app/shell.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

std::array<char, BUFSIZ> outputBuffer;
std::array<char, BUFSIZ> inputBuffer;

// Line buffered whatever standard output is, so that a log shows every line at once and in order with standard error.
// Buffers of our own keep stdio from allocating.
void SetUpStreams() {
    std::setvbuf(stdout, outputBuffer.data(), _IOLBF, outputBuffer.size());
    std::setvbuf(stdin, inputBuffer.data(), _IOFBF, inputBuffer.size());
}

// Ends the process at once, whatever the loop is doing. The node is closed by that end, which stops the loop before:
// closed here, it would fail the rest of a pass. Standard output is not flushed again: its lines are all out, and the
// loop may hold it for as long as nobody reads them. What was not read from a file of commands is left to its next
// reader.
[[noreturn]] void End() {
    std::fflush(stdin); // cppcheck-suppress fflushOnInputStream ; POSIX says what it does
    _exit(0);
}

// The kernel may lengthen every sleep by the thread's timer slack, 50 µs by default: half of the pause before a video
// processor transfer. Without the smaller slack everything works, only slower, so a failure does not matter.
void SharpenPauses() {
    constexpr unsigned long kSlackNanoseconds = 1000;
    prctl(PR_SET_TIMERSLACK, kSlackNanoseconds, 0UL, 0UL, 0UL);
}

} // namespace

int main() {
    SetUpStreams();
    SharpenPauses();
    if (open_kova() < 0) {
        const int reason = errno;
        std::fputs("kova_310 driver open fail \n", stdout);
        std::fputs("open error kova_310\n", stdout);
        errno = reason;
        std::perror(kDeviceNode);
        return -1;
    }
    std::fputs("kova_310 driver open success \n", stdout);
    RunShell();
    End();
}
