#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "tests/board.h"

namespace {

using Sim = Board;

std::string ReadFifo(unsigned count) {
    std::string bytes;
    Quietly([&] {
        for (unsigned i = 0; i < count; ++i) {
            bytes += static_cast<char>(HDTX_RegRead(HDTX_SLV0, 0xF4));
        }
    });
    return bytes;
}

// Address, segment, offset, count, command: as the DDC master's registers 0xED to 0xF3 want them.
void StartDdc(std::uint8_t address, std::uint8_t segment, std::uint8_t offset, std::uint8_t count,
              std::uint8_t command) {
    const std::array<std::uint8_t, 7> request{address, segment, offset, count, 0, 0, command};
    Quietly([&] { HDTX_MultiWrite(HDTX_SLV0, 0xED, request.data(), request.size()); });
}

std::uint8_t DdcStatus() {
    std::uint8_t status = 0;
    Quietly([&] { status = HDTX_RegRead(HDTX_SLV0, 0xF2); });
    return status;
}

TEST_F(Sim, TheDdcMasterReadsTheMonitorBySegmentAndOffset) {
    std::array<std::uint8_t, 3 * 128> edid{};
    edid[0x7E] = 'a';
    edid[0x7F] = 'b';
    edid[0x80] = 'c';
    edid[0x100] = 'd';
    sim::Plug(edid);
    StartDdc(0xA0, 0, 0x7E, 3, 0x02);
    EXPECT_EQ(DdcStatus(), 0);
    EXPECT_EQ(ReadFifo(4), std::string("abc\0", 4)); // an empty FIFO gives 0
    StartDdc(0xA0, 1, 0, 1, 0x04);
    EXPECT_EQ(ReadFifo(1), "d");
    StartDdc(0xA0, 1, 0x80, 1, 0x04);
    EXPECT_EQ(ReadFifo(1), "\xFF"); // beyond the dump
    StartDdc(0xA0, 1, 0x7E, 1, 0x02);
    EXPECT_EQ(ReadFifo(1), "a"); // a read without the segment pointer
}

TEST_F(Sim, TheDdcMasterIsBusyFailsAndFindsNobody) {
    sim::Plug(sim::kBuiltInEdid);
    sim::SetDdcBusy(2);
    StartDdc(0xA0, 0, 0, 8, 0x02);
    EXPECT_EQ(DdcStatus(), 0x10);
    EXPECT_EQ(DdcStatus(), 0x10);
    EXPECT_EQ(DdcStatus(), 0x00);
    sim::SetDdcBusy(0);
    sim::SetDdcError(0x40);
    StartDdc(0xA0, 0, 0, 8, 0x02);
    EXPECT_EQ(DdcStatus(), 0x40);
    sim::SetDdcError(0);
    StartDdc(0xA2, 0, 0, 8, 0x02);
    EXPECT_EQ(DdcStatus(), 0x20);
    sim::Unplug();
    StartDdc(0xA0, 0, 0, 8, 0x02);
    EXPECT_EQ(DdcStatus(), 0x20);
    EXPECT_EQ(ReadFifo(1), std::string(1, '\0'));
}

TEST_F(Sim, ThePlugRaisesTheInterruptOfBothChipsUntilItIsAcknowledged) {
    const auto pending = [] {
        std::uint16_t status = 0;
        KOVA_RegRead(0x10, &status);
        return status;
    };
    EXPECT_EQ(pending(), 0);
    sim::Plug(sim::kBuiltInEdid);
    EXPECT_EQ(pending(), 0x80);
    Quietly([] {
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x09), 0x06);
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x70), 1);
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x71), 0x60);
        HDTX_RegWrite(HDTX_SLV0, 0x71, 0x40);
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x71), 0x20);
        HDTX_RegWrite(HDTX_SLV0, 0x75, 0x40); // what is left is not enabled
        EXPECT_EQ(HDTX_RegRead(HDTX_SLV0, 0x70), 0);
    });
    EXPECT_EQ(pending(), 0);
}

} // namespace
