#include "kova/api.h"
#include "tests/board.h"

namespace {

using KovaRegs = Board;

TEST_F(KovaRegs, FieldsAreWrittenIntoTheRegisterAsItIs) {
    struct Case {
        std::uint16_t old, pos, width, data, expected;
    };
    for (const Case& c : {
             Case{0x0000, 9, 7, 0x007F, 0xFE00}, Case{0xFFFF, 9, 7, 0x0000, 0x01FF},
             Case{0x1234, 0, 16, 0xBEEF, 0xBEEF}, Case{0x0001, 15, 1, 0x0001, 0x8001},
             Case{0xA5A5, 4, 4, 0x001F, 0xA5F5}, // bits above the width are dropped
         }) {
        sim::KovaRegister(0x400) = c.old;
        EXPECT_EQ(KOVA_RegField(0x400, c.pos, c.width, c.data), 0);
        EXPECT_EQ(sim::KovaRegister(0x400), c.expected);
    }
    Transfers();
    KOVA_RegField(0x400, 0, 1, 0);
    // After a failed read the field is written into all ones.
    sim::FailRequests(1, 1);
    Quietly([] { EXPECT_EQ(KOVA_RegField(0x400, 0, 4, 0), 0); });
    EXPECT_EQ(Transfers(), "kova r 0400 a5f5\nkova w 0400 a5f4\nkova r 0400 0000 failed\nkova w 0400 fff0\n");

    // A field outside the register makes no transfer.
    for (const auto& [pos, width] : {std::pair{16, 1}, {0, 0}, {0, 17}, {10, 7}, {65535, 65535}}) {
        EXPECT_EQ(KOVA_RegField(0x400, std::uint16_t(pos), std::uint16_t(width), 0), 3);
    }
    EXPECT_EQ(Journal(), "");
}

TEST_F(KovaRegs, BlocksGoWordByWordAndAFailureDoesNotStopThem) {
    const std::array<std::uint16_t, 3> words{0x1122, 0x3344, 0x5566};
    std::array<std::uint16_t, 3> back{};
    sim::FailRequests(2, 1);
    Quietly([&] {
        EXPECT_EQ(KOVA_MultiWrite(0xFFFE, words.data(), 6), 0);
        sim::FailRequests(1, 1);
        EXPECT_EQ(KOVA_MultiRead(0xFFFE, back.data(), 6), 0);
    });
    EXPECT_EQ(Transfers(), "kova w fffe 1122\nkova w ffff 3344 failed\nkova w 0000 5566\n"
                           "kova r fffe 0000 failed\nkova r ffff 0000\nkova r 0000 5566\n");
    EXPECT_EQ(back, (std::array<std::uint16_t, 3>{0xFFFF, 0x0000, 0x5566}));
}

} // namespace
