#include "tests/board.h"

namespace {

using Device = Board;

TEST_F(Device, VideoProcessorTransfersPauseFirstAndKeepTheHighByteInFront) {
    EXPECT_EQ(write_kova(s_fd, 0x4C4, 0x12, 0x34), 1);
    EXPECT_EQ(read_kova(s_fd, 0x4C4, 0, 0), 0x3412);
    EXPECT_EQ(Journal(), "pause 100\nkova w 04c4 1234\npause 100\nkova r 04c4 1234\n");
}

TEST_F(Device, TransmitterTransfersTraceWithoutAPause) {
    const Printed printed = Capture([] {
        EXPECT_EQ(write_hdmi(0x72, 0xAB, 0xCD), 1);
        EXPECT_EQ(read_hdmi(0x72, 0xAB), 0xCD);
        EXPECT_EQ(write_hdmi(0x7A, 0x2F, 0x01), 1);
        EXPECT_EQ(read_hdmi(0x7A, 0x2F), 0x01);
    });
    EXPECT_EQ(Journal(), "hdmi1 w ab cd\nhdmi1 r ab cd\nhdmi2 w 2f 01\nhdmi2 r 2f 01\n");
    EXPECT_EQ(printed.out, "KOVA_310_WRITE_HDTX_SLV0 write kova.addr=(ab), kova.data[0]=(cd), kova.data[1]=(0)\n"
                           "KOVA_310_READ_HDTX_SLV0  read kova.addr=(ab), kova.data[0]=(cd), kova.data[1]=(0)\n"
                           "KOVA_310_WRITE_HDTX_SLV1 write kova.addr=(2f), kova.data[0]=(1), kova.data[1]=(0)\n"
                           "KOVA_310_READ_HDTX_SLV1  read kova.addr=(2f), kova.data[0]=(1), kova.data[1]=(0)\n");
}

TEST_F(Device, AFailedRequestIsReportedOnceAndNotRepeated) {
    sim::FailEvery(1);
    const Printed printed = Capture([] {
        EXPECT_EQ(write_kova(s_fd, 1, 2, 3), -1);
        EXPECT_EQ(read_kova(s_fd, 1, 0, 0), -1);
        EXPECT_EQ(write_hdmi(0x72, 1, 2), -1);
        EXPECT_EQ(read_hdmi(0x72, 1), -1);
        EXPECT_EQ(write_hdmi(0x7A, 1, 2), -1);
        EXPECT_EQ(read_hdmi(0x7A, 1), -1);
    });
    EXPECT_EQ(Transfers(), "kova w 0001 0203 failed\nkova r 0001 0000 failed\nhdmi1 w 01 02 failed\n"
                           "hdmi1 r 01 00 failed\nhdmi2 w 01 02 failed\nhdmi2 r 01 00 failed\n");
    EXPECT_EQ(printed.out, "kova write error \nkova read error \n"
                           "KOVA_310_WRITE_HDTX_SLV0 write error \nKOVA_310_READ_HDTX_SLV0  read  error \n"
                           "KOVA_310_WRITE_HDTX_SLV1 write error \nKOVA_310_READ_HDTX_SLV1  read  error \n");
}

TEST_F(Device, AnUnknownTransmitterPageMakesNoRequest) {
    const Printed printed = Capture([] {
        EXPECT_EQ(write_hdmi(0x73, 1, 2), -1);
        EXPECT_EQ(read_hdmi(0xDC, 1), -1);
    });
    EXPECT_EQ(Journal(), "");
    EXPECT_EQ(printed.out, "");
}

} // namespace
