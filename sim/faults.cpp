// The faults that a script plants. Each fault changes requests to a range of registers of one page. The change happens
// between the driver and the chip.

#include "sim/board.h"

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace sim {

namespace {

auto& faults = *new std::vector<Fault>; // never destroyed: see script.cpp

constexpr const char* kPages[] = {"kova", "hdmi1", "hdmi2"}; // in the order of the request numbers

// The effects. Some need one more word, their argument.
constexpr struct {
    const char* name;
    Fault::Effect effect;
    bool argument;
} kEffects[] = {
    {"clear", Fault::Effect::Clear, true},
    {"set", Fault::Effect::Set, true},
    {"flip", Fault::Effect::Flip, true},
    {"swap", Fault::Effect::Swap, false},
    {"clear-address", Fault::Effect::ClearAddress, true},
    {"set-address", Fault::Effect::SetAddress, true},
    {"page", Fault::Effect::OtherPage, true},
    {"late", Fault::Effect::Late, false},
    {"lost", Fault::Effect::Lost, false},
    {"fail", Fault::Effect::Fail, false},
    {"kernel", Fault::Effect::Kernel, false},
};

bool ParseHex(std::string_view text, std::uint16_t& number) {
    if (text.empty() || text.size() > 4 || text.find_first_not_of("0123456789abcdefABCDEF") != text.npos) {
        return false;
    }
    number = static_cast<std::uint16_t>(std::strtoul(std::string(text).c_str(), nullptr, 16));
    return true;
}

bool ParsePage(std::string_view text, std::uint8_t& page) {
    for (page = 0; page < std::size(kPages); ++page) {
        if (text == kPages[page]) {
            return true;
        }
    }
    return false;
}

bool ParseRange(std::string_view text, Fault& fault) {
    if (text == "all") {
        return true;
    }
    const std::size_t dash = text.find('-');
    if (!ParseHex(text.substr(0, dash), fault.first)) {
        return false;
    }
    fault.last = fault.first;
    return dash == text.npos || (ParseHex(text.substr(dash + 1), fault.last) && fault.last >= fault.first);
}

// Changes a value by the effect of a fault. A transmitter value has 8 bits and is in data[0].
void ChangeValue(const Fault& fault, bool wide, kova_xfer& record) {
    unsigned value = wide ? unsigned{record.data[0]} << 8 | record.data[1] : record.data[0];
    switch (fault.effect) {
    case Fault::Effect::Clear:
        value &= ~unsigned{fault.bits};
        break;
    case Fault::Effect::Set:
        value |= fault.bits;
        break;
    case Fault::Effect::Flip:
        value ^= fault.bits;
        break;
    case Fault::Effect::Swap:
        value = wide ? value << 8 | value >> 8 : value;
        break;
    default:
        return;
    }
    record.data[0] = static_cast<std::uint8_t>(wide ? value >> 8 : value);
    record.data[1] = wide ? static_cast<std::uint8_t>(value & 0xFF) : record.data[1];
}

// Whether the fault changes this request. Counts the requests to the fault's registers.
bool IsDue(Fault& fault, unsigned long request, std::uint16_t reg) {
    const bool write = (request & 1) != 0;
    if (request / 2 != fault.page || !(write ? fault.writes : fault.reads) || reg < fault.first || reg > fault.last) {
        return false;
    }
    return ++fault.requests % fault.every == 0;
}

} // namespace

void AddFault(const Fault& fault) { faults.push_back(fault); }

void ClearFaults() { faults.clear(); }

// fault PAGE r|w|rw FIRST[-LAST]|all EFFECT [ARGUMENT] [every N]
bool ParseFault(std::span<char* const> words, Fault& fault) {
    if (words.size() < 4 || !ParsePage(words[0], fault.page) || !ParseRange(words[2], fault)) {
        return false;
    }
    const std::string_view direction = words[1];
    fault.reads = direction == "r" || direction == "rw";
    fault.writes = direction == "w" || direction == "rw";
    std::size_t next = 0;
    for (const auto& row : kEffects) {
        if (row.name == std::string_view(words[3])) {
            fault.effect = row.effect;
            next = row.argument ? 5 : 4;
        }
    }
    if (!(fault.reads || fault.writes) || next == 0 || words.size() < next) {
        return false;
    }
    if (fault.effect == Fault::Effect::OtherPage ? !ParsePage(words[4], fault.otherPage)
                                                 : next == 5 && !ParseHex(words[4], fault.bits)) {
        return false;
    }
    if (words.size() == next) {
        return true;
    }
    return words.size() == next + 2 && words[next] == std::string_view("every")
           && ParseCount(words[next + 1], fault.every);
}

bool CarryOutWithFaults(unsigned long request, kova_xfer& record) {
    const bool write = (request & 1) != 0;
    const bool wide = request <= KOVA_310_WRITE;
    const std::uint16_t reg = wide ? record.addr : record.addr & 0xFF;
    unsigned long carriedOut = request;
    kova_xfer carried = record; // the record as the chip gets it
    std::vector<const Fault*> ofTheValueRead;
    for (Fault& fault : faults) {
        if (!IsDue(fault, request, reg)) {
            continue;
        }
        switch (fault.effect) {
        case Fault::Effect::ClearAddress:
            carried.addr = static_cast<std::uint16_t>(carried.addr & ~unsigned{fault.bits});
            break;
        case Fault::Effect::SetAddress:
            carried.addr |= fault.bits;
            break;
        case Fault::Effect::OtherPage:
            carriedOut = fault.otherPage * 2UL + (request & 1);
            break;
        case Fault::Effect::Late:
            std::swap(carried, fault.held);
            if (!std::exchange(fault.holds, true)) {
                return true;
            }
            break;
        case Fault::Effect::Lost:
            return true;
        case Fault::Effect::Fail:
            return false;
        case Fault::Effect::Kernel: { // The kernel writes the block size of the file system into the record.
            const std::int32_t blockSize = 4096;
            std::memcpy(&record, &blockSize, sizeof record);
            return true;
        }
        default:
            if (write) {
                ChangeValue(fault, wide, carried);
            } else {
                ofTheValueRead.push_back(&fault);
            }
        }
    }
    if (!CarryOut(carriedOut, carried)) {
        return false;
    }
    for (const Fault* fault : ofTheValueRead) {
        ChangeValue(*fault, wide, carried);
    }
    if (!write) {
        record.data = carried.data;
    }
    return true;
}

} // namespace sim
