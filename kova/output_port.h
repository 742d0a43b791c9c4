#pragma once
// The output: digital bus, sync timing, DAC, PLLs, polarities, clock delays, clock sources, pins and clock drivers.
//
// Every function returns KOVA_NO_ERROR, also when a transfer fails (see regs.h). The comment of a function names the
// exceptions. A parameter "on" means on for any non-zero value.

#include "formats.h"

#include <cstdint>

// ---- The whole output ----

/// Completes the record from its format and mode, and sets up the output: bus format, DAC data, sync timing, PLLs, TMDS
/// drive, scan type and polarities. Then calls KOVAAPI_SetOutVideoAUX. Registers: 0x01C, 0x020, the even addresses from
/// 0x02C to 0x034, 0x040, 0x445, 0x484 to 0x486, 0x488 to 0x498, 0x4A2, 0x4A3, 0x4B4, 0x588, 0x589.
///
/// A multiplexed output of a format narrower than 1024 pixels uses twice the pixel clock. The horizontal timing and the
/// active width in the record are doubled then.
/// @return KOVA_NO_ERROR. KOVA_INVALID_FORMAT when the format or the mode is out of range; the record is then unchanged
///         and nothing is written.
std::uint8_t KOVAAPI_SetOutPortMode(OutVideoInfo* out);

/// Writes the options of the record, auxFlags, to fields of 0x4A2, 0x4A3 and 0x4B4. Then makes a local register update.
/// Then writes each clock delay that the record has: 0x024, 0x018, 0x026, 0x028.
std::uint8_t KOVAAPI_SetOutVideoAUX(const OutVideoInfo* out);

// ---- Sync, DAC and clocks ----

/// Loads the sync data memory of the DAC. For each word, writes the word to 0x588 and its index with a strobe bit to
/// 0x589.
/// @param data  null loads zeros
std::uint8_t KOVAAPI_SetDACSyncData(const DacData* data);

/// Sets the video PLL: 0x02C, 0x02E, 0x030. The PLL is held meanwhile (0x020 bit 0).
/// The pixel clock becomes 27 MHz * m / (p * 2^s).
std::uint8_t KOVAAPI_SetPLLVideoClock(std::uint16_t p, std::uint16_t m, std::uint16_t s);

/// Sets the memory PLL: 0x032, 0x034. The PLL is held meanwhile (0x020 bit 1). What a and b stand for is not known.
std::uint8_t KOVAAPI_SetPLLMemoryClock(std::uint16_t a, std::uint16_t b);

/// Restarts the output sync generator: writes 0 to 0x499, then value with bit 12 set. Ends with a local register
/// update.
std::uint8_t KOVAAPI_ResetOutSync(std::uint16_t value);

/// Chooses the source of the video clock and then calls KOVAAPI_SoftReset. Writes 1 to 0x03A for source 3, and 0 for
/// any other source. Writes the number of the source to 0x02A, but 1 for source 3. Sets 0x018 bit 2.
/// @param source  0 to 3. The start-up sequence uses 1. High-definition double mode uses 0 for port B and 2 for port A.
///                What source 3 is, is not known.
std::uint8_t KOVAAPI_SetVCLKPLLSource(std::uint16_t source);

/// Makes a soft reset: writes 0 and then 1 to 0x070.
std::uint8_t KOVAAPI_SoftReset();

/// Makes a hard reset: writes 0 and then 1 to 0x072.
std::uint8_t KOVAAPI_HardReset();

// ---- Drivers and pins ----

inline constexpr std::uint8_t kAllClocks = 15;
inline constexpr std::uint8_t kAllOutPins = 5;

/// Switches one clock output driver, or all of them: 0x03C bits 11..0 and bit 14. A set bit switches a driver off.
/// @param clock  bit number of the driver, or kAllClocks. 16 and above give KOVA_I2C_ERROR without a transfer.
std::uint8_t KOVAAPI_EnableClockDrive(std::uint8_t clock, std::uint8_t on);

/// Switches one group of digital output pins, or all of them: 0x01E bits 4..1. A set bit switches a group off.
/// @param pin  bit number of the group in 0x01E, or kAllOutPins. 16 and above give KOVA_I2C_ERROR without a transfer.
std::uint8_t KOVAAPI_EnableOutPortPin(std::uint8_t pin, std::uint8_t on);

/// Switches the analog output: 0x01E bit 0. The set bit switches it off.
std::uint8_t KOVAAPI_EnableDACPortOut(std::uint8_t on);

// ---- Options ----
// Each setter stores the option in auxFlags of the record and writes it to the chip. Each ends with a local register
// update.

std::uint8_t KOVAAPI_SetDIGCbCrSwap(OutVideoInfo* out, std::uint8_t on);   ///< swaps Cb and Cr: 0x4A2 bit 4
std::uint8_t KOVAAPI_SetDACPbPrSwap(OutVideoInfo* out, std::uint8_t on);   ///< swaps Pb and Pr: 0x4A3 bit 4
std::uint8_t KOVAAPI_SetOutHActInvert(OutVideoInfo* out, std::uint8_t on); ///< inverts H active: 0x4B4 bit 7
std::uint8_t KOVAAPI_SetOutVActInvert(OutVideoInfo* out, std::uint8_t on); ///< inverts V active: 0x4B4 bit 6
std::uint8_t KOVAAPI_SetOutHSyncHAct(OutVideoInfo* out, std::uint8_t on);  ///< uses H sync as H active: 0x4B4 bit 3
std::uint8_t KOVAAPI_SetOutVSyncVAct(OutVideoInfo* out, std::uint8_t on);  ///< uses V sync as V active: 0x4B4 bit 2

/// Sets the data enable output mode: 0x4B4 bits 9..8. 0 and 1 are stored in auxFlags. Any other value is stored there
/// as mode 2.
/// @param demode  0 to 2
std::uint8_t KOVAAPI_SetDEOutMode(OutVideoInfo* out, std::uint8_t demode);

// ---- Clock delays ----
// Each setter stores the pointer in the record and writes the delay at once, without a local register update. The delay
// is borrowed, not copied. A null pointer is stored, and nothing is written.

std::uint8_t KOVAAPI_SetOutVCLKDelay(OutVideoInfo* out, const ClockDelay* delay);   ///< output clock: 0x024 bits 2..0
std::uint8_t KOVAAPI_SetOutVCLKBDelay(OutVideoInfo* out, const ClockDelay* delay);  ///< second clock: 0x024 bits 6..4
std::uint8_t KOVAAPI_SetIntVCLKDelay(OutVideoInfo* out, const ClockDelay* delay);   ///< internal clock: 0x018
std::uint8_t KOVAAPI_SetIntVCLK2xDelay(OutVideoInfo* out, const ClockDelay* delay); ///< double-rate clock: 0x026
std::uint8_t KOVAAPI_SetIntDACCLKDelay(OutVideoInfo* out, const ClockDelay* delay); ///< DAC clock: 0x028
