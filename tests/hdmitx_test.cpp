#include "hdmitx/hdmitx.h"
#include "tests/board.h"

namespace {

class HdmiTx : public Board {
protected:
    /// The transfers of one operation.
    template <typename Operation>
    static std::string Of(Operation operation) {
        Transfers();
        Quietly(operation);
        return Transfers();
    }
};

TEST_F(HdmiTx, BlockWritesStepThroughTheRegistersAndBlockReadsDrainOne) {
    const std::array<std::uint8_t, 3> bytes{1, 2, 3};
    std::array<std::uint8_t, 3> back{};
    sim::TxRegister(sim::Page::Hdmi2, 0x30) = 0x77;
    sim::FailRequests(5, 1);
    EXPECT_EQ(Of([&] {
                  HDTX_MultiWrite(HDTX_SLV1, 0xFE, bytes.data(), 3);
                  HDTX_MultiRead(HDTX_SLV1, 0x30, back.data(), 3);
              }),
              "hdmi2 w fe 01\nhdmi2 w ff 02\nhdmi2 w 00 03\nhdmi2 r 30 77\nhdmi2 r 30 00 failed\nhdmi2 r 30 77\n");
    EXPECT_EQ(back, (std::array<std::uint8_t, 3>{0x77, 0xFF, 0x77}));
}

TEST_F(HdmiTx, FieldsAreTrusted) {
    struct Case {
        std::uint8_t old, pos, width, data, expected;
    };
    for (const Case& c : {
             Case{0x0F, 4, 2, 0x3, 0x3F},
             Case{0xFF, 4, 2, 0x0, 0xCF},
             Case{0x5A, 3, 0, 0x7, 0x5A}, // rewritten unchanged
             Case{0x12, 0, 8, 0xEE, 0xEE},
             Case{0x00, 6, 4, 0xF, 0xC0}, // bits above bit 7 are lost
             Case{0x5A, 255, 255, 0xFF, 0x5A},
         }) {
        sim::TxRegister(sim::Page::Hdmi2, 0x10) = c.old;
        Quietly([&] { HDTX_RegField(HDTX_SLV1, 0x10, c.pos, c.width, c.data); });
        EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi2, 0x10), c.expected);
    }
}

TEST_F(HdmiTx, PowerResetAndModeOperations) {
    sim::TxRegister(sim::Page::Hdmi1, 0x08) = 0x37;
    sim::TxRegister(sim::Page::Hdmi1, 0x48) = 0x13;
    sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0xFE;
    sim::TxRegister(sim::Page::Hdmi2, 0x3D) = 0xA0;

    EXPECT_EQ(Of([] { HDMITXTMDSPowerDown(2); }), "hdmi1 r 08 37\nhdmi1 w 08 36\n");
    EXPECT_EQ(Of([] { HDMITXTMDSPowerDown(0); }), "hdmi1 r 08 36\nhdmi1 w 08 37\n");

    EXPECT_EQ(Of([] { EXPECT_EQ(IsTXInHDMIMode(), 0); }), "hdmi2 r 2f fe\n");
    EXPECT_EQ(Of([] { TX_HDMIMode(4); }), "hdmi2 r 2f fe\nhdmi2 w 2f ff\n");
    EXPECT_EQ(Of([] { EXPECT_EQ(IsTXInHDMIMode(), 1); }), "hdmi2 r 2f ff\n");
    EXPECT_EQ(Of([] { TX_HDMIMode(0); }), "hdmi2 r 2f ff\nhdmi2 w 2f fe\n");

    EXPECT_EQ(Of([] { SW_ResetHDMITX(); }), "hdmi1 w 05 03\nhdmi1 w 05 00\n");
    EXPECT_EQ(Of([] { ReleaseHDMITX_SWReset(1); }), "hdmi1 w 05 00\n");

    // Only exactly 1 powers everything down.
    EXPECT_EQ(Of([] { HDMITXTotalPowerDownEnable(2); }),
              "hdmi1 r 08 37\nhdmi1 w 08 37\nhdmi2 r 3d a0\nhdmi2 w 3d a7\n");
    EXPECT_EQ(Of([] { HDMITXTotalPowerDownEnable(1); }),
              "hdmi1 r 08 37\nhdmi1 w 08 36\nhdmi2 r 3d a7\nhdmi2 w 3d a0\n");
    EXPECT_EQ(Of([] { WakeUpHDMITX(); }), "hdmi1 r 08 36\nhdmi1 w 08 37\nhdmi2 r 3d a0\nhdmi2 w 3d a1\n");

    EXPECT_EQ(Of([] { SetIClk(0x40); }), "hdmi1 r 48 13\nhdmi1 w 48 43\n");
    EXPECT_EQ(Of([] { SetIClk(0); }), "hdmi1 r 48 43\nhdmi1 w 48 03\n");
    EXPECT_EQ(Of([] { SetMCLK(0x5A); }), "hdmi2 w 02 5a\n");

    DefaultICLKEDGE = 0;
    EXPECT_EQ(Of([] { SetInputClockEdge(); }), "hdmi1 r 08 37\nhdmi1 w 08 35\n");
    DefaultICLKEDGE = 1;
    EXPECT_EQ(Of([] { SetInputClockEdge(); }), "hdmi1 r 08 35\nhdmi1 w 08 37\n");
    DefaultICLKEDGE = 0;

    DefaultDVImode = 3;
    EXPECT_EQ(Of([] { EXPECT_EQ(IsNeedToForceInDVIMode(), 3); }), "");
    DefaultDVImode = 0;
}

TEST_F(HdmiTx, AnOperationAfterAFailedReadChangesItsBitInAllOnes) {
    sim::FailRequests(1, 1);
    EXPECT_EQ(Of([] { HDMITXTMDSPowerDown(1); }), "hdmi1 r 08 00 failed\nhdmi1 w 08 fe\n");
}

} // namespace
