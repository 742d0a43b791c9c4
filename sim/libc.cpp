// Replaces the five functions of the C library by which the console reaches the kernel: open, ioctl, close, sleep and
// usleep. Also replaces openat, which another program may use. For the device node these functions answer as the kernel
// driver would. They hide the functions of the C library, so they pass all other calls to the kernel as system calls.
//
// The C library's headers decide which symbol a call of open or ioctl uses. A program with 64-bit file offsets, with
// 64-bit times or with fortified calls uses other symbols. All these symbols are defined here. With _FORTIFY_SOURCE the
// headers define some of these symbols as inline functions, so _FORTIFY_SOURCE must be switched off.
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

// The open descriptors of the device node. By default a process can have 1024 descriptors.
std::array<std::atomic<bool>, 1024> isDevice;

bool IsDevice(int fd) {
    const auto index = static_cast<std::size_t>(fd); // beyond the array if fd is negative
    return index < isDevice.size() && isDevice[index];
}

std::int32_t OpenDevice() {
    const std::scoped_lock lock(sim::boardLock);
    if (!sim::isSetUp && !sim::SetUpFromEnvironment()) {
        sim::isSetUp = false; // a second try must set the board up again
        errno = ENODEV;
        return -1;
    }
    // The kernel hands out the descriptor, so its number is not used for another file.
    const auto fd = static_cast<int>(syscall(SYS_openat, AT_FDCWD, "/dev/null", O_RDWR, 0));
    if (fd >= static_cast<int>(isDevice.size())) {
        syscall(SYS_close, fd);
        errno = EMFILE;
        return -1;
    }
    if (fd >= 0) {
        isDevice[static_cast<std::size_t>(fd)] = true;
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

// The mode is undefined unless the flags create a file. The kernel ignores it then.
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

// More names of the same functions: the fortified calls, which have no mode, and the ioctl of a program whose times
// have 64 bits. __ioctl is the C library's own name. If __ioctl were not defined here, a static program would also get
// the C library's definitions of the other names of ioctl.
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
        isDevice[static_cast<std::size_t>(fd)] = false;
        sim::NoteClose();
    }
    return static_cast<int>(syscall(SYS_close, fd));
}

unsigned sleep(unsigned seconds) {
    // Before the time is skipped, other threads may run until they have nothing to do, but no longer than the sleep.
    constexpr std::uint64_t kPoll = 100;
    const std::uint64_t microseconds = std::uint64_t{seconds} * 1'000'000;
    for (std::uint64_t waited = 0; waited < microseconds && SkipsWaiting() && sim::OthersRun(); waited += kPoll) {
        sim::SleepReally(kPoll);
    }
    return Pause(microseconds) ? 0 : seconds;
}

int usleep(useconds_t microseconds) { return Pause(microseconds) ? 0 : -1; }

} // extern "C"
