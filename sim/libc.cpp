// The five libc calls by which the console reaches the world, and openat, by which another program may. For the device
// node they answer as the kernel driver would; everything else goes on to the kernel by its system call, since these
// definitions hide libc's own.
//
// Which symbol a call of open or ioctl becomes, the C library's headers decide: where files or times are 64 bits wide,
// or calls are fortified, there are others. All of them are here, so the fortified headers' own must not be.
#undef _FORTIFY_SOURCE

#include "app/device.h"
#include "sim/board.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// The open descriptors of the device node. A process has 1024 descriptors unless somebody raised its limit.
std::array<std::atomic<bool>, 1024> isDevice;

bool IsDevice(int fd) { return fd >= 0 && static_cast<std::size_t>(fd) < isDevice.size() && isDevice[fd]; }

std::int32_t OpenDevice() {
    const std::scoped_lock lock(sim::boardLock);
    if (!sim::isSetUp && !sim::SetUpFromEnvironment()) {
        sim::isSetUp = false; // nor is it for who tries again
        errno = ENODEV;
        return -1;
    }
    // A descriptor of the kernel's, so that the number is nobody else's.
    const auto fd = static_cast<int>(syscall(SYS_openat, AT_FDCWD, "/dev/null", O_RDWR, 0));
    if (fd >= static_cast<int>(isDevice.size())) {
        syscall(SYS_close, fd);
        errno = EMFILE;
        return -1;
    }
    if (fd >= 0) {
        isDevice[fd] = true;
    }
    return fd;
}

bool SkipsWaiting() {
    const std::scoped_lock lock(sim::boardLock);
    return sim::SkipsWaiting();
}

bool Pause(std::uint64_t microseconds) {
    {
        const std::scoped_lock lock(sim::boardLock);
        if (sim::PausesFail()) {
            errno = ENOSYS;
            return false;
        }
        sim::NotePause(microseconds);
        if (sim::PassVirtually(microseconds)) {
            return true;
        }
    }
    sim::SleepReally(microseconds);
    return true;
}

// A mode that the caller did not pass is anything: the kernel looks at it only when the flags create a file.
int OpenAny(int folder, const char* path, int flags, mode_t mode) {
    if (std::strcmp(path, kDeviceNode) == 0) {
        return OpenDevice();
    }
    return static_cast<int>(syscall(SYS_openat, folder, path, flags, mode));
}

} // namespace

extern "C" {

// clang-format off
int Open    (const char* path, int flags, mode_t mode)             __asm__("open");
int Open64  (const char* path, int flags, mode_t mode)             __asm__("open64");
int OpenAt  (int folder, const char* path, int flags, mode_t mode) __asm__("openat");
int OpenAt64(int folder, const char* path, int flags, mode_t mode) __asm__("openat64");
int Ioctl   (int fd, unsigned long request, void* argument)        __asm__("ioctl");

// The same once more: the fortified calls, which have no mode, the call of a program with 64 bits for the time, and
// the C library's own, which would bring its definitions of the others into a static program.
decltype(Open)     OpenChecked     __asm__("__open_2")       __attribute__((alias("open")));
decltype(Open64)   Open64Checked   __asm__("__open64_2")     __attribute__((alias("open64")));
decltype(OpenAt)   OpenAtChecked   __asm__("__openat_2")     __attribute__((alias("openat")));
decltype(OpenAt64) OpenAt64Checked __asm__("__openat64_2")   __attribute__((alias("openat64")));
decltype(Ioctl)    IoctlTime64     __asm__("__ioctl_time64") __attribute__((alias("ioctl")));
decltype(Ioctl)    IoctlOfLibc     __asm__("__ioctl")        __attribute__((alias("ioctl")));
// clang-format on

int Open(const char* path, int flags, mode_t mode) { return OpenAny(AT_FDCWD, path, flags, mode); }
int Open64(const char* path, int flags, mode_t mode) { return Open(path, flags | O_LARGEFILE, mode); }
int OpenAt(int folder, const char* path, int flags, mode_t mode) { return OpenAny(folder, path, flags, mode); }
int OpenAt64(int folder, const char* path, int flags, mode_t mode) {
    return OpenAt(folder, path, flags | O_LARGEFILE, mode);
}

int Ioctl(int fd, unsigned long request, void* argument) {
    if (IsDevice(fd)) {
        const std::scoped_lock lock(sim::boardLock);
        if (sim::Transfer(request, *static_cast<kova_xfer*>(argument))) {
            return 0;
        }
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_ioctl, fd, request, argument));
}

int close(int fd) {
    if (IsDevice(fd)) {
        const std::scoped_lock lock(sim::boardLock);
        isDevice[fd] = false;
        sim::NoteClose();
    }
    return static_cast<int>(syscall(SYS_close, fd));
}

unsigned sleep(unsigned seconds) {
    // Another thread that has something to do gets the time that is skipped, but no more than that.
    constexpr std::uint64_t kPoll = 100;
    const std::uint64_t microseconds = std::uint64_t{seconds} * 1'000'000;
    for (std::uint64_t waited = 0; waited < microseconds && SkipsWaiting() && sim::OthersRun(); waited += kPoll) {
        sim::SleepReally(kPoll);
    }
    return Pause(microseconds) ? 0 : seconds;
}

int usleep(useconds_t microseconds) { return Pause(microseconds) ? 0 : -1; }

} // extern "C"
