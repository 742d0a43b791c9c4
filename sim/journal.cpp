// The journal: every request as a line of text, for tests to compare and in a file for people.

#include "sim/board.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace sim {

namespace {

bool keeping = false;
auto& journal = *new std::string; // never destroyed: see script.cpp
std::FILE* file = nullptr;        // never closed, for the same reason

struct RequestText {
    const char* format; // prints the address and the value
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

void Note(const char* what) {
    if (keeping) {
        journal.append(what).append("\n");
    }
}

void NoteWithTime(const char* what) {
    Note(what);
    if (file != nullptr) {
        const std::uint64_t now = Now();
        std::fprintf(file, "%4llu.%06llu %s\n", static_cast<unsigned long long>(now / 1'000'000),
                     static_cast<unsigned long long>(now % 1'000'000), what);
    }
}

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

void NotePause(std::uint64_t microseconds) {
    if (!keeping) {
        return;
    }
    std::array<char, 40> line{};
    std::snprintf(line.data(), line.size(), "pause %llu", static_cast<unsigned long long>(microseconds));
    Note(line.data());
}

bool WriteJournal(const char* path) {
    if (std::strcmp(path, "-") == 0) {
        file = stderr;
        return true;
    }
    file = std::fopen(path, "w");
    if (file == nullptr) {
        std::fprintf(stderr, "kova-sim: cannot open the journal '%s': %s\n", path, std::strerror(errno));
        return false;
    }
    std::setvbuf(file, nullptr, _IOLBF, BUFSIZ); // so that tail -f shows each line at once
    return true;
}

void NoteTransfer(unsigned long request, const kova_xfer& record, bool ok) {
    if (!keeping && file == nullptr) {
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
    if (!ok) {
        std::strcat(line.data(), " failed");
    }
    NoteWithTime(line.data());
}

void NoteClose() { NoteWithTime("close"); }

} // namespace sim
