#pragma once
// The HDMI transmitter driver. An application includes this header to use the driver.
//
// A register is named by page and offset: 0x72:0x08 is register 0x08 of page 0, 0x7A:0x2F is register 0x2F of page 1.
// A flag argument counts as set when it is not zero.
// A read-modify-write keeps the bits that its description does not name.
// The output format is stOutVideoInfo.frmt (kova/formats.h).
//
// A failed transfer does not stop a function, and no result code reports it. It only prints a message on standard
// output. A failed read counts as 0xFF. A read-modify-write after a failed read therefore writes 1 to the bits that it
// should keep.

#include "hdmitx_i2c.h" // register access
#include "vmtables.h"   // video timings

#include <array>
#include <cstdint>

// ---- Configuration ----
// All of these variables are zero at program start. InitHDMITXVariable sets them to the values in brackets.

extern std::uint8_t Default656OutEn;   ///< Non-zero: the video input carries embedded syncs. [0]
extern std::uint8_t DefaultDataEnable; ///< Non-zero: the DE generator makes data enable (DE). [0]
extern std::uint8_t DefaultICLKValue;  ///< Input clock setting: the argument of SetIClk. [0]
extern std::uint8_t DefaultDVImode;    ///< Non-zero: the output is DVI, whatever the sink is. [0]
extern std::uint8_t DefaultICLKEDGE;   ///< Input clock edge, see SetInputClockEdge. [1]
extern std::uint8_t DefaultMCLKIndex;  ///< Audio master clock setting: the argument of SetMCLK. [1]

/// Aspect of the active picture: 0 is 4:3, 2 is 16:9, and any other value means that the aspect is not stated.
/// [2 when OutVideoFrmt is a high-definition format, 4 to 9, else 0]
extern std::uint8_t DefaultActiveAspect;

/// Audio input settings. [0x10, 2, 2, 0x0B, 8]
/// Byte 0 selects the I2S input: it is the argument of SetI2SDataSelection.
/// Byte 1 is not used.
/// Byte 2 is the IEC 60958-3 sampling-frequency code for 0x7A:0x21.
/// Byte 3 is the value of 0x7A:0x22 and of 0x7A:0x24.
/// Byte 4 is the value of 0x7A:0x1D.
extern std::array<std::uint8_t, 5> DefaultAudioConfig;

// ---- Start-up ----
// These functions are for an application that starts the transmitter itself. Do not call them while another thread runs
// HDMITxInterruptHandler or HDMITxTimerHandler: both sides use the same registers and variables without a lock.

/// Starts the transmitter. Reads the identification register 0x72:0x03 and goes on only when it holds 0x91. Then calls
/// InitHDMITXVariable, InitHDMITX and InitInterruptMasks. InitHDMITXVariable clears DefaultDVImode, so this function
/// always starts HDMI operation.
/// @return 1 when the transmitter was started. 0 when the identification is not 0x91. The function then prints a
///         message on standard error and changes nothing.
std::uint8_t InitializeHDMITX();

/// Sets the configuration above to the values in brackets, OutputState to OUTPUT_NO_SINK, OldOutputState to 255 and
/// RequireConfigInfoFrame to 1. Accesses no register.
void InitHDMITXVariable();

/// Starts HDMI operation. Resets the transmitter, then sets the audio input, the DE generator, the video input, the
/// clocks and the interrupts, and switches the output on last. Calls only InitDVITX when DefaultDVImode is set.
void InitHDMITX();

/// Starts DVI operation. Sets no audio and does not enable the audio interrupts. Writes 0x72:0x0C = 0x88 in addition.
void InitDVITX();

/// Selects HDMI mode and writes the first N value. Then writes 0x7A:0x01 = 0x02, calls SetMCLK and calls InitDVDAudio.
/// The N value follows from byte 2 of DefaultAudioConfig: 4096 for 32 kHz, 6272 for 44.1 kHz, 6144 for 48 kHz. No N is
/// written for any other code.
void InitAudioPart();

/// Writes the bytes of DefaultAudioConfig: byte 2 to 0x7A:0x21, byte 3 to 0x22 and 0x24, byte 4 to 0x1D. Then calls
/// SetI2SDataSelection with byte 0.
void InitDVDAudio();

/// Selects the I2S input and switches the audio input on. Clears bit 0 of 0x7A:0x14 first, then writes 0x7A:0x1C, then
/// writes the whole of 0x7A:0x14 = sel with bit 0 set.
/// @param sel  0x10, 0x20, 0x40 or 0x80 for inputs 0 to 3. Any other value leaves 0x7A:0x1C unchanged, and the
///             function still writes 0x7A:0x14.
void SetI2SDataSelection(std::uint8_t sel);

// ---- Interrupts ----

/// Handles the transmitter's interrupts: hot plug changes and audio input events. Call it after each
/// KOVAAPI_GetParseIRQ. Does nothing unless the stored status shows interrupt 7 (KOVA_IRQ_HDMITX). Disables interrupt 7
/// at the start and enables it again at the end. When bit 0 of 0x72:0x70 is set, reads the events from 0x72:0x71,
/// handles them and writes 0x72:0x71 = 0xFF to acknowledge all events. Prints what it finds on standard error.
void HDMITxInterruptHandler();

/// Handles a hot plug change: sets OutputState to OUTPUT_NO_SINK and switches the TMDS output off (0x72:0x08 bit 0).
void HotPlugInOrOut();

/// Handles an audio input event: calls SetN.
void ChangeFsHandler();

/// Acknowledges and enables the interrupts of HDMI operation. Writes 0x72:0x71 = 0x78, then 0x72:0x75 = 0x78.
void InitInterruptMasks();

/// Acknowledges and enables the interrupts of DVI operation, without those of the audio input. Writes 0x72:0x71 = 0x60,
/// then 0x72:0x75 = 0x60.
void InitDVIInterruptMasks();

// ---- Timer service and output state ----

/// States of the output.
enum : std::uint8_t {
    OUTPUT_NO_SINK = 0,        ///< No sink is connected, or its EDID could not be read.
    OUTPUT_CHECK_EDID = 1,     ///< A sink is confirmed. Its EDID must be parsed.
    OUTPUT_HDMI = 4,           ///< HDMI output.
    OUTPUT_DVI = 5,            ///< DVI output.
    OUTPUT_HDMI_NO_POWER = 20, ///< HDMI sink whose receiver has no power.
    OUTPUT_DVI_NO_POWER = 21,  ///< DVI sink whose receiver has no power.
};

extern std::uint8_t OutputState;    ///< Current state: one of the values above.
extern std::uint8_t OldOutputState; ///< The state that was printed last.

/// Runs one pass of the timer service. Call it once a second, after HDMITxInterruptHandler. Most passes do nothing.
///
/// Pass 8 and every 32nd pass after it read hot plug (bit 1) and receiver sense (bit 2) from 0x72:0x09. They set
/// OutputState, switch the TMDS output (0x72:0x08 bit 0) and print a change of the state on standard error. When the
/// state is OUTPUT_CHECK_EDID, they read the EDID twice and choose HDMI or DVI. When DefaultDVImode is set, they choose
/// DVI without reading the EDID. A sink that is connected from the start is confirmed at pass 104.
///
/// Pass 984 and every 992nd pass after it count the time-out. OUTPUT_CHECK_EDID becomes OUTPUT_DVI at the second of
/// these passes since the state became OUTPUT_CHECK_EDID. In HDMI mode, these passes also call SetN when S/PDIF is
/// selected and the audio input is off.
void HDMITxTimerHandler();

// ---- InfoFrames (CEA-861) and the general control packet ----
// All registers are on page 0x7A. The functions print their progress on standard error, except SendCP_Packet.

inline constexpr std::uint8_t INFOFRAME_AVI = 0x82;   ///< Type of the AVI InfoFrame.
inline constexpr std::uint8_t INFOFRAME_AUDIO = 0x84; ///< Type of the audio InfoFrame.

/// Data bytes 1 to 13 of the AVI InfoFrame. SendAVIInfoFrame changes bytes 1, 2 and 4.
extern std::array<std::uint8_t, 13> DefaultAVIInfoFrame;
/// Data bytes 1 to 10 of the audio InfoFrame. Zero means that the sink takes the value from the audio stream.
extern std::array<std::uint8_t, 10> DefaultAUDInfoFrame;
/// Non-zero: the next SendAVIInfoFrame builds and loads the AVI InfoFrame.
extern std::uint8_t RequireConfigInfoFrame;

/// Builds the AVI InfoFrame from OutVideoMode, the output format and DefaultActiveAspect, and writes it to registers
/// 0x40 to 0x50. Writes no register when RequireConfigInfoFrame is zero. Otherwise clears RequireConfigInfoFrame.
void SendAVIInfoFrame();

/// Writes the audio InfoFrame to registers 0x80 to 0x8D.
void SendAUDInfoFrame();

/// Switches on the repeated sending of a packet.
/// @param code  0x82 to 0x85: the InfoFrame type. Calls Control_INF_CTRL1 with it.
///              0: the packet of bits 1..0 of register 0x3F. Both bits are set.
///              255: switches nothing on. Clears bits 4 and 0 of 0x3E, then calls Control_INF_CTRL1. In HDMI mode the
///              other bits of 0x3E stay unchanged, so bit 5 (audio) and bit 1 (AVI) can stay set.
/// @return 0 for these codes. For any other code, the function returns 1 and writes no register.
std::uint8_t EnableInfoFrame(std::uint8_t code);

/// Writes InfoFrame control 1, register 0x3E. In HDMI mode, sets the two bits of the type: bits 1..0 for 0x82, 3..2 for
/// 0x83, 5..4 for 0x84, 7..6 for 0x85. Any other code changes no bit. Then reads the register and prints the value.
/// In DVI mode, writes 0x00 for every code and prints nothing.
void Control_INF_CTRL1(std::uint8_t code);

/// Switches the AVI and audio InfoFrames off: clears bits 5, 4, 1 and 0 of 0x3E.
void DisableInfoFrame();

/// Sends the general control packet, which sets or clears the sink's audio/video mute. Clears bit 2 of 0x3F, writes
/// 0xDF, waits until bit 2 of 0x3F reads 0, and sets bits 3 and 2 of 0x3F. Reads the bit at most 64 times. If it never
/// reads 0, the function returns without the last write, and the packet stays off.
/// @param mute  non-zero sets the mute (0xDF = 0x01), zero clears it (0xDF = 0x10)
void SendCP_Packet(std::uint8_t mute);

// ---- Audio clock regeneration and audio input ----
// All registers are on page 0x7A unless the page is given. A sample rate is a number of whole kHz: 32, 44, 48, 88, 96,
// 176 or 192. The rate 0 means that no valid rate was found. A pixel clock is a number of units of 10 kHz.

/// Measures the audio sample rate, sets N for it and switches the audio input on. Acknowledges the audio input events
/// (0x72:0x71), waits for a stable CTS and measures the rate. Then writes N (0x03 to 0x05), the sampling-frequency code
/// (0x21) and bit 0 of 0x14. Without a valid rate, N and the code stay unchanged, and the audio input is still switched
/// on. Without a stable CTS, the function writes nothing after the acknowledgement. Prints its progress on standard
/// error.
void SetN();

/// Waits until the measured CTS is stable. A round reads CTS twice. The function makes at most ten rounds, which are 60
/// register reads, without a delay.
/// - A round whose first CTS is 5000 or less is ignored.
/// - A round whose two values differ by at most 2 is counted.
/// - Any other round sets the count back to 0.
/// @return 1 as soon as the count is five. 0 after ten rounds, with a message on standard error.
std::uint8_t WaitForStableCTS();

/// Reads CTS, which the transmitter measures.
/// @return 24 bits: 0x09 is the low byte, 0x0A the middle byte, 0x0B the high byte
std::uint32_t ReadCTSValue();

/// Reads N.
/// @return 24 bits: 0x03 is the low byte, 0x04 the middle byte, 0x05 the high byte
std::uint32_t ReadNValue();

/// Writes N: bits 7..0 to 0x03, bits 15..8 to 0x04, bits 23..16 to 0x05. Bits 31..24 are not used.
void WriteNValue(std::uint32_t n);

/// Measures the sample rate from CTS (0x09 to 0x0B) and N (0x03 to 0x05). Prints the values on standard error.
/// @param pixclk  pixel clock in units of 10 kHz
/// @return the rate in kHz. 0 when the measured value is near none of the seven rates, or when CTS is below 100.
std::uint8_t GetFs(std::uint16_t pixclk);

/// Looks up N in a table. Accesses no register.
/// @param pixclk  pixel clock in units of 10 kHz
/// @param rate  sample rate in kHz; any value but the seven rates counts as 32
/// @return N. Pixel clocks 2517 and 7425 have values of their own; all other clocks share one set of values.
std::uint32_t SearchOptimumNValue(std::uint16_t pixclk, std::uint8_t rate);

/// @return the index of the rate, 0 to 6 for the seven rates in ascending order. 0xFF for any other value.
std::uint8_t GetFsIndex(std::uint8_t rate);

/// Writes the rate's IEC 60958-3 sampling-frequency code to 0x21. Writes nothing unless it is one of the seven rates.
void SetI2SFsStatus(std::uint8_t rate);

/// Switches the audio input on or off: 0x14 bit 0.
void TXAudio(std::uint8_t on);

/// Selects the audio input: S/PDIF when the flag is set, I2S when it is zero. 0x14 bit 1.
void TXSPDIFSelect(std::uint8_t on);

/// @return 1 when S/PDIF is selected (0x14 bit 1 is set), else 0.
std::uint8_t IsSPDIFSelected();

/// @return 1 when the audio input is off (0x14 bit 0 is clear), else 0.
std::uint8_t IsAudioDisabled();

/// Acknowledges the two audio input interrupts: 0x72:0x71 = 0x18.
void ClearBiphaseSampleDroppedInterrupts();

// ---- Video input ----
// All registers are on page 0x72 unless the page is given. A row is an index of VModeTables. A row above 81 counts as a
// row of zeros.

/// Sets the video input stage, register 0x4A, for OutVideoMode, OutputState and the output format. Prints the state of
/// each switch on standard error. When the colour conversion is on (0x4A bit 3), also sets or clears bit 4 of 0x48 for
/// SrcVideoFrmt.
void ConfigTXVideoMode();

/// Tells the transmitter where the active picture lies in the current output format. Prints the row and the format on
/// standard error.
/// @param embedded  zero: calls UpdateTX_DE, then SetDE with DefaultDataEnable. Non-zero: calls UpdateTX_656 only.
void HDMITX_SetDE(std::uint8_t embedded);

/// Loads the DE generator from a row and switches the generator off. Registers 0x32 to 0x34 and 0x36 to 0x39.
void UpdateTX_DE(std::uint8_t row);

/// Loads the embedded-sync decoder from a row. Registers 0x3E (bits 1..0) and 0x40 to 0x47.
void UpdateTX_656(std::uint8_t row);

/// Switches the DE generator on or off: 0x33 bit 6.
void SetDE(std::uint8_t on);

/// Does the same as SetDE.
void DE_GenEn(std::uint8_t on);

/// Writes a fixed set-up of 16 registers on both pages: separate syncs, HDMI mode and I2S audio of 48 kHz.
void HDMITX_OutVideoNormal();

/// Writes a fixed set-up for BT.656 input of 720x480 interlaced video: nine registers, then 0x32 to 0x47. Sets no audio
/// and does not change between HDMI and DVI mode.
void HDMITX_OutVideoBT656();

// ---- Power, reset and mode ----

/// Switches the TMDS output off when the flag is set, on when it is zero: 0x72:0x08 bit 0.
void HDMITXTMDSPowerDown(std::uint8_t down);

/// @return 1 in HDMI mode, 0 in DVI mode: 0x7A:0x2F bit 0.
std::uint8_t IsTXInHDMIMode();

/// Selects HDMI mode when the flag is set, DVI mode when it is zero: 0x7A:0x2F bit 0.
void TX_HDMIMode(std::uint8_t on);

/// @return DefaultDVImode. Non-zero means that the output is DVI, whatever the sink is. Accesses no register.
std::uint8_t IsNeedToForceInDVIMode();

/// Starts software resets: writes the whole of 0x72:0x05.
/// @param bits  bits 1 and 0 are the two resets
void AssertHDMITX_SWReset(std::uint8_t bits);

/// Ends all software resets, whatever the argument is: 0x72:0x05 = 0x00.
void ReleaseHDMITX_SWReset(std::uint8_t bits);

/// Starts and ends both software resets: writes 0x72:0x05 = 0x03, then 0x00, without a delay.
void SW_ResetHDMITX();

/// Switches the output power on (0x72:0x08 bit 0 = 1), then wakes the rest of the core (0x7A:0x3D bit 0 = 1).
void WakeUpHDMITX();

/// Switches all power off or on: 0x72:0x08 bit 0, then 0x7A:0x3D bits 2..0.
/// @param enable  exactly 1 switches the power off; any other value switches it on
void HDMITXTotalPowerDownEnable(std::uint8_t enable);

/// Sets the input clock, register 0x72:0x48. Keeps bits 1..0 of the register, clears bits 7..2 and then sets every bit
/// that is set in value. Bits 1..0 can therefore be set, but not cleared.
void SetIClk(std::uint8_t value);

/// Sets the input clock edge: 0x72:0x08 bit 1 = 1 when DefaultICLKEDGE is not zero, else 0.
void SetInputClockEdge();

/// Sets the audio master clock: 0x7A:0x02 = index.
void SetMCLK(std::uint8_t index);
