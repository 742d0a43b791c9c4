// The board's time: virtual for tests, real and scaled for people.

#include "sim/board.h"

#include <ctime>

namespace sim {

namespace {

constexpr std::uint64_t kForEver = UINT64_MAX;

std::uint64_t virtualUntil = 0; // from here on the time is real
std::uint64_t virtualNow = 0;
double speed = 1;
std::uint64_t realStart;

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
}

void UseRealTime(double newSpeed) {
    UseVirtualTimeUntil(0);
    speed = newSpeed;
    realStart = RealMicroseconds();
}

std::uint64_t Now() {
    if (Virtual()) {
        return virtualNow;
    }
    return virtualNow + static_cast<std::uint64_t>(static_cast<double>(RealMicroseconds() - realStart) * speed);
}

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

void SleepReally(std::uint64_t microseconds) {
    const auto nanoseconds = static_cast<std::uint64_t>(static_cast<double>(microseconds) * 1000 / speed);
    const timespec duration{.tv_sec = static_cast<time_t>(nanoseconds / 1'000'000'000),
                            .tv_nsec = static_cast<long>(nanoseconds % 1'000'000'000)};
    if (nanoseconds > 0) {
        nanosleep(&duration, nullptr);
    }
}

} // namespace sim
