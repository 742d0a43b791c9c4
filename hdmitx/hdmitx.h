#pragma once
// The HDMI transmitter driver: everything a caller may use, grouped by topic.

#include "hdmitx_i2c.h" // register access
#include "vmtables.h"   // video timings

#include <array>
#include <cstdint>

// ---- Configuration ----
// All are zero at program start. InitHDMITXVariable sets the defaults, which stand in brackets.

extern std::uint8_t Default656OutEn;   ///< non-zero: the video input carries embedded syncs [0]
extern std::uint8_t DefaultDataEnable; ///< non-zero: the DE generator makes data enable [0]
extern std::uint8_t DefaultICLKValue;  ///< setting of the input clock, see SetIClk [0]
extern std::uint8_t DefaultDVImode;    ///< non-zero forces DVI output [0]
extern std::uint8_t DefaultICLKEDGE;   ///< input clock edge, see SetInputClockEdge [1]
extern std::uint8_t DefaultMCLKIndex;  ///< audio master clock setting, see SetMCLK [1]

/// Aspect ratio of the active picture: 0 is 4:3, 2 is 16:9, any other value is not stated in the InfoFrame. [2 if
/// OutVideoFrmt is a high-definition format, else 0]
extern std::uint8_t DefaultActiveAspect;

/// Audio input, five values [0x10, 2, 2, 0x0B, 8]: the I2S input for SetI2SDataSelection, a value that is not used, the
/// IEC 60958-3 sampling-frequency code, the value of 0x7A:0x22 and 0x7A:0x24, the value of 0x7A:0x1D.
extern std::array<std::uint8_t, 5> DefaultAudioConfig;

// ---- Start-up ----
// For an application that starts the transmitter itself. These functions must not run at the same time as the interrupt
// and timer handlers.

/// Starts the transmitter. Checks that it answers (0x72:0x03 reads 0x91), sets the configuration to its defaults, runs
/// InitHDMITX and enables the HDMI interrupts. The defaults do not force DVI, so this always starts HDMI operation.
/// @return 1; 0 if the transmitter does not answer. Then a message is printed on standard error, and no other register is
///         read or written.
std::uint8_t InitializeHDMITX();

/// Sets the configuration and the output state to their defaults. Accesses no register.
void InitHDMITXVariable();

/// Starts HDMI operation: reset, audio, DE generator, video input, clocks, interrupts, output on. If DefaultDVImode is
/// non-zero, runs InitDVITX instead.
void InitHDMITX();

/// Starts DVI operation, without audio and without the audio interrupts.
void InitDVITX();

/// Starts the audio part: HDMI mode, N for the rate that DefaultAudioConfig's code names (32, 44.1 or 48 kHz; for any
/// other code N is not written), 0x7A:0x01, master clock, audio input.
void InitAudioPart();

/// Sets the audio input from DefaultAudioConfig: 0x7A:0x21, 0x22, 0x24, 0x1D and the I2S input.
void InitDVDAudio();

/// Chooses the I2S input and switches the audio input on. Clears 0x7A:0x14 bit 0, writes 0x7A:0x1C, then writes sel with
/// bit 0 set to 0x7A:0x14.
/// @param sel  0x10, 0x20, 0x40 or 0x80; for any other value 0x7A:0x1C is not written
void SetI2SDataSelection(std::uint8_t sel);

// ---- Interrupts ----

/// Handles the transmitter's interrupts. Call it after each KOVAAPI_GetParseIRQ. Does nothing unless the stored status
/// shows interrupt 7. Prints reports on standard error.
void HDMITxInterruptHandler();

/// Reacts to a hot plug change: sets output state 0 and switches the TMDS output off.
void HotPlugInOrOut();

/// Reacts to an audio input event: runs SetN.
void ChangeFsHandler();

/// Acknowledges and enables the interrupts of HDMI operation: 0x72:0x71 = 0x78, 0x72:0x75 = 0x78.
void InitInterruptMasks();

/// Acknowledges and enables the interrupts of DVI operation, which has no audio: 0x72:0x71 = 0x60, 0x72:0x75 = 0x60.
void InitDVIInterruptMasks();

// ---- Timer service and output state ----

/// States of the HDMI output.
enum : std::uint8_t {
    OUTPUT_NO_SINK = 0,    ///< no sink, or the EDID of the sink could not be read
    OUTPUT_CHECK_EDID = 1, ///< a sink is confirmed, and its EDID must be parsed
    OUTPUT_HDMI = 4,
    OUTPUT_DVI = 5,
    OUTPUT_HDMI_NO_POWER = 20, ///< HDMI sink whose receiver has no power
    OUTPUT_DVI_NO_POWER = 21,  ///< DVI sink whose receiver has no power
};

extern std::uint8_t OutputState;    ///< one of the states above
extern std::uint8_t OldOutputState; ///< the state that was printed last

/// Runs one pass of the timer service. Call it once a second, after the interrupt handler. Most passes do nothing. From
/// pass 8 on, every 32nd pass polls hot plug and receiver sense, prints a change of the output state on standard error,
/// and reads the EDID when the state asks for it. A sink that is there from the start is confirmed in pass 104. From
/// pass 984 on, every 992nd pass counts the time-out and checks S/PDIF audio.
void HDMITxTimerHandler();

// ---- InfoFrames (CEA-861) and the general control packet ----
// All registers are on page 0x7A. Progress is printed on standard error.

inline constexpr std::uint8_t INFOFRAME_AVI = 0x82;
inline constexpr std::uint8_t INFOFRAME_AUDIO = 0x84;

extern std::array<std::uint8_t, 13> DefaultAVIInfoFrame; ///< AVI data bytes 1 to 13; SendAVIInfoFrame rebuilds them
extern std::array<std::uint8_t, 10> DefaultAUDInfoFrame; ///< audio data bytes 1 to 10; zero refers to the stream header
extern std::uint8_t RequireConfigInfoFrame;              ///< non-zero: SendAVIInfoFrame builds and loads

/// Builds the AVI InfoFrame from OutVideoMode, the output format and DefaultActiveAspect, and loads it: 0x40 to 0x50.
/// Does this only if RequireConfigInfoFrame is set, and clears that variable.
void SendAVIInfoFrame();

/// Loads the audio InfoFrame: 0x80 to 0x8D.
void SendAUDInfoFrame();

/// Starts the repeated sending of a packet: 0x3E, or 0x3F for code 0.
/// @param code  0x82 to 0x85 is an InfoFrame type. 0 is the packet of 0x3F bits 1..0. 255 starts nothing: it clears bits
///              4 and 0 of 0x3E, so one bit of the audio pair and one of the AVI pair stay set if they were set. In DVI
///              mode an InfoFrame type, or 255, clears all bits of 0x3E.
/// @return 0; 1 for any other code, which writes nothing
std::uint8_t EnableInfoFrame(std::uint8_t code);

/// Writes InfoFrame control 1, 0x3E. In HDMI mode sets both bits of the type and reports it; a code outside 0x82 to 0x85
/// sets no bit. In DVI mode clears all bits.
void Control_INF_CTRL1(std::uint8_t code);

/// Stops sending the AVI and audio InfoFrames: clears 0x3E bits 5, 4, 1 and 0.
void DisableInfoFrame();

/// Sends the general control packet, which sets (mute non-zero) or clears the sink's audio/video mute: 0x3F, 0xDF. If
/// the transmitter does not accept the packet within 64 reads, the packet stays off.
void SendCP_Packet(std::uint8_t mute);

// ---- Audio clock regeneration and audio input ----
// All registers are on page 0x7A unless another page is named. Sample rates are in whole kHz: 32, 44, 48, 88, 96, 176,
// 192. 0 means no known rate.

/// Acknowledges the audio events, waits for a stable CTS, measures the sample rate, writes N (0x03 to 0x05) and the
/// channel status code (0x21), and switches the audio input on. Without a stable CTS only the events are acknowledged.
void SetN();

/// Waits until the CTS is stable. Each round reads the CTS twice. The round agrees if the two values differ by at most 2.
/// A round that does not agree sets the count of agreeing rounds to 0. A round whose first CTS is 5000 or less leaves the
/// count as it is.
/// @return 1 when five rounds have agreed; 0 with a message after ten rounds, which are 60 register reads
std::uint8_t WaitForStableCTS();

/// Reads the measured CTS: 0x09, 0x0A, 0x0B.   @return 24 bits
std::uint32_t ReadCTSValue();

/// Reads N: 0x03, 0x04, 0x05.   @return 24 bits
std::uint32_t ReadNValue();

/// Writes bits 23..0 of n: 0x03, 0x04, 0x05.
void WriteNValue(std::uint32_t n);

/// Computes the sample rate from the measured CTS and N.
/// @param pixclk  pixel clock in 10 kHz
/// @return the rate in kHz; 0 if it is none of the seven rates, or if the CTS is below 100
std::uint8_t GetFs(std::uint16_t pixclk);

/// Looks N up.
/// @param pixclk  pixel clock in 10 kHz   @param rate  in kHz; an unknown rate counts as 32 kHz
/// @return N for this clock and rate
std::uint32_t SearchOptimumNValue(std::uint16_t pixclk, std::uint8_t rate);

/// @return 0 to 6 for the seven rates in ascending order; 0xFF for any other rate
std::uint8_t GetFsIndex(std::uint8_t rate);

/// Writes the IEC 60958-3 sampling-frequency code of the rate: 0x21. Writes nothing for an unknown rate.
void SetI2SFsStatus(std::uint8_t rate);

/// Switches the audio input on or off: 0x14 bit 0.
void TXAudio(std::uint8_t on);

/// Chooses S/PDIF (on non-zero) or I2S as the audio input: 0x14 bit 1.
void TXSPDIFSelect(std::uint8_t on);

/// @return 1 if S/PDIF is chosen, else 0: 0x14 bit 1
std::uint8_t IsSPDIFSelected();

/// @return 1 if the audio input is off, else 0: 0x14 bit 0
std::uint8_t IsAudioDisabled();

/// Acknowledges the two audio input interrupts: 0x72:0x71 = 0x18.
void ClearBiphaseSampleDroppedInterrupts();

// ---- Video input ----

/// Sets the video input stage, 0x72:0x4A, for OutVideoMode, the output state and the output format. Reports its switches
/// on standard error. If colour conversion is on, also sets 0x72:0x48 bit 4 for SrcVideoFrmt.
void ConfigTXVideoMode();

/// Sets the position of the active picture for the current output format.
/// @param embedded  0: loads the DE generator and switches it by DefaultDataEnable; else: loads the embedded-sync decoder
void HDMITX_SetDE(std::uint8_t embedded);

/// Loads the DE generator and leaves it off: 0x72:0x32 to 0x34, 0x36 to 0x39.   @param row  index into VModeTables
void UpdateTX_DE(std::uint8_t row);

/// Loads the embedded-sync decoder: 0x72:0x3E bits 1..0, 0x40 to 0x47.   @param row  index into VModeTables
void UpdateTX_656(std::uint8_t row);

/// Switches the DE generator on or off: 0x72:0x33 bit 6.
void SetDE(std::uint8_t on);

/// The same as SetDE.
void DE_GenEn(std::uint8_t on);

/// Writes a fixed set-up for separate syncs, HDMI and I2S audio: 16 registers.
void HDMITX_OutVideoNormal();

/// Writes a fixed set-up for BT.656 input of 720x480 interlaced video: 9 registers, then 0x72:0x32 to 0x47.
void HDMITX_OutVideoBT656();

// ---- Power, reset and mode ----
// A flag argument is on when it is non-zero. A function that names single bits keeps the other bits of the register.

/// Switches the TMDS output off (down non-zero) or on: 0x72:0x08 bit 0.
void HDMITXTMDSPowerDown(std::uint8_t down);

/// @return 1 in HDMI mode, 0 in DVI mode: 0x7A:0x2F bit 0.
std::uint8_t IsTXInHDMIMode();

/// Chooses HDMI (on non-zero) or DVI signalling: 0x7A:0x2F bit 0.
void TX_HDMIMode(std::uint8_t on);

/// @return DefaultDVImode: non-zero if the output must be DVI, whatever the sink is. Accesses no register.
std::uint8_t IsNeedToForceInDVIMode();

/// Asserts software resets: writes bits to 0x72:0x05, where bits 1 and 0 are the resets.
void AssertHDMITX_SWReset(std::uint8_t bits);

/// Releases all software resets: 0x72:0x05 = 0x00. The argument has no effect.
void ReleaseHDMITX_SWReset(std::uint8_t bits);

/// Asserts and releases both software resets: 0x72:0x05 = 0x03, then 0x00, without a delay.
void SW_ResetHDMITX();

/// Powers the output, then wakes up the rest of the core: 0x72:0x08 bit 0, 0x7A:0x3D bit 0.
void WakeUpHDMITX();

/// Powers everything down if enable is 1, and up for any other value: 0x72:0x08 bit 0, then 0x7A:0x3D bits 2..0.
void HDMITXTotalPowerDownEnable(std::uint8_t enable);

/// Sets the input clock. Bits 7..2 of 0x72:0x48 become those of value. Bits 1..0 keep what they held, ORed with bits 1..0
/// of value.
void SetIClk(std::uint8_t value);

/// Sets the input clock edge from DefaultICLKEDGE: 0x72:0x08 bit 1.
void SetInputClockEdge();

/// Sets the audio master clock: 0x7A:0x02 = index.
void SetMCLK(std::uint8_t index);
