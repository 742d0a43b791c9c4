#pragma once
// The pieces of the simulated board among themselves.

#include "app/device.h"
#include "sim/sim.h"

#include <mutex>

namespace sim {

/// The kernel driver handles one request at a time, whichever thread it comes from. Every function below and in sim.h
/// that a request reaches is called with this mutex held; libc.cpp takes it.
extern std::mutex boardMutex;

/// Whether somebody has set the board up, by Reset or from the environment.
extern bool isSetUp;

/// Carries out one request. @return false when it fails
bool Transfer(unsigned long request, kova_xfer& record);

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

/// In virtual time, moves the clock on by a pause. @return false in real time
bool PassVirtually(std::uint64_t microseconds);
/// A pause in real time. Called without the mutex, so that the other thread goes on.
void SleepReally(std::uint64_t microseconds);

// ---- script.cpp ----

/// Carries out the script's events that are due.
void RunScript();
void ClearScript();

// ---- journal.cpp ----

void NoteTransfer(unsigned long request, const kova_xfer& record, bool ok);
void NotePause(std::uint64_t microseconds);
void Note(const char* what);

} // namespace sim
