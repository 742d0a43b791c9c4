// The board's time. Tests run in virtual time. For a person the time is real, or faster or slower by a factor.

#include "sim/board.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace sim {

namespace {

constexpr std::uint64_t kForEver = UINT64_MAX;

std::uint64_t virtualUntil = 0; // the time is virtual up to here and real afterwards
std::uint64_t virtualNow = 0;
double speed = 1;
std::uint64_t realStart;
bool pausesFail = false;

bool Virtual() { return virtualNow < virtualUntil; }

std::uint64_t RealMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 + static_cast<std::uint64_t>(now.tv_nsec) / 1000;
}

} // namespace

void UseVirtualTime() { UseVirtualTimeUntil(kForEver); }

void UseVirtualTimeUntil(std::uint64_t microseconds) {
    virtualNow = 0;
    virtualUntil = microseconds;
    speed = 1;
    realStart = RealMicroseconds();
    pausesFail = false;
}

void UseRealTime(double newSpeed) {
    UseVirtualTimeUntil(0);
    speed = newSpeed;
}

std::uint64_t Now() {
    if (Virtual()) {
        return virtualNow;
    }
    return virtualNow + static_cast<std::uint64_t>(static_cast<double>(RealMicroseconds() - realStart) * speed);
}

void FailPauses() { pausesFail = true; }

bool PausesFail() { return pausesFail; }

bool PassVirtually(std::uint64_t microseconds) {
    if (!Virtual()) {
        return false;
    }
    virtualNow += microseconds;
    if (!Virtual()) {
        realStart = RealMicroseconds();
    }
    return true;
}

bool SkipsWaiting() { return Virtual() && virtualUntil != kForEver; }

bool OthersRun() {
    DIR* const threads = opendir("/proc/self/task");
    if (threads == nullptr) {
        return false;
    }
    bool running = false;
    while (const dirent* const thread = readdir(threads)) {
        const long number = std::strtol(thread->d_name, nullptr, 10);
        if (number == 0 || number == syscall(SYS_gettid)) { // ".", ".." and this thread
            continue;
        }
        std::array<char, 320> path{};
        std::snprintf(path.data(), path.size(), "/proc/self/task/%s/stat", thread->d_name);
        if (std::FILE* const stat = std::fopen(path.data(), "r"); stat != nullptr) {
            char state = 0;
            running |= std::fscanf(stat, "%*d (%*[^)]) %c", &state) == 1 && (state == 'R' || state == 'D');
            std::fclose(stat);
        }
    }
    closedir(threads);
    return running;
}

void SleepReally(std::uint64_t microseconds) {
    const auto nanoseconds = static_cast<std::uint64_t>(static_cast<double>(microseconds) * 1000 / speed);
    const timespec duration{.tv_sec = static_cast<time_t>(nanoseconds / 1'000'000'000),
                            .tv_nsec = static_cast<long>(nanoseconds % 1'000'000'000)};
    if (nanoseconds > 0) {
        nanosleep(&duration, nullptr);
    }
}

} // namespace sim
