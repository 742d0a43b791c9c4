#pragma once
// What the tests of the video processor driver's topics stand on: the board, and the driver as at program start.

#include "kova/api.h"
#include "kova/state.h"
#include "tests/board.h"

class KovaDriver : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        stKOVASrcWIN = stKOVADstWIN = stKOVAZoomWIN = stKOVAViewWIN = {};
        stKOVADeint = {};
        KOVAMFCCoef = 0;
        KOVAPLLClock = 0;
    }

    /// Gives every register the same value, so that a field's bits show.
    static void Fill(std::uint16_t value) { FillRange(0x010, 0x5FF, value); }

    /// The writes since the last call in short: "500:6c10", local updates as "u".
    static std::string Short() {
        std::string words;
        std::string::size_type at = 0;
        for (const std::string journal = Writes(); at < journal.size(); at = journal.find('\n', at) + 1) {
            const std::string addr = journal.substr(at + 8, 3);
            words += words.empty() ? "" : " ";
            words += addr == "4c4" ? "u" : addr + ":" + journal.substr(at + 12, 4);
        }
        return words;
    }

    /// FNV-1a of a journal that is too long to be written down.
    static std::uint32_t Checksum(const std::string& text) {
        std::uint32_t sum = 0x811C9DC5;
        for (const char c : text) {
            sum = (sum ^ static_cast<std::uint8_t>(c)) * 0x01000193;
        }
        return sum;
    }

    /// The same, with one address for neighbouring registers: "500:6c10 bb10".
    static std::string Packed() {
        std::string words;
        unsigned next = 0;
        for (std::string journal = Writes(); !journal.empty(); journal.erase(0, journal.find('\n') + 1)) {
            const auto addr = static_cast<unsigned>(std::stoul(journal.substr(7, 4), nullptr, 16));
            const std::string place = addr == next ? "" : journal.substr(8, 3) + ':';
            words += (words.empty() ? "" : " ") + (addr == KOVA_LOCAL_UPDATE ? "u" : place + journal.substr(12, 4));
            next = addr + 1;
        }
        return words;
    }

    /// Gives the registers from first to last a value.
    static void FillRange(unsigned first, unsigned last, std::uint16_t value) {
        for (unsigned addr = first; addr <= last; ++addr) {
            sim::KovaRegister(static_cast<std::uint16_t>(addr)) = value;
        }
    }
};
