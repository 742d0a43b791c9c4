#include "hdmitx/hdmitx.h"
#include "tests/board.h"

namespace {

using HdmiTx = Board;

TEST_F(HdmiTx, BlockWritesStepThroughTheRegistersAndBlockReadsDrainOne) {
    const std::array<std::uint8_t, 3> bytes{1, 2, 3};
    std::array<std::uint8_t, 3> back{};
    sim::TxRegister(sim::Page::Hdmi2, 0x30) = 0x77;
    sim::FailRequests(5, 1);
    Quietly([&] {
        HDTX_MultiWrite(HDTX_SLV1, 0xFE, bytes.data(), 3);
        HDTX_MultiRead(HDTX_SLV1, 0x30, back.data(), 3);
    });
    EXPECT_EQ(Transfers(),
              "hdmi2 w fe 01\nhdmi2 w ff 02\nhdmi2 w 00 03\nhdmi2 r 30 77\nhdmi2 r 30 00 failed\nhdmi2 r 30 77\n");
    EXPECT_EQ(back, (std::array<std::uint8_t, 3>{0x77, 0xFF, 0x77}));
}

TEST_F(HdmiTx, FieldsAreTrusted) {
    struct Case {
        std::uint8_t old, pos, width, data, expected;
    };
    // Of no width: rewritten unchanged. Bits above bit 7 are lost.
    for (const Case& c :
         {Case{0x0F, 4, 2, 0x3, 0x3F}, Case{0xFF, 4, 2, 0x0, 0xCF}, Case{0x5A, 3, 0, 0x7, 0x5A},
          Case{0x12, 0, 8, 0xEE, 0xEE}, Case{0x00, 6, 4, 0xF, 0xC0}, Case{0x5A, 255, 255, 0xFF, 0x5A}}) {
        sim::TxRegister(sim::Page::Hdmi2, 0x10) = c.old;
        Quietly([&] { EXPECT_EQ(HDTX_RegField(HDTX_SLV1, 0x10, c.pos, c.width, c.data), 0); });
        EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi2, 0x10), c.expected);
    }
}

} // namespace
