#include "app/transfer.h"
#include "tests/board.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

using Device = Board;

TEST_F(Device, AFailedRequestGivesMinusOneAndSoDoesAnUnknownPageWithoutOne) {
    EXPECT_EQ(write_hdmi(0x73, 1, 2) + read_hdmi(0xDC, 1), -2);
    EXPECT_EQ(Journal(), "");
    for (const int result : {1, -1}) {
        Quietly([result] {
            for (const int came : {write_kova(s_fd, 1, 0, 0), write_hdmi(0x7A, 1, 1), read_hdmi(0x7A, 1)}) {
                EXPECT_EQ(came, result);
            }
            EXPECT_EQ(read_kova(s_fd, 4, 0, 0), result == 1 ? 0x8300 : -1); // the high byte in front
        });
        sim::FailEvery(1);
    }
}

TEST_F(Device, PausesThatFailAreReportedOnce) {
    for (const auto transfer : {+[] { return write_kova(s_fd, 4, 0, 0); }, +[] { return read_kova(s_fd, 4, 0, 0); }}) {
        const auto twice = [transfer] {
            sim::FailPauses();
            const std::int32_t first = transfer();
            std::_Exit(first > 0 && transfer() == first ? 0 : 1);
        };
        EXPECT_EXIT(twice(), testing::ExitedWithCode(0), "^Pause failed, nothing is waited for: [^\n]+\n$");
    }
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
