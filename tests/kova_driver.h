#pragma once
// The fixture of the video processor driver's tests: the board, and the driver as at program start.

#include "kova/state.h"
#include "tests/board.h"

#include <tuple>
#include <vector>

using Words = std::vector<std::uint16_t>;

inline std::ostream& operator<<(std::ostream& text, const VideoWindow& win) {
    return text << std::dec << win.w << 'x' << win.h << '+' << win.x << '+' << win.y << std::hex;
}

class KovaDriver : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        stKOVASrcWIN = stKOVADstWIN = stKOVAZoomWIN = stKOVAViewWIN = {};
        stKOVADeint = {};
        KOVAMFCCoef = 0;
        KOVAPLLClock = 0;
        log << std::hex;
    }

    /// Sets the registers from first to last to the same value, so that the bits of a field become visible.
    static void Fill(std::uint16_t value, unsigned first = 0x010, unsigned last = 0x5FF) {
        for (unsigned addr = first; addr <= last; ++addr) {
            sim::KovaRegister(static_cast<std::uint16_t>(addr)) = value;
        }
    }

    /// The writes since the last call in the short form.
    static std::string Packed() { return Packed(Writes(), "kova w "); }
    using Board::Packed;

    /// Adds a call to the log: the given names and values in hexadecimal, the result if it is an error, the writes.
    template <typename... Name>
    void Note(std::uint8_t result, const Name&... name) {
        ((log << +name << ' '), ...);
        log << (result != 0 ? "error " + std::to_string(result) + ' ' : "") << Packed() << '\n';
    }
};
