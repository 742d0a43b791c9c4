#include "app/shell.h"
#include "tests/board.h"

#include <csignal>
#include <cstring>
#include <unistd.h>

namespace {

class Shell : public Board {
protected:
    /// Executes one line. What it does on the board stands in the journal.
    static Printed Execute(const char* line) {
        std::strcpy(input_command.data(), line);
        return Capture(CommandProcess);
    }
};

TEST_F(Shell, NumbersAreLowerCaseHexadecimalOfAtMostFourCharacters) {
    for (const auto& [text, value] : {std::pair{"1f", 0x1F},
                                      {"1F", 0x10},
                                      {"0x10", 0x10},
                                      {"12345", 0},
                                      {"ffff", 0xFFFF},
                                      {"9c0a", 0x9C0A},
                                      {"", 0},
                                      {"g", 0},
                                      {"1-2", 0x102},
                                      {"`/:g", 0}}) {
        EXPECT_EQ(hex2dec(text), value) << text;
    }
}

TEST_F(Shell, ALineActsByItsWordsAndTheirNumber) {
    constexpr const char* kZeroEcho = "\n\nREG = Addr=[0x0000], ReadData=[0x0000]\n";
    sim::KovaRegister(0x4C4) = 0xBEEF;
    struct Case {
        const char *line, *transfers, *echo;
    };
    for (const Case& c : {
             Case{"r kova 4c4", "kova r 04c4 beef\n", "\n\nREG = Addr=[0x04c4], ReadData=[0xbeef]\n"},
             Case{"r kova 4C4", "kova r 0404 0000\n", "\n\nREG = Addr=[0x0404], ReadData=[0x0000]\n"},
             Case{"  r   kova   4c4  ", "kova r 04c4 beef\n", "\n\nREG = Addr=[0x04c4], ReadData=[0xbeef]\n"},
             Case{"w kova 410 12", "kova w 0410 0012\n", "\n\nREG = Addr=[0x0410], ReadData=[0x0012]\n"},
             // Keywords count wherever they stand, numbers by position.
             Case{"kova r 10", "", "\n\nREG = Addr=[0x0010], ReadData=[0x0000]\n"},
             Case{"r 10 kova", "kova r 000a 0000\n", "\n\nREG = Addr=[0x000a], ReadData=[0x0000]\n"},
             Case{"r x 10", "", "\n\nREG = Addr=[0x0010], ReadData=[0x0000]\n"},
             Case{"d hdmi1", "", kZeroEcho},
             Case{"d d", "", kZeroEcho},
             Case{"r w d", "", "\n\nREG = Addr=[0x000d], ReadData=[0x0000]\n"}, // the first command word counts
             // Wrong numbers of words, wrong case, tabs: nothing.
             Case{"r kova", "", ""},
             Case{"r kova 4c4 1", "", ""},
             Case{"w hdmi1 10", "", ""},
             Case{"d", "", ""},
             Case{"mru x", "", ""},
             Case{"R kova 4c4", "", ""},
             Case{"r\tkova\t4c4", "", ""},
             Case{"", "", ""},
             Case{"   ", "", ""},
         }) {
        const Printed printed = Execute(c.line);
        EXPECT_EQ(Transfers(), c.transfers) << c.line;
        EXPECT_EQ(printed.out, c.echo) << c.line;
    }
}

TEST_F(Shell, AnInterruptLeavesAtOnce) {
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO); // which is what is looked at
            QuitOnInterrupt();
            raise(SIGINT);
        },
        testing::ExitedWithCode(0), "^\nProgram Terminated.. \n$");
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_IGN);
            QuitOnInterrupt();
            raise(SIGINT);
            _exit(7);
        },
        testing::ExitedWithCode(7), "");
}

TEST_F(Shell, ADumpReadsEveryRegisterOnce) {
    Execute("d kova");
    std::string expected;
    for (unsigned addr = 0; addr <= 0x5BF; ++addr) {
        if (addr <= 0x89 || addr >= 0x400) {
            std::array<char, 40> line{};
            std::snprintf(line.data(), line.size(), "pause 100\nkova r %04x %04x\n", addr, addr == 4 ? 0x83U : 0U);
            expected += line.data();
        }
    }
    EXPECT_EQ(Journal(), expected);
}

} // namespace
