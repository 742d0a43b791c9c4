#include "app/device.h"
#include "app/shell.h"
#include "kova/version.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

// Tells which version a built console is: strings kova-console | grep '^kova-console '
[[gnu::used, gnu::retain]] constexpr char kVersion[] = "kova-console " KOVA_VERSION; // NOLINT(modernize-avoid-c-arrays)

std::array<char, BUFSIZ> outputBuffer;
std::array<char, BUFSIZ> inputBuffer;

// Line buffered whatever standard output is, so that a log shows every line at once and in order with standard error.
// Buffers of our own keep stdio from allocating.
void SetUpStreams() {
    std::setvbuf(stdout, outputBuffer.data(), _IOLBF, outputBuffer.size());
    std::setvbuf(stdin, inputBuffer.data(), _IOFBF, inputBuffer.size());
}

// Closes the device node and ends the process at once, whatever the loop thread is doing. Standard output stays locked
// from before the closing to the end of the process. The loop thread's next transfer fails, since the node is closed,
// and the thread then waits for that lock instead of printing an error. If the loop thread holds the lock already,
// nobody may be reading its output: the process then ends without waiting, and the kernel closes the node.
[[noreturn]] void End() {
    // Input that was not executed stays in a file of commands, for the program that reads the file next.
    std::fflush(stdin); // cppcheck-suppress fflushOnInputStream ; POSIX defines this
    if (ftrylockfile(stdout) == 0) {
        close_kova();
        // Every line was written when it was printed, so nothing is left to flush.
        if (std::ferror(stdout) != 0) {
            std::fputs("Standard output could not be written. Some of the output is lost.\n", stderr);
        }
    }
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
