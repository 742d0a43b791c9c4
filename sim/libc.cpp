// The five libc calls by which the console reaches the world. For the device node they answer as the kernel driver
// would; everything else goes on to the kernel by its system call, since these definitions hide libc's own.

#include "sim/board.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int kNone = -1;
std::atomic<int> deviceFd = kNone;

std::int32_t OpenDevice() {
    const std::scoped_lock lock(sim::boardLock);
    if (!sim::isSetUp && !sim::SetUpFromEnvironment()) {
        sim::isSetUp = false; // nor is it for who tries again
        errno = ENODEV;
        return -1;
    }
    // A descriptor of the kernel's, so that the number is nobody else's.
    deviceFd = static_cast<int>(syscall(SYS_openat, AT_FDCWD, "/dev/null", O_RDWR, 0));
    return deviceFd;
}

bool SkipsWaiting() {
    const std::scoped_lock lock(sim::boardLock);
    return sim::SkipsWaiting();
}

void Pause(std::uint64_t microseconds) {
    {
        const std::scoped_lock lock(sim::boardLock);
        sim::NotePause(microseconds);
        if (sim::PassVirtually(microseconds)) {
            return;
        }
    }
    sim::SleepReally(microseconds);
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    if (std::strcmp(path, kDeviceNode) == 0) {
        return OpenDevice();
    }
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(more, mode_t) : 0;
    va_end(more);
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int close(int fd) {
    if (fd == deviceFd && fd != kNone) {
        const std::scoped_lock lock(sim::boardLock);
        deviceFd = kNone;
    }
    return static_cast<int>(syscall(SYS_close, fd));
}

int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list more;
    va_start(more, request);
    void* const argument = va_arg(more, void*);
    va_end(more);
    if (fd == deviceFd && fd != kNone) {
        const std::scoped_lock lock(sim::boardLock);
        if (sim::Transfer(request, *static_cast<kova_xfer*>(argument))) {
            return 0;
        }
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_ioctl, fd, request, argument));
}

unsigned sleep(unsigned seconds) {
    // Another thread that has something to do gets the time that is skipped, but no more than that.
    constexpr std::uint64_t kPoll = 100;
    const std::uint64_t microseconds = std::uint64_t{seconds} * 1'000'000;
    for (std::uint64_t waited = 0; waited < microseconds && SkipsWaiting() && sim::OthersRun(); waited += kPoll) {
        sim::SleepReally(kPoll);
    }
    Pause(microseconds);
    return 0;
}

int usleep(useconds_t microseconds) {
    Pause(microseconds);
    return 0;
}

} // extern "C"
