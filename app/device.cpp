#include "app/device.h"

#include "app/transfer.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

std::int32_t s_fd = 0;

namespace {

// The pause before each transfer to the video processor. Whether a shorter pause is enough is not known.
constexpr useconds_t kPauseMicroseconds = 100;

// Set before the first report, so that a failed pause is reported only once. Every pause fails on a kernel without the
// system call that this C library uses to wait.
std::atomic_flag pauseFailed;

void Pause() {
    if (usleep(kPauseMicroseconds) != 0 && errno != EINTR && !pauseFailed.test_and_set()) {
        std::fprintf(stderr, "A pause failed, so transfers are made without pauses: %s\n", std::strerror(errno));
    }
}

// The request code selects the register page of the transmitter. The trace lines name the page by its slave number.
struct Page {
    std::uint8_t devaddr;
    int slave;
    KovaRequest read, write;
};

constexpr std::array<Page, 2> kPages{{
    {.devaddr = 0x72, .slave = 0, .read = KOVA_310_READ_HDTX_SLV0, .write = KOVA_310_WRITE_HDTX_SLV0},
    {.devaddr = 0x7A, .slave = 1, .read = KOVA_310_READ_HDTX_SLV1, .write = KOVA_310_WRITE_HDTX_SLV1},
}};

const Page* FindPage(std::uint8_t devaddr) {
    for (const Page& page : kPages) {
        if (page.devaddr == devaddr) {
            return &page;
        }
    }
    return nullptr;
}

// Makes one ioctl request. A failed request is not retried.
bool Transfer(std::int32_t fd, KovaRequest request, kova_xfer& record) { return ioctl(fd, request, &record) != -1; }

std::int32_t Result(const kova_xfer& record) { return record.data[0] | (record.data[1] << 8); }

// Opens /dev/null for each standard stream that is closed. Otherwise the device node could get the descriptor of a
// standard stream. The text of the console would then go to the kernel driver, or the console would take answers of the
// kernel driver for commands.
void OccupyStandardStreams() {
    int fd = 0;
    do {
        fd = open("/dev/null", O_RDWR);
    } while (fd >= 0 && fd <= STDERR_FILENO);
    if (fd >= 0) {
        close(fd);
    }
}

} // namespace

std::int32_t open_kova() {
    OccupyStandardStreams();
    s_fd = open(kDeviceNode, O_RDWR);
    if (s_fd >= 0 && s_fd <= STDERR_FILENO) { // /dev/null could not be opened
        close(s_fd);
        s_fd = -1;
    }
    return s_fd;
}

void close_kova() { close(s_fd); }

std::int32_t write_kova(std::int32_t fd, std::uint16_t addr, std::uint8_t d0, std::uint8_t d1) {
    Pause();
    kova_xfer record{.addr = addr, .data = {d0, d1}};
    if (!Transfer(fd, KOVA_310_WRITE, record)) {
        std::fputs("kova write error \n", stdout);
        return -1;
    }
    return 1;
}

std::int32_t read_kova(std::int32_t fd, std::uint16_t addr, std::uint8_t d0, std::uint8_t d1) {
    Pause();
    kova_xfer record{.addr = addr, .data = {d0, d1}};
    if (!Transfer(fd, KOVA_310_READ, record)) {
        std::fputs("kova read error \n", stdout);
        return -1;
    }
    return Result(record);
}

std::int32_t write_hdmi(std::uint8_t devaddr, std::uint8_t reg, std::uint8_t value) {
    const Page* const page = FindPage(devaddr);
    if (page == nullptr) {
        return -1;
    }
    kova_xfer record{.addr = reg, .data = {value, 0}};
    if (!Transfer(s_fd, page->write, record)) {
        std::printf("KOVA_310_WRITE_HDTX_SLV%d write error \n", page->slave);
        return -1;
    }
    std::printf("KOVA_310_WRITE_HDTX_SLV%d write kova.addr=(%x), kova.data[0]=(%x), kova.data[1]=(%x)\n", page->slave,
                unsigned{record.addr}, unsigned{record.data[0]}, unsigned{record.data[1]});
    return 1;
}

std::int32_t read_hdmi(std::uint8_t devaddr, std::uint8_t reg) {
    const Page* const page = FindPage(devaddr);
    if (page == nullptr) {
        return -1;
    }
    kova_xfer record{.addr = reg, .data = {0, 0}};
    if (!Transfer(s_fd, page->read, record)) {
        std::printf("KOVA_310_READ_HDTX_SLV%d  read  error \n", page->slave);
        return -1;
    }
    std::printf("KOVA_310_READ_HDTX_SLV%d  read kova.addr=(%x), kova.data[0]=(%x), kova.data[1]=(%x)\n", page->slave,
                unsigned{record.addr}, unsigned{record.data[0]}, unsigned{record.data[1]});
    return Result(record);
}
