#include "tests/board.h"

#include <unistd.h>

namespace {

using Device = Board;

TEST_F(Device, AFailedRequestGivesMinusOneAndSoDoesAnUnknownPage) {
    Quietly([] {
        EXPECT_EQ(write_kova(s_fd, 0x4C4, 0x12, 0x34), 1);
        EXPECT_EQ(read_kova(s_fd, 0x4C4, 0, 0), 0x3412); // the high byte in front
        EXPECT_EQ(write_hdmi(0x7A, 0x2F, 0x01), 1);
        EXPECT_EQ(read_hdmi(0x7A, 0x2F), 0x01);
        sim::FailEvery(1);
        EXPECT_EQ(write_kova(s_fd, 1, 2, 3), -1);
        EXPECT_EQ(read_kova(s_fd, 1, 0, 0), -1);
        EXPECT_EQ(write_hdmi(0x72, 1, 2), -1);
        EXPECT_EQ(read_hdmi(0x7A, 1), -1);
        Journal();
        EXPECT_EQ(write_hdmi(0x73, 1, 2), -1);
        EXPECT_EQ(read_hdmi(0xDC, 1), -1);
    });
    EXPECT_EQ(Journal(), ""); // an unknown page makes no request
}

TEST_F(Device, TheNodeIsNoStandardStreamEvenWhereOneIsClosed) {
    close_kova();
    close(STDIN_FILENO);
    EXPECT_GT(open_kova(), STDERR_FILENO);
    EXPECT_EQ(read(STDIN_FILENO, nullptr, 0), 0); // taken, and at its end
}

} // namespace
