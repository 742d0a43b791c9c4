#pragma once
// The simulated board: stands in for the kernel driver, both chips and a monitor on the HDMI output. It answers the
// five libc calls by which the console reaches the world (libc.cpp): open, ioctl and close of the device node, sleep,
// usleep. A program may have the first two by any of their names.
//
// Preloaded under the unchanged console it is set up by environment (script.cpp). Linked into a test it is set up by
// the functions below, starts at Reset and runs in virtual time.

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace sim {

/// Back to power-on: registers, faults, journal, virtual time 0; no monitor.
void Reset();

// ---- Registers: a look or a poke from outside, without a transfer ----

enum class Page : std::uint8_t { Hdmi1, Hdmi2 };

std::uint16_t& KovaRegister(std::uint16_t addr);
std::uint8_t& TxRegister(Page page, std::uint8_t reg);

// ---- The video input ----

/// What the video processor's status registers say of its input: 480 interlaced lines at 60 Hz unless set otherwise.
struct VideoInput {
    std::uint16_t syncStatus = 0;             ///< bits 1..0: 0 with sync
    std::uint16_t hFrequency = 0x8000 | 1716; ///< result of the line frequency measurement, bit 15: valid
    std::uint16_t linesField1 = 0x8000 | 262; ///< results of the line count measurement, bit 15: valid
    std::uint16_t linesField2 = 0x8000 | 263;
    std::uint32_t measureReads = 0; ///< reads of the request register until a measurement has ended
};

void SetVideoInput(const VideoInput& video);

// ---- The monitor ----

/// A 1080p HDMI monitor with basic audio: base block and one CEA-861 extension.
extern const std::array<std::uint8_t, 256> kBuiltInEdid;

inline constexpr std::size_t kMostEdidBytes = 256 * 128;

/// Connects a powered monitor, in place of one that is there, and raises the hot plug interrupt. The EDID is borrowed;
/// beyond its end a read gives 0xFF.
void Plug(std::span<const std::uint8_t> edid);
/// Forgets what the transmitter has noticed so far: all of it was there before the power came.
void ForgetInterrupts();
void Unplug();
/// Receiver sense: whether the monitor's receiver has power.
void SetReceiver(bool on);
/// Audio of this rate in Hz arrives, 0: none; a change of the rate raises the audio input interrupts. The transmitter's
/// CTS follows it, N and the video processor's pixel clock, and alternates by jitter.
void SetAudio(std::uint32_t hertz, std::uint32_t jitter = 0);
/// From now on these are the measurements of the CTS, one after the other and again, whatever arrives. Borrowed.
void PlayCts(std::span<const std::uint32_t> measurements);

// ---- Faults ----

/// Among the requests that are made from now on, the first-th (1 is the next one) and the count - 1 after it fail.
void FailRequests(std::uint32_t first, std::uint32_t count);
/// Every n-th request from now on fails; 1: all, 0: none.
void FailEvery(std::uint32_t n);
/// Whether the video processor is dead: requests succeed, but every read gives 0xFFFF and no write changes anything.
void SetDead(bool dead);

/// From now on no pause takes any time: the kernel does not know the C library's system call.
void FailPauses();

/// Number of status reads for which the DDC master stays busy after a command.
void SetDdcBusy(std::uint32_t statusReads);
/// Error bits (0x40, 0x20, 0x08) with which every DDC transfer ends.
void SetDdcError(std::uint8_t bits);
/// Every n-th DDC transfer from now on is not acknowledged; 1: all, 0: none.
void FailDdcEvery(std::uint32_t n);
/// Called at the start of every DDC transfer with its number from 1; may change the monitor or the two settings above.
void SetDdcHook(void (*hook)(std::uint32_t transfer));

// ---- Time ----

/// Virtual time: a sleep returns at once and moves the board's clock. Otherwise sleeps run speed times as fast as real.
void UseVirtualTime();
/// Virtual time up to this moment on the board's clock, and real time from the sleep that reaches it.
void UseVirtualTimeUntil(std::uint64_t microseconds);
void UseRealTime(double speed);
/// The board's clock in microseconds since Reset, or since the time was chosen.
std::uint64_t Now();

// ---- Journal ----

/// What has happened since Reset or the last TakeJournal, a line each: "kova r 0004 0083", "hdmi1 w 2f 01", "pause
/// 100", "close"; a failed request ends in " failed". Empty unless KeepJournal(true).
std::string TakeJournal();
void KeepJournal(bool keep);

/// From now on every transfer and every "close" go to this file too ("-": standard error), the board's clock in seconds
/// before the journal's line.
/// @return false, with a message on standard error, when it cannot be written
bool WriteJournal(const char* path);

/// Sets up the board from KOVA_SIM_EDID, KOVA_SIM_SPEED, KOVA_SIM_SCRIPT and KOVA_SIM_JOURNAL.
/// @return false, with a message on standard error, when one of them is bad.
bool SetUpFromEnvironment();

} // namespace sim
