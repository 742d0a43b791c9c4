// Parses any EDID over a DDC channel with faults. Every parse must end within its limit of DDC transfers and must leave
// segment 0 selected.
//
// The input is four bytes and the EDID. The four bytes are the flags, the number of the first transfer with an error
// (0: no error), the error bits, and the distance between the bytes that change from read to read (0: no byte changes).

#undef NDEBUG // the fuzzer needs the assertions
#include "app/device.h"
#include "edid/EDIDParse.h"
#include "hdmitx/hdmitx_i2c.h"
#include "sim/sim.h"

#include <algorithm>
#include <cassert>
#include <numeric>
#include <tuple>
#include <vector>

namespace {

enum Flag : std::uint8_t {
    kAsItIs = 0x01,     // header and checksums are not corrected
    kErrorOnce = 0x02,  // only one transfer fails
    kNeverReady = 0x04, // a failing transfer times out
};

std::vector<std::uint8_t> monitor;
std::uint8_t flags, errorFrom, errorBits, stride;
std::uint32_t transfers;

void CorrectHeaderAndChecksums() {
    constexpr std::array<std::uint8_t, 8> kHeader{0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
    std::copy_n(kHeader.begin(), std::min(kHeader.size(), monitor.size()), monitor.begin());
    for (auto block = monitor.begin(); monitor.end() - block >= 128; block += 128) {
        block[127] = static_cast<std::uint8_t>(-std::accumulate(block, block + 127, 0));
    }
}

void AtTransfer(std::uint32_t number) {
    transfers = number;
    const bool fails = errorFrom != 0 && ((flags & kErrorOnce) != 0 ? number == errorFrom : number >= errorFrom);
    sim::SetDdcError(fails ? errorBits & 0x68 : 0);
    sim::SetDdcBusy(fails && (flags & kNeverReady) != 0 ? 1000 : 0);
    if (stride != 0 && !monitor.empty()) {
        monitor[std::size_t{number} * stride % monitor.size()] ^= static_cast<std::uint8_t>(number);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) {
        return 0;
    }
    std::tie(flags, errorFrom, errorBits, stride) = std::tie(data[0], data[1], data[2], data[3]);
    monitor.assign(data + 4, data + size);
    if ((flags & kAsItIs) == 0) {
        CorrectHeaderAndChecksums();
    }
    transfers = 0;
    sim::Reset();
    open_kova();
    sim::Plug(monitor);
    sim::SetDdcHook(AtTransfer);
    EDIDParseResult result{};
    const std::uint8_t transfer = ParseEDID(&result);
    close_kova();

    assert(transfers <= edid::kMostEDIDReads);
    assert(sim::TxRegister(sim::Page::Hdmi1, 0xEE) == 0);
    assert(transfer == 0 || (transfer >= 3 && transfer <= 5));
    assert(result.ErrCode == 0 || (result.ErrCode >= EDID_ERR_HEADER && result.ErrCode <= EDID_ERR_BLOCK_MAP));
    assert(EdidVFmtsCount <= 8);
    return 0;
}
