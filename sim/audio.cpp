// The audio that arrives at the transmitter: the measured CTS, and the interrupts when the sample rate changes.

#include "sim/board.h"

namespace sim {

namespace {

// N and CTS have three registers each on page Hdmi2, low byte first.
constexpr std::uint8_t kN = 0x03;
constexpr std::uint8_t kCts = 0x09;

// The video processor's video PLL: 27 MHz x M / (P x 2^S)
constexpr std::uint16_t kPllP = 0x02C, kPllM = 0x02E, kPllS = 0x030;
constexpr std::uint64_t kReferenceHertz = 27'000'000;

struct Audio {
    std::uint32_t hertz, jitter;
    std::uint32_t cts; // latched when its low byte is read
    bool late;         // whether the last CTS had the jitter added
    std::span<const std::uint32_t> played;
    std::size_t next; // index of the next measurement in played
} audio;

std::uint64_t PixelClock() {
    const std::uint32_t p = KovaRegister(kPllP);
    const std::uint32_t s = KovaRegister(kPllS);
    return p != 0 && s < 16 ? kReferenceHertz * KovaRegister(kPllM) / p >> s : 0;
}

// The sample rate is pixel clock x N / (128 x CTS).
std::uint32_t MeasureCts() {
    if (!audio.played.empty()) {
        return audio.played[audio.next++ % audio.played.size()];
    }
    if (audio.hertz == 0) {
        return 0;
    }
    std::uint64_t n = 0;
    for (std::uint8_t i = 3; i-- > 0;) {
        n = n << 8 | TxRegister(Page::Hdmi2, static_cast<std::uint8_t>(kN + i));
    }
    audio.late = !audio.late;
    const std::uint64_t cts = PixelClock() * n / (std::uint64_t{128} * audio.hertz) + (audio.late ? audio.jitter : 0);
    return static_cast<std::uint32_t>(cts & 0xFFFFFF);
}

} // namespace

void ResetAudio() { audio = {}; }

void SetAudio(std::uint32_t hertz, std::uint32_t jitter) {
    const bool changed = hertz != audio.hertz;
    audio.hertz = hertz;
    audio.jitter = jitter;
    if (changed) {
        RaiseTxInterrupt(kTxAudioEvents);
    }
}

void PlayCts(std::span<const std::uint32_t> measurements) {
    audio.played = measurements;
    audio.next = 0;
}

bool ReadAudio(std::uint8_t reg, std::uint8_t& value) {
    if (reg < kCts || reg > kCts + 2) {
        return false;
    }
    if (reg == kCts) {
        audio.cts = MeasureCts();
    }
    value = static_cast<std::uint8_t>(audio.cts >> (8 * (reg - kCts)) & 0xFF);
    return true;
}

} // namespace sim
