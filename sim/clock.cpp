// The board's time: virtual for tests, real and scaled for people.

#include "sim/board.h"

#include <ctime>

namespace sim {

namespace {

bool virtualTime = false;
std::uint64_t virtualNow;
double speed = 1;
std::uint64_t realStart;

std::uint64_t RealMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 + static_cast<std::uint64_t>(now.tv_nsec) / 1000;
}

} // namespace

void UseVirtualTime() {
    virtualTime = true;
    virtualNow = 0;
}

void UseRealTime(double newSpeed) {
    virtualTime = false;
    speed = newSpeed;
    realStart = RealMicroseconds();
}

std::uint64_t Now() {
    if (virtualTime) {
        return virtualNow;
    }
    return static_cast<std::uint64_t>(static_cast<double>(RealMicroseconds() - realStart) * speed);
}

bool PassVirtually(std::uint64_t microseconds) {
    if (virtualTime) {
        virtualNow += microseconds;
    }
    return virtualTime;
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
