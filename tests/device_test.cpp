#include "app/transfer.h"
#include "tests/board.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

using Device = Board;

TEST_F(Device, AnUnknownPageMakesNoRequest) {
    EXPECT_EQ(write_hdmi(0x73, 1, 2) + read_hdmi(0xDC, 1), -2);
    EXPECT_EQ(Journal(), "");
}

TEST_F(Device, PausesThatFailAreReportedOnce) {
    const auto transfer = [] {
        sim::FailPauses();
        const bool went = write_kova(s_fd, 0x4C4, 0x12, 0x34) == 1 && read_kova(s_fd, 0x4C4, 0, 0) == 0x3412;
        std::_Exit(went ? 0 : 1);
    };
    EXPECT_EXIT(transfer(), testing::ExitedWithCode(0), "^Pause failed, nothing is waited for: [^\n]+\n$");
}

TEST_F(Device, TheNodeIsNoStandardStreamEvenWhereTheyAreClosed) {
    const auto reopen = [] {
        close_kova();
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            close(stream);
        }
        const bool apart = open_kova() > STDERR_FILENO && read(STDIN_FILENO, nullptr, 0) == 0; // taken, and at its end
        const int node = s_fd;
        close_kova();
        std::_Exit(apart && fcntl(node, F_GETFD) == -1 ? 0 : 1);
    };
    EXPECT_EXIT(reopen(), testing::ExitedWithCode(0), "");
}

} // namespace
