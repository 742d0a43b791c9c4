#include "app/device.h"
#include "app/shell.h"
#include "kova/version.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

// The version string in the program file. To print it: strings kova-console | grep '^kova-console '
[[gnu::used, gnu::retain]] constexpr char kVersion[] = "kova-console " KOVA_VERSION; // NOLINT(modernize-avoid-c-arrays)

std::array<char, BUFSIZ> outputBuffer;
std::array<char, BUFSIZ> inputBuffer;

// Makes standard output line buffered, also when it is a file or a pipe. A log then shows every line at once, and in
// the right order with the lines of standard error. The two static buffers keep stdio from allocating memory.
void SetUpStreams() {
    std::setvbuf(stdout, outputBuffer.data(), _IOLBF, outputBuffer.size());
    std::setvbuf(stdin, inputBuffer.data(), _IOFBF, inputBuffer.size());
}

// Closes the device node and ends the process at once, without waiting for the loop thread.
//
// Standard output is locked before the node is closed and stays locked. The loop thread's next transfer then fails, and
// the thread waits for the lock instead of printing an error.
//
// The loop thread itself can hold the lock, for example when nothing reads its output. The process then ends without
// waiting for the lock, and the kernel closes the node.
[[noreturn]] void CloseAndExit() {
    // When standard input is a file, this moves its position back to the end of the last executed command. A program
    // that reads the same file next then gets the commands that were not executed.
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

// Sets the thread's timer slack to 1 µs. The kernel can lengthen every sleep by the timer slack. The default of 50 µs
// is half of the pause before each video processor transfer. The program also works with the default, but more slowly.
// The result of the call is therefore not checked.
void ReduceTimerSlack() {
    constexpr unsigned long kSlackNanoseconds = 1000;
    prctl(PR_SET_TIMERSLACK, kSlackNanoseconds, 0UL, 0UL, 0UL);
}

} // namespace

int main() {
    SetUpStreams();
    ReduceTimerSlack();
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
    CloseAndExit();
}
