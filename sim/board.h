#pragma once
// The functions and data that the source files of the simulated board share.

#include "app/transfer.h"
#include "sim/sim.h"

#include <atomic>

namespace sim {

/// A lock that the thread sanitizer does not see. It does not see the real kernel's lock either. A std::mutex would
/// order the console's threads at every request, and so hide data races between them.
struct Lock {
    void lock();
    void unlock() { taken.clear(std::memory_order_release); }
    std::atomic_flag taken{};
};

/// The kernel driver handles one request at a time, from whichever thread. libc.cpp holds this lock during each
/// request. All code that runs during a request therefore has the lock already and must not take the lock again.
extern Lock boardLock;

/// Whether the board is set up, by Reset or from the environment.
extern bool isSetUp;

/// The value of bits without a meaning. In a test they are ones, so that a mask that is too wide fails. For a person
/// they are zeros, so that the other bits are easier to see.
extern bool meaninglessOnes;
inline unsigned Meaningless(unsigned bits) { return meaninglessOnes ? bits : 0; }

/// Carries out one request, with the faults that a script has planted. @return false if it fails
bool Transfer(unsigned long request, kova_xfer& record);
/// Carries out one request on the chips. @return false if the request is not known
bool CarryOut(unsigned long request, kova_xfer& record);

// ---- faults.cpp ----

/// A fault: what goes wrong with requests to a range of registers of one page.
struct Fault {
    enum class Effect : std::uint8_t {
        Clear,        ///< bits of the value are 0
        Set,          ///< bits of the value are 1
        Flip,         ///< bits of the value are inverted
        Swap,         ///< the bytes of the value are swapped
        ClearAddress, ///< bits of the register address are 0
        SetAddress,   ///< bits of the register address are 1
        OtherPage,    ///< another page gets the request
        Late,         ///< a write arrives only when the next write is made
        Lost,         ///< the request has no effect, and the driver reports success
        Fail,         ///< the driver reports an error
        Kernel,       ///< the driver never sees the request; the kernel writes 4096 into the record and reports success
    };
    std::uint8_t page = 0, otherPage = 0; // 0 kova, 1 hdmi1, 2 hdmi2
    bool reads = false, writes = false;
    std::uint16_t first = 0, last = 0xFFFF;
    Effect effect = Effect::Lost;
    std::uint16_t bits = 0;
    std::uint32_t every = 1, requests = 0;
    bool holds = false; // Late: the field held contains a delayed write
    kova_xfer held{};
};

void AddFault(const Fault& fault);
void ClearFaults();
/// Reads a fault from a script's words after "fault". @return false if the words are wrong
bool ParseFault(std::span<char* const> words, Fault& fault);
/// Does what CarryOut does, with the faults.
bool CarryOutWithFaults(unsigned long request, kova_xfer& record);

// ---- transmitter.cpp ----

std::uint8_t ReadTx(Page page, std::uint8_t reg);
void WriteTx(Page page, std::uint8_t reg, std::uint8_t value);
/// Whether the transmitter's interrupt line is active.
bool TxInterruptPending();
void ResetTx();

inline constexpr std::uint8_t kTxAudioEvents = 0x18;
void RaiseTxInterrupt(std::uint8_t interrupts);

// ---- audio.cpp ----

void ResetAudio();
/// Reads a register of page Hdmi2 that measures the audio. @return false if reg is not one of them
bool ReadAudio(std::uint8_t reg, std::uint8_t& value);

// ---- video.cpp ----

/// The value of a video processor register when it is read.
std::uint16_t ReadVideo(std::uint16_t addr);
/// Carries out the effect of a write. The register already has the value.
void NoteVideoWrite(std::uint16_t addr, std::uint16_t value);
void ResetVideo();

// ---- clock.cpp ----

/// Whether pauses fail.
bool PausesFail();
/// In virtual time, advances the clock by a pause. @return false in real time
bool PassVirtually(std::uint64_t microseconds);
/// Whether the board still skips the waiting up to the script's last line, as with KOVA_SIM_SPEED=0.
bool SkipsWaiting();
/// Whether another thread of this process is running. Called without the lock, since that thread may need the lock.
bool OthersRun();
/// Pauses in real time. Called without the lock, so that other threads can run.
void SleepReally(std::uint64_t microseconds);

// ---- script.cpp ----

/// Carries out the script's events that are due.
void RunScript();
void ClearScript();
/// Reads a whole number from 1 to 1000000. @return false if the text is no such number
bool ParseCount(const char* text, std::uint32_t& number);

// ---- journal.cpp ----

void NoteTransfer(unsigned long request, const kova_xfer& record, bool ok);
void NotePause(std::uint64_t microseconds);
/// Notes that a descriptor of the device node was closed.
void NoteClose();

} // namespace sim
