#pragma once
// The pieces of the simulated board among themselves.

#include "app/transfer.h"
#include "sim/sim.h"

#include <atomic>

namespace sim {

/// A lock that the thread sanitizer does not see, as it does not see the kernel's. A std::mutex would order the
/// console's threads at every request, and hide the races between them.
struct Lock {
    void lock();
    void unlock() { taken.clear(std::memory_order_release); }
    std::atomic_flag taken{};
};

/// The kernel driver handles one request at a time, whichever thread it comes from. Every function below and in sim.h
/// that a request reaches is called with this lock held; libc.cpp takes it.
extern Lock boardLock;

/// Whether somebody has set the board up, by Reset or from the environment.
extern bool isSetUp;

/// Bits without a meaning show ones in a test, so that a mask that is too wide fails, and zeros to a person, who looks
/// for the others.
extern bool meaninglessOnes;
inline unsigned Meaningless(unsigned bits) { return meaninglessOnes ? bits : 0; }

/// Carries out one request, with the faults that a script has planted. @return false when it fails
bool Transfer(unsigned long request, kova_xfer& record);
/// Carries out one request on the chips. @return false: there is no such request
bool CarryOut(unsigned long request, kova_xfer& record);

// ---- faults.cpp ----

/// What goes wrong with requests of one kind to a range of registers.
struct Fault {
    enum class Effect : std::uint8_t {
        Clear,        ///< bits of the value are 0
        Set,          ///< bits of the value are 1
        Flip,         ///< bits of the value are inverted
        Swap,         ///< the bytes of the value are swapped
        ClearAddress, ///< bits of the register address are 0
        SetAddress,   ///< bits of the register address are 1
        OtherPage,    ///< another page gets the request
        Late,         ///< a write arrives with the next one
        Lost,         ///< nothing happens, and the driver reports success
        Fail,         ///< the driver reports an error
        Kernel,       ///< the kernel answers before the driver sees the request
    };
    std::uint8_t page = 0, otherPage = 0; // 0 kova, 1 hdmi1, 2 hdmi2
    bool reads = false, writes = false;
    std::uint16_t first = 0, last = 0xFFFF;
    Effect effect = Effect::Lost;
    std::uint16_t bits = 0;
    std::uint32_t every = 1, requests = 0;
    bool holds = false; // Late: a write is in held
    kova_xfer held{};
};

void AddFault(const Fault& fault);
void ClearFaults();
/// Reads a fault from a script's words after "fault". @return false: they are wrong
bool ParseFault(std::span<char* const> words, Fault& fault);
/// As CarryOut, with the faults.
bool CarryOutWithFaults(unsigned long request, kova_xfer& record);

// ---- transmitter.cpp ----

std::uint8_t ReadTx(Page page, std::uint8_t reg);
void WriteTx(Page page, std::uint8_t reg, std::uint8_t value);
/// Whether the transmitter asks for the video processor's attention.
bool TxInterruptPending();
void ResetTx();

inline constexpr std::uint8_t kTxAudioEvents = 0x18;
void RaiseTxInterrupt(std::uint8_t interrupts);

// ---- audio.cpp ----

void ResetAudio();
/// Reads a register of page 1 that measures the audio. @return false: reg is none of them
bool ReadAudio(std::uint8_t reg, std::uint8_t& value);

// ---- video.cpp ----

/// A video processor register as the chip shows it to a read.
std::uint16_t ReadVideo(std::uint16_t addr);
/// Lets a write that the register has taken have its effect.
void NoteVideoWrite(std::uint16_t addr, std::uint16_t value);
void ResetVideo();

// ---- clock.cpp ----

/// Whether pauses are to fail.
bool PausesFail();
/// In virtual time, moves the clock on by a pause. @return false in real time
bool PassVirtually(std::uint64_t microseconds);
/// Whether the time before the script's last line is being skipped.
bool SkipsWaiting();
/// Whether another thread of this process has something to do. Called without the lock, which it may want.
bool OthersRun();
/// A pause in real time. Called without the lock, so that the other thread goes on.
void SleepReally(std::uint64_t microseconds);

// ---- script.cpp ----

/// Carries out the script's events that are due.
void RunScript();
void ClearScript();
/// Reads a whole number from 1 to 1000000. @return false: it is none
bool ParseCount(const char* text, std::uint32_t& number);

// ---- journal.cpp ----

void NoteTransfer(unsigned long request, const kova_xfer& record, bool ok);
void NotePause(std::uint64_t microseconds);
/// Notes that a descriptor of the device node was closed.
void NoteClose();

} // namespace sim
