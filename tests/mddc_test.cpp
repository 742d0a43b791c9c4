#include "edid/MDDC.h"
#include "tests/board.h"

namespace {

using Mddc = Board;

TEST_F(Mddc, PollsEndAndErrorsAbort) {
    struct Case {
        std::uint8_t count, error;
        std::uint32_t busy;
        bool requestsFail = false;
    };
    // clang-format off
    for (const Case& c : {
             Case{8, 0, 0},    Case{8, 0, 18},   Case{8, 0, 19},     // the transfer ends one read too late
             Case{8, 0, 1000}, Case{1, 0, 1000}, Case{0, 0, 1000},   Case{246, 0, 1000}, // the number of polls has 8 bits
             Case{8, 0x48, 0}, Case{8, 0x28, 0}, Case{8, 0x08, 3},   Case{8, 0, 0, true}}) {
        // clang-format on
        sim::Reset();
        sim::KeepJournal(true);
        sim::Plug(sim::kBuiltInEdid);
        sim::SetDdcBusy(c.busy);
        sim::SetDdcError(c.error);
        std::array<std::uint8_t, 256> bytes{0x77};
        sim::FailEvery(c.requestsFail ? 1 : 0);
        std::uint8_t result = 0xFF;
        Log("count " + std::to_string(c.count) + ", busy " + std::to_string(c.busy) + ", error bits "
                + std::to_string(c.error) + (c.requestsFail ? ", requests fail" : ""),
            [&] {
                result = BlockReadEDID(c.count, 0, bytes.data());
                HDTX_RegRead(HDTX_SLV0, 0xF2); // an abort clears the status
            });
        log << "result " << int{result} << (bytes[0] != 0x77 ? ", filled\n" : "\n");
    }
    sim::FailEvery(0);
    std::array<std::uint8_t, 2> bytes{};
    sim::TxRegister(sim::Page::Hdmi1, 0xEE) = 1;
    Log("read in segment 1", [&] { EXPECT_EQ(BlockReadEDID(1, 0x01, bytes.data()), 0); });
    Log("write", [&] { EXPECT_EQ(BlockWriteEDID(2, 0x20, bytes.data()), 0); });
}

} // namespace
