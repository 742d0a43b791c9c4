// The video input of the video processor: sync status and the measurements of its line frequency and line counts.

#include "sim/board.h"

namespace sim {

namespace {

constexpr std::uint16_t kUpdate = 0x4C4;
constexpr std::uint16_t kStatusSelect = 0x4C6;
constexpr std::uint16_t kMeasure = 0x4D0;     // bit 0: request, bit 15: ready
constexpr std::uint16_t kNotMeasure = 0x7FFE; // bits without a meaning
constexpr std::uint16_t kSyncStatus = 0x4E0;
constexpr std::uint16_t kHFrequency = 0x4E2;
constexpr std::uint16_t kLinesField1 = 0x4E8;
constexpr std::uint16_t kLinesField2 = 0x4E9;

constexpr std::uint16_t kSyncSelected = 9;
constexpr std::uint16_t kReady = 0x8000;

VideoInput input;

struct {
    bool running;
    std::uint32_t reads; // reads of the ready flag since the request took effect
} measurement;

bool Measured() { return measurement.running && measurement.reads > input.measureReads; }

} // namespace

void ResetVideo() {
    input = {};
    measurement = {};
}

void SetVideoInput(const VideoInput& video) { input = video; }

void NoteVideoWrite(std::uint16_t addr, std::uint16_t value) {
    if (addr == kUpdate && value == 1) {
        measurement = {.running = (KovaRegister(kMeasure) & 1) != 0, .reads = 0};
    }
}

std::uint16_t ReadVideo(std::uint16_t addr) {
    const bool selected = KovaRegister(kStatusSelect) == kSyncSelected;
    switch (addr) {
    case kMeasure:
        ++measurement.reads;
        return static_cast<std::uint16_t>(Meaningless(kNotMeasure) | KovaRegister(addr)
                                          | (selected && Measured() ? kReady : 0));
    case kSyncStatus:
        return selected ? input.syncStatus : std::uint16_t{0};
    case kHFrequency:
        return selected && Measured() ? input.hFrequency : std::uint16_t{0};
    case kLinesField1:
        return selected && Measured() ? input.linesField1 : std::uint16_t{0};
    case kLinesField2:
        return selected && Measured() ? input.linesField2 : std::uint16_t{0};
    default:
        return KovaRegister(addr);
    }
}

} // namespace sim
