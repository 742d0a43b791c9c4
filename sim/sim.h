#pragma once
// The simulated board. It stands in for the kernel driver, both chips, and a monitor on the HDMI output. It replaces
// the five functions of the C library by which the console reaches the kernel (libc.cpp): open, ioctl and close of the
// device node, sleep, and usleep. open and ioctl have several names. Those that the C library's headers can select are
// all replaced.
//
// When the board is preloaded under the unchanged console, environment variables set it up (script.cpp). When it is
// linked into a test, the functions below set it up. The test calls Reset first. The board then runs in virtual time.

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace sim {

/// Sets everything as at power-on: the registers, no faults, an empty journal, virtual time 0, no monitor.
void Reset();

// ---- Registers: access from outside, without a transfer ----

enum class Page : std::uint8_t { Hdmi1, Hdmi2 };

std::uint16_t& KovaRegister(std::uint16_t addr);
std::uint8_t& TxRegister(Page page, std::uint8_t reg);

// ---- The video input ----

/// The video input, as the video processor's status registers show it. The default is 480 interlaced lines at 60 Hz.
struct VideoInput {
    std::uint16_t syncStatus = 0;             ///< bits 1..0: 0 if there is sync
    std::uint16_t hFrequency = 0x8000 | 1716; ///< result of the line frequency measurement, bit 15: valid
    std::uint16_t linesField1 = 0x8000 | 262; ///< results of the line count measurement, bit 15: valid
    std::uint16_t linesField2 = 0x8000 | 263;
    std::uint32_t measureReads = 0; ///< reads of the request register until a measurement ends
};

void SetVideoInput(const VideoInput& video);

// ---- The monitor ----

/// A 1080p HDMI monitor with basic audio: base block and one CEA-861 extension.
extern const std::array<std::uint8_t, 256> kBuiltInEdid;

inline constexpr std::size_t kMostEdidBytes = 256 * 128;

/// Connects a powered monitor, instead of the one that is connected, and raises the hot plug interrupt. The EDID must
/// outlive the connection. A read beyond the end of the EDID gives 0xFF.
void Plug(std::span<const std::uint8_t> edid);
/// Clears the transmitter's pending interrupts, as if the monitor had been connected before power-on.
void ForgetInterrupts();
void Unplug();
/// Sets receiver sense: whether the monitor's receiver has power.
void SetReceiver(bool on);
/// Sets the sample rate in Hz of the audio that arrives, 0 for no audio. A change of the rate raises the audio input
/// interrupts. The transmitter's CTS follows from the rate, from N and from the video processor's pixel clock. Every
/// other CTS is greater by jitter.
void SetAudio(std::uint32_t hertz, std::uint32_t jitter = 0);
/// From now on the CTS has these values, one after the other and then again from the first, whatever audio arrives. The
/// values must outlive their use.
void PlayCts(std::span<const std::uint32_t> measurements);

// ---- Faults ----

/// Lets count requests fail, beginning with request number first. Number 1 is the next request.
void FailRequests(std::uint32_t first, std::uint32_t count);
/// From now on every n-th request fails. 1: all requests fail, 0: none.
void FailEvery(std::uint32_t n);
/// Sets whether the video processor is dead. Requests then succeed, but every read gives 0xFFFF and writes have no
/// effect.
void SetDead(bool dead);

/// From now on every pause fails at once, as on a kernel without the system call that the C library's sleep uses.
void FailPauses();

/// Sets the number of status reads for which the DDC master is busy after a command.
void SetDdcBusy(std::uint32_t statusReads);
/// Sets the error bits (0x40, 0x20, 0x08) with which every DDC transfer ends.
void SetDdcError(std::uint8_t bits);
/// From now on the monitor does not acknowledge every n-th DDC transfer. 1: it acknowledges none, 0: it acknowledges
/// all.
void FailDdcEvery(std::uint32_t n);
/// Sets a function that is called at the start of every DDC transfer. Its argument is the transfer's number, from 1 on.
/// The function may change the monitor, or the busy reads and the error bits.
void SetDdcHook(void (*hook)(std::uint32_t transfer));

// ---- Time ----

/// Chooses virtual time: a sleep returns at once and advances the board's clock.
void UseVirtualTime();
/// Chooses virtual time up to this moment on the board's clock. The time becomes real after the sleep that reaches this
/// moment.
void UseVirtualTimeUntil(std::uint64_t microseconds);
/// Chooses real time. Sleeps end after their time divided by speed.
void UseRealTime(double speed);
/// The board's clock in microseconds since Reset, or since a later choice of virtual or real time.
std::uint64_t Now();

// ---- Journal ----

/// Returns the journal since Reset or the last TakeJournal, with a line for each event: "kova r 0004 0083", "hdmi1 w 2f
/// 01", "pause 100", "close". The line of a failed request ends in " failed". Empty unless KeepJournal(true) was
/// called.
std::string TakeJournal();
void KeepJournal(bool keep);

/// From now on writes every transfer and every "close" to this file too. "-" is standard error. Each line begins with
/// the board's clock in seconds.
/// @return false with a message on standard error if the file cannot be written
bool WriteJournal(const char* path);

/// Sets up the board from KOVA_SIM_EDID, KOVA_SIM_SPEED, KOVA_SIM_SCRIPT and KOVA_SIM_JOURNAL.
/// @return false with a message on standard error if one of them is bad
bool SetUpFromEnvironment();

} // namespace sim
