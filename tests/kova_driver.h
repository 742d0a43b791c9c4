#pragma once
// What the tests of the video processor driver's topics stand on: the board, and the driver as at program start.

#include "kova/api.h"
#include "kova/state.h"
#include "tests/board.h"

#include <sstream>
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
        record << std::hex;
    }

    /// Gives the registers from first to last the same value, so that a field's bits show.
    static void Fill(std::uint16_t value, unsigned first = 0x010, unsigned last = 0x5FF) {
        for (unsigned addr = first; addr <= last; ++addr) {
            sim::KovaRegister(static_cast<std::uint16_t>(addr)) = value;
        }
    }

    /// The writes since the last call in short, with one address for neighbouring registers and local updates as "u":
    /// "500:6c10 bb10 u". Wrapped between blocks where that gets long.
    static std::string Packed() {
        std::string words;
        unsigned next = 0;
        std::size_t line = 0;
        for (std::string journal = Writes(); !journal.empty(); journal.erase(0, journal.find('\n') + 1)) {
            const auto addr = static_cast<unsigned>(std::stoul(journal.substr(7, 4), nullptr, 16));
            const bool update = addr == KOVA_LOCAL_UPDATE;
            const std::string place = addr == next ? "" : journal.substr(8, 3) + ':';
            const bool full = !update && !place.empty() && words.size() - line > 110;
            line = full ? words.size() : line;
            words += full ? "\n    " : words.empty() ? "" : " ";
            words += update ? "u" : place + journal.substr(12, 4);
            next = addr + 1;
        }
        return words;
    }

    /// Adds a call to the record: the names and values given, its result if that is an error, what it wrote.
    template <typename... Name>
    void Note(std::uint8_t result, const Name&... name) {
        ((record << +name << ' '), ...);
        record << (result != 0 ? "error " + std::to_string(result) + ' ' : "") << Packed() << '\n';
    }

    /// What happened in a test, number upon number in hexadecimal, to be compared with a recorded file.
    std::ostringstream record;
};
