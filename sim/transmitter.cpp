// The transmitter: identification, hot plug and receiver sense, interrupts, and the DDC master with the monitor.

#include "sim/board.h"

namespace sim {

namespace {

// Page 0
constexpr std::uint8_t kIdentification = 0x03;
constexpr std::uint8_t kSinkStatus = 0x09;
constexpr std::uint8_t kHotPlug = 0x02, kReceiverSense = 0x04; // in kSinkStatus
constexpr std::uint8_t kInterruptPending = 0x70;               // bit 0
constexpr std::uint8_t kInterruptStatus = 0x71;                // writing 1 to a bit clears it
constexpr std::uint8_t kInterruptEnable = 0x75;
constexpr std::uint8_t kHotPlugChange = 0x40, kReceiverChange = 0x20; // in the two registers above

// The DDC master, also on page 0
constexpr std::uint8_t kDdcAddress = 0xED;
constexpr std::uint8_t kDdcSegment = 0xEE;
constexpr std::uint8_t kDdcOffset = 0xEF;
constexpr std::uint8_t kDdcCountLow = 0xF0;
constexpr std::uint8_t kDdcCountHigh = 0xF1;
constexpr std::uint8_t kDdcStatus = 0xF2;
constexpr std::uint8_t kDdcCommand = 0xF3;
constexpr std::uint8_t kDdcFifo = 0xF4;
constexpr std::uint8_t kDdcBusy = 0x10, kDdcNoAcknowledge = 0x20; // in kDdcStatus
constexpr std::uint8_t kClearFifo = 0x09, kRead = 0x02, kReadSegment = 0x04, kWrite = 0x06, kAbort = 0x0F;
constexpr std::uint8_t kEdidDevice = 0xA0;

// Bits of these registers that have no meaning
constexpr std::uint8_t kNotSinkStatus = 0xF9, kNotInterruptPending = 0xFE, kNotDdcStatus = 0x87;

std::array<std::array<std::uint8_t, 256>, 2> pages;
std::span<const std::uint8_t> monitorEdid;

struct Ddc {
    std::uint32_t position, left; // offset in the EDID of the next FIFO byte, and how many bytes the FIFO still has
    std::uint32_t busy;           // status reads until the transfer ends
    std::uint8_t error;           // error bits with which the transfer ends
    std::uint32_t transfers;
    // Set by tests and scripts:
    std::uint32_t busyReads;
    std::uint8_t errorBits;
    std::uint32_t failEvery;
    std::uint32_t sinceFailure;
    void (*hook)(std::uint32_t transfer);
} ddc;

std::uint8_t& Page0(std::uint8_t reg) { return pages[0][reg]; }

bool Connected() { return (Page0(kSinkStatus) & kHotPlug) != 0; }

void StartDdcTransfer(std::uint8_t command) {
    ++ddc.transfers;
    if (ddc.hook != nullptr) {
        ddc.hook(ddc.transfers);
    }
    bool answered = Connected() && Page0(kDdcAddress) == kEdidDevice;
    if (ddc.failEvery > 0 && ++ddc.sinceFailure == ddc.failEvery) {
        ddc.sinceFailure = 0;
        answered = false;
    }
    ddc.busy = ddc.busyReads;
    ddc.error = answered ? ddc.errorBits : kDdcNoAcknowledge;
    ddc.left = 0;
    if (ddc.error == 0 && command != kWrite) { // the monitor's memory is write-protected
        const std::uint32_t segment = command == kReadSegment ? Page0(kDdcSegment) : 0;
        ddc.position = segment * 256 + Page0(kDdcOffset);
        ddc.left = Page0(kDdcCountLow) + (Page0(kDdcCountHigh) & 3U) * 256;
    }
}

void DdcCommand(std::uint8_t command) {
    switch (command & 0x0F) {
    case kRead:
    case kReadSegment:
    case kWrite:
        StartDdcTransfer(command & 0x0F);
        break;
    case kClearFifo:
        ddc.left = 0;
        break;
    case kAbort:
        ddc.left = 0;
        ddc.busy = 0;
        ddc.error = 0;
        break;
    default:
        break;
    }
}

std::uint8_t DdcStatus() {
    if (ddc.busy > 0) {
        --ddc.busy;
        return kDdcBusy;
    }
    return ddc.error;
}

std::uint8_t DdcByte() {
    if (ddc.left == 0) {
        return 0;
    }
    --ddc.left;
    const std::uint32_t position = ddc.position++;
    return position < monitorEdid.size() ? monitorEdid[position] : 0xFF;
}

void SetSinkStatus(std::uint8_t bit, bool on, std::uint8_t interrupt) {
    std::uint8_t& status = Page0(kSinkStatus);
    const auto now = static_cast<std::uint8_t>(on ? status | bit : status & ~unsigned{bit});
    if (now != status) {
        status = now;
        RaiseTxInterrupt(interrupt);
    }
}

} // namespace

void ResetTx() {
    for (auto& page : pages) {
        page.fill(0);
    }
    Page0(kIdentification) = 0x91;
    Page0(kInterruptEnable) = kHotPlugChange | kReceiverChange | kTxAudioEvents;
    monitorEdid = {};
    ddc = {};
    ResetAudio();
}

std::uint8_t& TxRegister(Page page, std::uint8_t reg) { return pages[static_cast<std::size_t>(page)][reg]; }

std::uint8_t ReadTx(Page page, std::uint8_t reg) {
    if (page == Page::Hdmi1) {
        switch (reg) {
        case kSinkStatus:
            return static_cast<std::uint8_t>(Meaningless(kNotSinkStatus) | Page0(kSinkStatus));
        case kInterruptPending:
            return static_cast<std::uint8_t>(Meaningless(kNotInterruptPending) | (TxInterruptPending() ? 1U : 0U));
        case kDdcStatus:
            return static_cast<std::uint8_t>(Meaningless(kNotDdcStatus) | DdcStatus());
        case kDdcFifo:
            return DdcByte();
        default:
            break;
        }
    }
    std::uint8_t measured = 0;
    if (page == Page::Hdmi2 && ReadAudio(reg, measured)) {
        return measured;
    }
    return TxRegister(page, reg);
}

void WriteTx(Page page, std::uint8_t reg, std::uint8_t value) {
    if (page == Page::Hdmi1) {
        switch (reg) {
        case kIdentification:
        case kSinkStatus:
        case kInterruptPending:
        case kDdcStatus:
        case kDdcFifo:
            return;
        case kInterruptStatus:
            Page0(kInterruptStatus) &= static_cast<std::uint8_t>(~unsigned{value});
            return;
        case kDdcCommand:
            Page0(kDdcCommand) = value;
            DdcCommand(value);
            return;
        default:
            break;
        }
    }
    TxRegister(page, reg) = value;
}

void RaiseTxInterrupt(std::uint8_t interrupts) { Page0(kInterruptStatus) |= interrupts; }

bool TxInterruptPending() { return (Page0(kInterruptStatus) & Page0(kInterruptEnable)) != 0; }

void Plug(std::span<const std::uint8_t> edid) {
    Unplug();
    monitorEdid = edid;
    SetSinkStatus(kHotPlug, true, kHotPlugChange);
    SetReceiver(true);
}

void Unplug() {
    SetSinkStatus(kHotPlug, false, kHotPlugChange);
    SetReceiver(false);
}

void ForgetInterrupts() { Page0(kInterruptStatus) = 0; }

void SetReceiver(bool on) { SetSinkStatus(kReceiverSense, on && Connected(), kReceiverChange); }

void SetDdcBusy(std::uint32_t statusReads) { ddc.busyReads = statusReads; }

void SetDdcError(std::uint8_t bits) { ddc.errorBits = bits; }

void FailDdcEvery(std::uint32_t n) {
    ddc.failEvery = n;
    ddc.sinceFailure = 0;
}

void SetDdcHook(void (*hook)(std::uint32_t transfer)) { ddc.hook = hook; }

} // namespace sim
