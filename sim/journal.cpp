// What the board was asked to do, as text that a test compares whole.

#include "sim/board.h"

#include <cstdio>

namespace sim {

namespace {

bool keeping = false;
auto& journal = *new std::string; // never destroyed: see script.cpp

struct RequestText {
    const char* format; // of address and value
    bool wide;          // the value has 16 bits
};

constexpr std::array<RequestText, 6> kRequestTexts{{
    {"kova r %04x %04x", true},
    {"kova w %04x %04x", true},
    {"hdmi1 r %02x %02x", false},
    {"hdmi1 w %02x %02x", false},
    {"hdmi2 r %02x %02x", false},
    {"hdmi2 w %02x %02x", false},
}};

} // namespace

void KeepJournal(bool keep) {
    keeping = keep;
    journal.clear();
}

std::string TakeJournal() {
    std::string taken;
    taken.swap(journal);
    return taken;
}

void Note(const char* what) {
    if (keeping) {
        journal.append(what).append("\n");
    }
}

void NotePause(std::uint64_t microseconds) {
    if (!keeping) {
        return;
    }
    std::array<char, 40> line{};
    std::snprintf(line.data(), line.size(), "pause %llu", static_cast<unsigned long long>(microseconds));
    Note(line.data());
}

void NoteTransfer(unsigned long request, const kova_xfer& record, bool ok) {
    if (!keeping) {
        return;
    }
    std::array<char, 40> line{};
    if (request < kRequestTexts.size()) {
        const RequestText& text = kRequestTexts[request];
        const unsigned value = text.wide ? unsigned{record.data[0]} << 8 | record.data[1] : record.data[0];
        std::snprintf(line.data(), line.size(), text.format, unsigned{record.addr}, value);
    } else {
        std::snprintf(line.data(), line.size(), "request %lu", request);
    }
    Note((std::string(line.data()) + (ok ? "" : " failed")).c_str());
}

} // namespace sim
