// Access to the chips: the device node, its requests, blocks of registers, fields of registers.

#include "app/transfer.h"
#include "tests/board.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

using Access = Board;

TEST_F(Access, FailedAccessReturnsMinusOne) {
    // An address that selects no register page gives -1 without a request.
    EXPECT_EQ(write_hdmi(0x73, 1, 2), -1);
    EXPECT_EQ(read_hdmi(0xDC, 1), -1);
    EXPECT_EQ(Journal(), "");
    for (const int result : {1, -1}) {
        Quietly([result] {
            for (const int returned : {write_kova(s_fd, 1, 0, 0), write_hdmi(0x7A, 1, 1), read_hdmi(0x7A, 1)}) {
                EXPECT_EQ(returned, result);
            }
            EXPECT_EQ(read_kova(s_fd, 4, 0, 0), result == 1 ? 0x8300 : -1); // the register's high byte comes first
        });
        sim::FailEvery(1);
    }
}

TEST_F(Access, FailedPausesAreReportedOnce) {
    for (const auto transfer : {+[] { return write_kova(s_fd, 4, 0, 0); }, +[] { return read_kova(s_fd, 4, 0, 0); }}) {
        const auto twice = [transfer] {
            sim::FailPauses();
            const std::int32_t first = transfer();
            std::_Exit(first > 0 && transfer() == first ? 0 : 1);
        };
        EXPECT_EXIT(twice(), testing::ExitedWithCode(0),
                    "^A pause failed, so transfers are made without pauses: [^\n]+\n$");
    }
}

TEST_F(Access, NodeNeverGetsDescriptorOfStandardStream) {
    const auto reopen = [] {
        close_kova();
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            close(stream);
        }
        // Standard input is open again, on an empty file.
        const bool separate = open_kova() > STDERR_FILENO && read(STDIN_FILENO, nullptr, 0) == 0;
        const int node = s_fd;
        close_kova();
        std::_Exit(separate && fcntl(node, F_GETFD) == -1 ? 0 : 1);
    };
    EXPECT_EXIT(reopen(), testing::ExitedWithCode(0), "");
}

TEST_F(Access, BlocksContinueAfterFailure) {
    const std::array<std::uint16_t, 3> words{0x1122, 0x3344, 0x5566};
    const std::array<std::uint8_t, 3> bytes{1, 2, 3};
    std::array<std::uint16_t, 3> wordsBack{};
    std::array<std::uint8_t, 3> bytesBack{};
    sim::TxRegister(sim::Page::Hdmi2, 0x30) = 0x77;
    sim::FailEvery(2);
    Quietly([&] {
        EXPECT_EQ(KOVA_MultiWrite(0xFFFE, words.data(), 6), 0);
        EXPECT_EQ(KOVA_MultiRead(0xFFFE, wordsBack.data(), 6), 0);
        HDTX_MultiWrite(HDTX_SLV1, 0xFE, bytes.data(), 3);
        HDTX_MultiRead(HDTX_SLV1, 0x30, bytesBack.data(), 3); // all bytes come from one register
    });
    EXPECT_EQ(Packed(Transfers()),
              "kova w fffe:1122 3344 failed 0000:5566 kova r fffe:0000 failed 0000 0000:0000 failed "
              "hdmi2 w fe:01 02 failed 00:03\n    hdmi2 r 30:00 failed 30:77 30:00 failed");
    EXPECT_EQ(wordsBack, (std::array<std::uint16_t, 3>{0xFFFF, 0x0000, 0xFFFF}));
    EXPECT_EQ(bytesBack, (std::array<std::uint8_t, 3>{0xFF, 0x77, 0xFF}));
}

template <typename Value>
struct Case {
    Value old, pos, width, data, expected;
};

TEST_F(Access, FieldsKeepOtherBits) {
    using Kova = Case<std::uint16_t>;
    for (const Kova& c : {Kova{0x0000, 9, 7, 0x007F, 0xFE00}, Kova{0xFFFF, 9, 7, 0x0000, 0x01FF},
                          Kova{0x1234, 0, 16, 0xBEEF, 0xBEEF}, Kova{0x0001, 15, 1, 0x0001, 0x8001},
                          Kova{0xA5A5, 4, 4, 0x001F, 0xA5F5}}) { // bits above the width are ignored
        sim::KovaRegister(0x400) = c.old;
        EXPECT_EQ(KOVA_RegField(0x400, c.pos, c.width, c.data), 0);
        EXPECT_EQ(sim::KovaRegister(0x400), c.expected);
    }
    // The position and the width of a transmitter field are not checked. With a width of 0 the register is rewritten
    // unchanged. Bits above bit 7 are lost.
    using Tx = Case<std::uint8_t>;
    for (const Tx& c : {Tx{0x0F, 4, 2, 0x3, 0x3F}, Tx{0xFF, 4, 2, 0x0, 0xCF}, Tx{0x5A, 3, 0, 0x7, 0x5A},
                        Tx{0x12, 0, 8, 0xEE, 0xEE}, Tx{0x00, 6, 4, 0xF, 0xC0}, Tx{0x5A, 255, 255, 0xFF, 0x5A}}) {
        sim::TxRegister(sim::Page::Hdmi2, 0x10) = c.old;
        Quietly([&] { EXPECT_EQ(HDTX_RegField(HDTX_SLV1, 0x10, c.pos, c.width, c.data), 0); });
        EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi2, 0x10), c.expected);
    }
    Transfers();
    KOVA_RegField(0x400, 0, 1, 0);
    sim::FailRequests(1, 1); // after a failed read all other bits are written as 1
    Quietly([] { EXPECT_EQ(KOVA_RegField(0x400, 0, 4, 0), 0); });
    EXPECT_EQ(Transfers(), "kova r 0400 a5f5\nkova w 0400 a5f4\nkova r 0400 0000 failed\nkova w 0400 fff0\n");
    // A field that is not inside a register of the video processor makes no transfer.
    for (const auto& [pos, width] : {std::pair{16, 1}, {0, 0}, {0, 17}, {10, 7}, {65535, 65535}}) {
        EXPECT_EQ(KOVA_RegField(0x400, std::uint16_t(pos), std::uint16_t(width), 0), 3);
    }
    EXPECT_EQ(Journal(), "");
}

} // namespace
