#include "edid/CRC16.h"
#include "edid/MDDC.h"
#include "tests/board.h"

#include <string_view>

namespace {

using Mddc = Board;

TEST_F(Mddc, AReadGoesThroughTheSegmentThatIsSelected) {
    std::array<std::uint8_t, 258> edid{};
    edid[0x10] = 0xAA;
    edid[0x11] = 0xBB;
    edid[0x101] = 0xCC;
    sim::Plug(edid);
    std::array<std::uint8_t, 2> bytes{};
    Transfers();
    Quietly([&] {
        EXPECT_EQ(BlockReadEDID(2, 0x10, bytes.data()), 0);
        sim::TxRegister(sim::Page::Hdmi1, 0xEE) = 1;
        EXPECT_EQ(BlockReadEDID(1, 0x01, bytes.data()), 0);
        EXPECT_EQ(BlockWriteEDID(2, 0x20, bytes.data()), 0);
    });
    ExpectGolden("ddc-transfers.journal", Transfers());
}

TEST_F(Mddc, PollsAreBoundedAndErrorsAreAborted) {
    struct Case {
        std::uint8_t count, error;
        std::uint32_t busy;
        bool requestsFail = false;
    };
    std::string text;
    // clang-format off
    for (const Case& c : {
             Case{8, 0, 0},    Case{8, 0, 18},   Case{8, 0, 19},     // late by one read
             Case{8, 0, 1000}, Case{1, 0, 1000}, Case{0, 0, 1000},   Case{246, 0, 1000}, // the budget has 8 bits
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
        Quietly([&] { result = BlockReadEDID(c.count, 0, bytes.data()); });
        text += "count " + std::to_string(c.count) + ", busy " + std::to_string(c.busy) + ", error bits "
                + std::to_string(c.error) + (c.requestsFail ? ", requests fail" : "") + ": result "
                + std::to_string(result) + (bytes[0] != 0x77 ? ", filled\n" : "\n") + Transfers() + "\n";
    }
    ExpectGolden("ddc-polls.journal", text);
}

TEST(Crc16, ItsCheckValues) {
    const auto crc = [](std::string_view text, std::uint16_t value = 0) {
        UpdateCRC16WithBlock(&value, static_cast<std::uint8_t>(text.size()),
                             reinterpret_cast<const std::uint8_t*>(text.data()));
        return value;
    };
    EXPECT_EQ(crc("123456789"), 0x0C73);
    EXPECT_EQ(crc("56789", crc("1234")), 0x0C73);
    EXPECT_EQ(crc({"\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00", 8}), 0x038E);
    EXPECT_EQ(crc("", 0xABCD), 0xABCD);
}

} // namespace
