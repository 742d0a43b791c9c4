#pragma once
// The HDMI transmitter driver: everything a caller may use, grouped by topic.

#include "hdmitx_i2c.h" // register access
#include "vmtables.h"   // video timings

#include <array>
#include <cstdint>

// ---- Configuration ----
// Zero at program start; InitHDMITXVariable gives the defaults in brackets.

extern std::uint8_t Default656OutEn;   ///< non-zero: the video input carries embedded syncs [0]
extern std::uint8_t DefaultDataEnable; ///< non-zero: the DE generator makes data enable [0]
extern std::uint8_t DefaultICLKValue;  ///< input clock setting, see SetIClk [0]
extern std::uint8_t DefaultDVImode;    ///< non-zero forces DVI output [0]
extern std::uint8_t DefaultICLKEDGE;   ///< input clock edge, see SetInputClockEdge [1]
extern std::uint8_t DefaultMCLKIndex;  ///< audio master clock setting, see SetMCLK [1]

/// Active picture: 0 = 4:3, 2 = 16:9, else not stated [2 for the HD formats of OutVideoFrmt, else 0].
extern std::uint8_t DefaultActiveAspect;

/// Audio input: I2S input for SetI2SDataSelection; not used; IEC 60958-3 sampling-frequency code; value of 0x7A:0x22
/// and 0x7A:0x24; value of 0x7A:0x1D [0x10, 2, 2, 0x0B, 8].
extern std::array<std::uint8_t, 5> DefaultAudioConfig;

// ---- Start-up ----
// For an application that starts the transmitter itself. Must not run beside the interrupt and timer handlers.

/// Starts the transmitter: checks that it answers (0x72:0x03 reads 0x91), sets the configuration to its defaults, runs
/// InitHDMITX and enables the HDMI interrupts. Since the defaults do not force DVI, that is always HDMI operation.
/// @return 1; 0 when the transmitter does not answer: that is reported on standard error, nothing else is touched.
std::uint8_t InitializeHDMITX();

/// Sets the configuration and the output state to their defaults. No register access.
void InitHDMITXVariable();

/// Starts HDMI operation: reset, audio, DE generator, video input, clocks, interrupts, output on; or, with
/// DefaultDVImode non-zero, InitDVITX instead.
void InitHDMITX();

/// Starts DVI operation: without audio and its interrupts.
void InitDVITX();

/// HDMI mode, the first N value after DefaultAudioConfig's code (32, 44.1 or 48 kHz; none for another), 0x7A:0x01,
/// master clock, audio input.
void InitAudioPart();

/// Audio input registers 0x7A:0x21, 0x22, 0x24, 0x1D and the I2S input from DefaultAudioConfig.
void InitDVDAudio();

/// Chooses the I2S input and switches the audio input on: 0x7A:0x14 bit 0 off, 0x7A:0x1C, 0x7A:0x14 = sel with bit 0.
/// @param sel  0x10, 0x20, 0x40 or 0x80; any other leaves 0x7A:0x1C alone
void SetI2SDataSelection(std::uint8_t sel);

// ---- Interrupts ----

/// Handles the transmitter's interrupts: to be called after each KOVAAPI_GetParseIRQ. Does nothing unless the stored
/// status shows interrupt 7. Reports on standard error.
void HDMITxInterruptHandler();

/// Reaction to a hot plug change: output state 0, TMDS output off.
void HotPlugInOrOut();

/// Reaction to an audio input event: SetN.
void ChangeFsHandler();

/// Acknowledges and enables the interrupts of HDMI operation: 0x72:0x71 = 0x78, 0x72:0x75 = 0x78.
void InitInterruptMasks();

/// Acknowledges and enables those of DVI operation, without audio: 0x72:0x71 = 0x60, 0x72:0x75 = 0x60.
void InitDVIInterruptMasks();

// ---- Timer service and output state ----

/// What the output does.
enum : std::uint8_t {
    OUTPUT_NO_SINK = 0,    ///< no sink, or its EDID could not be read
    OUTPUT_CHECK_EDID = 1, ///< a sink is confirmed, its EDID is to be parsed
    OUTPUT_HDMI = 4,
    OUTPUT_DVI = 5,
    OUTPUT_HDMI_NO_POWER = 20, ///< HDMI sink whose receiver has no power
    OUTPUT_DVI_NO_POWER = 21,  ///< DVI sink whose receiver has no power
};

extern std::uint8_t OutputState;    ///< one of the above
extern std::uint8_t OldOutputState; ///< the state that was printed last

/// One pass of the timer service, to be called once a second after the interrupt handler. Most passes do nothing. Every
/// 32nd, from pass 8 on, polls hot plug and receiver sense, prints a change of the output state on standard error and
/// runs the EDID step: a sink is confirmed at pass 104. Every 992nd, from pass 984 on, counts the time-out and checks
/// S/PDIF audio.
void HDMITxTimerHandler();

// ---- InfoFrames (CEA-861) and the general control packet ----
// Page 0x7A. Progress on standard error.

inline constexpr std::uint8_t INFOFRAME_AVI = 0x82;
inline constexpr std::uint8_t INFOFRAME_AUDIO = 0x84;

extern std::array<std::uint8_t, 13> DefaultAVIInfoFrame; ///< AVI data bytes 1 to 13; rebuilt in place
extern std::array<std::uint8_t, 10> DefaultAUDInfoFrame; ///< audio data bytes 1 to 10; zero: as the stream says
extern std::uint8_t RequireConfigInfoFrame;              ///< non-zero: the next SendAVIInfoFrame builds and loads

/// Builds the AVI InfoFrame from OutVideoMode, the output format and DefaultActiveAspect, and loads it: 0x40 to 0x50.
/// Only while RequireConfigInfoFrame is set, which it clears.
void SendAVIInfoFrame();

/// Loads the audio InfoFrame: 0x80 to 0x8D.
void SendAUDInfoFrame();

/// Switches the repeated sending of a packet on: 0x3E, for code 0 0x3F.
/// @param code  InfoFrame type 0x82 to 0x85; 0 the packet of 0x3F bits 1..0; 255 switches nothing on: it clears bits 4
///              and 0 of 0x3E, so that of the audio and AVI pairs that were on one bit each stays set; in DVI mode all
///              bits are cleared, as for every type
/// @return 0; 1 for any other code, without a write
std::uint8_t EnableInfoFrame(std::uint8_t code);

/// Writes InfoFrame control 1, 0x3E: in HDMI mode both bits of the type set (none for codes but 0x82 to 0x85) and
/// reported; in DVI mode all clear.
void Control_INF_CTRL1(std::uint8_t code);

/// Switches the AVI and audio InfoFrames off: 0x3E bits 5, 4, 1 and 0.
void DisableInfoFrame();

/// Sends the general control packet that sets (mute non-zero) or clears the sink's audio/video mute: 0x3F, 0xDF. The
/// packet stays off when the transmitter does not take it within 64 reads.
void SendCP_Packet(std::uint8_t mute);

// ---- Audio clock regeneration and audio input ----
// Page 0x7A. Rates are whole kHz: 32, 44, 48, 88, 96, 176, 192; 0 for none.

/// Acknowledges the audio events, waits for a stable CTS, measures the sample rate, writes N (0x03 to 0x05) and the
/// channel status code (0x21), and switches the audio input on. Without a stable CTS everything stays as it is.
void SetN();

/// Measures in rounds of two reads. They agree when they lie within 2 of each other; a round that does not agree starts
/// the count anew, one whose first CTS is 5000 or less does not count.
/// @return 1 when five rounds have agreed; 0, with a message, when ten rounds, 60 register reads, have not shown that.
std::uint8_t WaitForStableCTS();

/// @return the measured CTS, 24 bits: 0x09, 0x0A, 0x0B.
std::uint32_t ReadCTSValue();

/// @return N, 24 bits: 0x03, 0x04, 0x05.
std::uint32_t ReadNValue();

/// Writes bits 23..0 of n: 0x03, 0x04, 0x05.
void WriteNValue(std::uint32_t n);

/// Measures the sample rate from CTS and N.
/// @param pixclk  10 kHz   @return the rate; 0 for none of the seven, and for a CTS below 100
std::uint8_t GetFs(std::uint16_t pixclk);

/// @param pixclk  10 kHz   @return N for this clock and rate; an unknown rate counts as 32 kHz.
std::uint32_t SearchOptimumNValue(std::uint16_t pixclk, std::uint8_t rate);

/// @return 0 to 6 for the seven rates in ascending order, else 0xFF.
std::uint8_t GetFsIndex(std::uint8_t rate);

/// Writes the rate's IEC 60958-3 sampling-frequency code: 0x21. Nothing for an unknown rate.
void SetI2SFsStatus(std::uint8_t rate);

/// Switches the audio input: 0x14 bit 0.
void TXAudio(std::uint8_t on);

/// Chooses S/PDIF (on non-zero) or I2S as the audio input: 0x14 bit 1.
void TXSPDIFSelect(std::uint8_t on);

/// @return 1 when S/PDIF is chosen, else 0.
std::uint8_t IsSPDIFSelected();

/// @return 1 when the audio input is off, else 0.
std::uint8_t IsAudioDisabled();

/// Acknowledges the two audio input interrupts: 0x72:0x71 = 0x18.
void ClearBiphaseSampleDroppedInterrupts();

// ---- Video input ----

/// Sets the video input stage, 0x72:0x4A, for OutVideoMode, the output state and the output format, and reports its
/// switches on standard error. With colour conversion on, also 0x72:0x48 bit 4 for SrcVideoFrmt.
void ConfigTXVideoMode();

/// Loads the DE generator (embedded zero) and switches it by DefaultDataEnable, or loads the embedded-sync decoder, for
/// the current output format.
void HDMITX_SetDE(std::uint8_t embedded);

/// Loads the DE generator, off: 0x72:0x32 to 0x34, 0x36 to 0x39.   @param row  of VModeTables
void UpdateTX_DE(std::uint8_t row);

/// Loads the embedded-sync decoder: 0x72:0x3E bits 1..0, 0x40 to 0x47.   @param row  of VModeTables
void UpdateTX_656(std::uint8_t row);

/// Switches the DE generator: 0x72:0x33 bit 6.
void SetDE(std::uint8_t on);

/// The same as SetDE.
void DE_GenEn(std::uint8_t on);

/// Fixed set-up for separate syncs, HDMI and I2S audio: 16 registers.
void HDMITX_OutVideoNormal();

/// Fixed set-up for BT.656 input of 720x480 interlaced video: 9 registers, then 0x72:0x32 to 0x47.
void HDMITX_OutVideoBT656();

// ---- Power, reset and mode ----
// A flag argument is set when it is non-zero. Read-modify-writes keep every bit that they do not name.

/// Switches the TMDS output off (down non-zero) or on: 0x72:0x08 bit 0.
void HDMITXTMDSPowerDown(std::uint8_t down);

/// @return 1 in HDMI mode, 0 in DVI mode: 0x7A:0x2F bit 0.
std::uint8_t IsTXInHDMIMode();

/// Chooses HDMI (on non-zero) or DVI signalling: 0x7A:0x2F bit 0.
void TX_HDMIMode(std::uint8_t on);

/// @return DefaultDVImode: non-zero when the output is to be DVI whatever the sink is. No register access.
std::uint8_t IsNeedToForceInDVIMode();

/// Holds the given software resets: the whole of 0x72:0x05, bits 1 and 0.
void AssertHDMITX_SWReset(std::uint8_t bits);

/// Releases all software resets, whatever bits is: 0x72:0x05 = 0x00.
void ReleaseHDMITX_SWReset(std::uint8_t bits);

/// Asserts and releases both software resets: 0x72:0x05 = 0x03, then 0x00, without a delay.
void SW_ResetHDMITX();

/// Powers the output, then wakes the rest of the core: 0x72:0x08 bit 0, 0x7A:0x3D bit 0.
void WakeUpHDMITX();

/// Powers everything down for enable exactly 1, up for any other value: 0x72:0x08 bit 0, then 0x7A:0x3D bits 2..0.
void HDMITXTotalPowerDownEnable(std::uint8_t enable);

/// Sets the input clock: 0x72:0x48 bits 7..2 replaced by value, whose bits 1..0 are ORed into the kept bits 1..0.
void SetIClk(std::uint8_t value);

/// Sets the input clock edge from DefaultICLKEDGE: 0x72:0x08 bit 1.
void SetInputClockEdge();

/// Sets the audio master clock: 0x7A:0x02 = index.
void SetMCLK(std::uint8_t index);
