// The video processor's registers, the interrupt line from the transmitter, the requests, and failing requests.

#include "sim/board.h"

#include <sched.h>

namespace sim {

Lock boardLock;

void Lock::lock() {
    while (taken.test_and_set(std::memory_order_acquire)) {
        sched_yield();
    }
}

bool isSetUp = false;
bool meaninglessOnes = true;

namespace {

constexpr std::uint16_t kDeviceId = 0x004;
constexpr std::uint16_t kInterruptStatus = 0x010;
constexpr std::uint16_t kTxInterrupt = 1U << 7;

std::array<std::uint16_t, 0x10000> kova;
bool kovaDead = false;

struct Faults {
    std::uint32_t first; // number of the first request that fails; 1 is the next request
    std::uint32_t count; // how many requests fail
    std::uint32_t every, sinceFailure;
} faults;

bool Fails() {
    bool fails = false;
    if (faults.count > 0) {
        if (faults.first > 1) {
            --faults.first;
        } else {
            --faults.count;
            fails = true;
        }
    }
    if (faults.every > 0 && ++faults.sinceFailure == faults.every) {
        faults.sinceFailure = 0;
        fails = true;
    }
    return fails;
}

std::uint16_t ReadKova(std::uint16_t addr) {
    if (kovaDead) {
        return 0xFFFF;
    }
    const std::uint16_t value = ReadVideo(addr);
    if (addr == kInterruptStatus && TxInterruptPending()) {
        return value | kTxInterrupt;
    }
    return value;
}

void WriteKova(std::uint16_t addr, std::uint16_t value) {
    if (addr != kDeviceId && !kovaDead) {
        kova[addr] = value;
        NoteVideoWrite(addr, value);
    }
}

} // namespace

// The driver does not change the record of a write request.
bool CarryOut(unsigned long request, kova_xfer& record) {
    const auto reg = static_cast<std::uint8_t>(record.addr);
    switch (request) {
    case KOVA_310_READ: {
        const std::uint16_t value = ReadKova(record.addr);
        record.data = {static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value & 0xFF)};
        return true;
    }
    case KOVA_310_WRITE:
        WriteKova(record.addr, static_cast<std::uint16_t>(record.data[0] << 8 | record.data[1]));
        return true;
    case KOVA_310_READ_HDTX_SLV0:
        record.data = {ReadTx(Page::Hdmi1, reg), 0};
        return true;
    case KOVA_310_WRITE_HDTX_SLV0:
        WriteTx(Page::Hdmi1, reg, record.data[0]);
        return true;
    case KOVA_310_READ_HDTX_SLV1:
        record.data = {ReadTx(Page::Hdmi2, reg), 0};
        return true;
    case KOVA_310_WRITE_HDTX_SLV1:
        WriteTx(Page::Hdmi2, reg, record.data[0]);
        return true;
    default:
        return false;
    }
}

void Reset() {
    isSetUp = true;
    meaninglessOnes = true;
    kova.fill(0);
    kova[kDeviceId] = 0x83;
    kovaDead = false;
    faults = {};
    ClearFaults();
    ResetVideo();
    ResetTx();
    ClearScript();
    UseVirtualTime();
    KeepJournal(false);
}

std::uint16_t& KovaRegister(std::uint16_t addr) { return kova[addr]; }

void FailRequests(std::uint32_t first, std::uint32_t count) {
    faults.first = first;
    faults.count = count;
}

void FailEvery(std::uint32_t n) {
    faults.every = n;
    faults.sinceFailure = 0;
}

void SetDead(bool dead) { kovaDead = dead; }

bool Transfer(unsigned long request, kova_xfer& record) {
    RunScript();
    const bool ok = !Fails() && CarryOutWithFaults(request, record);
    NoteTransfer(request, record, ok);
    return ok;
}

} // namespace sim
