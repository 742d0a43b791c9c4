#include "app/transfer.h"
#include "tests/board.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/ioctl.h>
#include <unistd.h>

extern "C" {
// clang-format off
int Open           (const char*, int, ...)      __asm__("open");
int Open64         (const char*, int, ...)      __asm__("open64");
int OpenChecked    (const char*, int)           __asm__("__open_2");
int Open64Checked  (const char*, int)           __asm__("__open64_2");
int OpenAt         (int, const char*, int, ...) __asm__("openat");
int OpenAt64       (int, const char*, int, ...) __asm__("openat64");
int OpenAtChecked  (int, const char*, int)      __asm__("__openat_2");
int OpenAt64Checked(int, const char*, int)      __asm__("__openat64_2");
int Ioctl          (int, unsigned long, ...)    __asm__("ioctl");
int IoctlTime64    (int, unsigned long, ...)    __asm__("__ioctl_time64");
// clang-format on
}

namespace {

class SimSetUp : public Recorded {
protected:
    void SetUp() override {
        ASSERT_NE(mkdtemp(folder.data()), nullptr);
        std::filesystem::current_path(folder);
        ClearEnvironment();
    }
    void TearDown() override {
        std::filesystem::remove_all(folder);
        Recorded::TearDown();
    }

    std::string folder = testing::TempDir() + "kova-sim-XXXXXX";

    static void ClearEnvironment() {
        for (const char* name : {"KOVA_SIM_EDID", "KOVA_SIM_SPEED", "KOVA_SIM_SCRIPT", "KOVA_SIM_JOURNAL"}) {
            unsetenv(name);
        }
    }

    /// Sets the board up. @return its messages; none if the set-up succeeded
    static std::string SetUpBoard() {
        bool good = false;
        std::string said = Capture([&] { good = sim::SetUpFromEnvironment(); }).err;
        EXPECT_EQ(said.empty(), good);
        return said;
    }
    /// Sets the board up with this variable alone.
    static std::string With(const char* name, const std::string& value) {
        ClearEnvironment();
        setenv(name, value.c_str(), 1);
        return SetUpBoard();
    }
    /// Sets the board up with this script.
    static std::string WithScript(const std::string& text) {
        std::ofstream("script") << text;
        return With("KOVA_SIM_SCRIPT", "script");
    }
};

TEST_F(SimSetUp, ScriptRunsOncePerStart) {
    for (int start = 0; start < 2; ++start) {
        EXPECT_EQ(WithScript("0 say once"), "");
        ASSERT_GE(open_kova(), 0);
        const Printed printed = Capture([] {
            read_hdmi(0x72, 0x09);
            read_hdmi(0x72, 0x09);
        });
        EXPECT_EQ(printed.err, "kova-sim: once\n") << start;
        close_kova();
    }
}

// Unless another speed is set, the board's clock runs in real time.
TEST_F(SimSetUp, TimeIsRealByDefault) {
    EXPECT_EQ(SetUpBoard(), "");
    const auto real = [] { return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::microseconds(1); };
    const auto board = [] { return static_cast<std::int64_t>(sim::Now()); };
    const std::array<std::int64_t, 3> from{real(), board(), real()};
    usleep(20'000);
    const std::array<std::int64_t, 3> to{real(), board(), real()};
    EXPECT_GE(to[1] - from[1], to[0] - from[2] - 2);
    EXPECT_LE(to[1] - from[1], to[2] - from[0] + 2);
}

// The C library has several names for open and ioctl. Calls for other files go to the kernel. Requests that the driver
// does not know fail.
TEST_F(SimSetUp, EveryOpenAndIoctlNameWorks) {
    EXPECT_EQ(SetUpBoard(), "");
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    EXPECT_EQ(write(ends[1], "abc", 3), 3);
    // clang-format off
    for (int (*const opened)(const char*) : {
             +[](const char* path) { return Open(path, O_RDWR); },
             +[](const char* path) { return Open64(path, O_RDWR); },
             +[](const char* path) { return OpenChecked(path, O_RDWR); },
             +[](const char* path) { return Open64Checked(path, O_RDWR); },
             +[](const char* path) { return OpenAt(AT_FDCWD, path, O_RDWR); },
             +[](const char* path) { return OpenAt64(AT_FDCWD, path, O_RDWR); },
             +[](const char* path) { return OpenAtChecked(AT_FDCWD, path, O_RDWR); },
             +[](const char* path) { return OpenAt64Checked(AT_FDCWD, path, O_RDWR); }}) {
        // clang-format on
        const int node = opened(kDeviceNode);
        EXPECT_EQ(close(Open(kDeviceNode, O_RDWR)), 0); // another descriptor of the same node
        for (const auto call : {Ioctl, IoctlTime64}) {
            kova_xfer record{.addr = 4, .data = {}};
            EXPECT_EQ(call(node, KOVA_310_READ, &record), 0);
            EXPECT_EQ(record.data[1], 0x83);
            EXPECT_EQ(call(node, 6, &record), -1);
            EXPECT_EQ(errno, EIO);
            int waiting = 0;
            EXPECT_EQ(call(ends[0], FIONREAD, &waiting), 0);
            EXPECT_EQ(waiting, 3);
        }
        EXPECT_EQ(close(node), 0);
        EXPECT_EQ(opened("nowhere"), -1);
    }
    EXPECT_EQ(close(ends[0]) + close(ends[1]), 0);
    EXPECT_EQ(read(ends[0], ends.data(), 1), -1);
    for (const int file : {Open("file", O_CREAT | O_EXCL | O_RDWR, 0600), OpenAt64(AT_FDCWD, "f", O_CREAT, 0600)}) {
        EXPECT_EQ(close(file), 0);
    }
    EXPECT_EQ(std::filesystem::status("file").permissions(), std::filesystem::perms(0600));
}

TEST_F(SimSetUp, WrongSettingsAreNamed) {
    for (const char* const script :
         {"x unplug", "\n1", "-1 unplug", "nan unplug", "5 unplug\n4 plug", "0 unplug now", "0 receiver maybe",
          "0 audio", "0 fail -1", "0 fail every 0", "0 ddc", "0 say", "0 explode", "0 plug nowhere.bin", "0 plug ."}) {
        log << script << " | " << WithScript(script);
    }
    for (const char* const fault : {"kova r all", "hdmi3 r all lost", "kova x all lost", "kova r 9-4 lost",
                                    "kova r 4 flip g", "kova r 4 page", "kova r 4 lost every 0", "kova r 4 lost now"}) {
        log << fault << " | " << WithScript(std::string("0 fault ") + fault);
    }
    log << WithScript("#" + std::string(5000, 'x')) << WithScript(std::string("0 say a\0\n", 9));
    for (const auto& [name, value] : {std::pair{"KOVA_SIM_SCRIPT", "no/where"},
                                      {"KOVA_SIM_JOURNAL", "no/where"},
                                      {"KOVA_SIM_SPEED", "fast"},
                                      {"KOVA_SIM_SPEED", "-1"},
                                      {"KOVA_SIM_SPEED", "nan"},
                                      {"KOVA_SIM_SPEED", "1x"},
                                      {"KOVA_SIM_SPEED", "0"}}) {
        log << With(name, value); // speed 0 fails here, since there is no script
    }
    for (const std::size_t size : {0U, 127U, 129U, 257U * 128}) {
        std::ofstream("monitor") << std::string(size, 'x');
        log << With("KOVA_SIM_EDID", "monitor");
    }
}

} // namespace
