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

    /// The writes since the last call in short, with one address for neighbouring registers, local updates as "u" and
    /// blocks that count up in their last word as one: "500:6c10 bb10 u 588:0000 0080 .. 00a4". Wrapped where that gets
    /// long.
    static std::string Packed() {
        std::vector<std::string> blocks; // "500:6c10 bb10"
        std::string journal = Writes();
        unsigned next = 0;
        for (; !journal.empty(); journal.erase(0, journal.find('\n') + 1)) {
            const auto addr = static_cast<unsigned>(std::stoul(journal.substr(7, 4), nullptr, 16));
            if (addr == KOVA_LOCAL_UPDATE) {
                blocks.push_back("u");
            } else if (addr == next) {
                blocks.back() += ' ' + journal.substr(12, 4);
            } else {
                blocks.push_back(journal.substr(8, 3) + ':' + journal.substr(12, 4));
            }
            next = addr + 1;
        }
        std::string words;
        std::size_t line = 0;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            std::size_t last = i;
            while (last + 1 < blocks.size() && CountsUp(blocks[last], blocks[last + 1])) {
                ++last;
            }
            const bool full = blocks[i] != "u" && words.size() - line > 110;
            line = full ? words.size() : line;
            words += (full ? "\n    " : words.empty() ? "" : " ") + blocks[i];
            if (last > i) {
                words += " .. " + blocks[last].substr(blocks[last].size() - 4);
                i = last;
            }
        }
        return words;
    }
    /// Whether two blocks are the same but for a last word that is one more.
    static bool CountsUp(const std::string& block, const std::string& next) {
        const std::size_t at = block.rfind(' ');
        return at != std::string::npos && block.substr(0, at) == next.substr(0, at) && next.size() == block.size()
               && std::stoul(next.substr(at), nullptr, 16) == std::stoul(block.substr(at), nullptr, 16) + 1;
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
