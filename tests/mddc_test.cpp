#include "edid/CRC16.h"
#include "edid/MDDC.h"
#include "tests/board.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <string_view>

namespace {

using Mddc = Board;

std::size_t Count(const std::string& text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST_F(Mddc, AReadGoesThroughTheSegmentThatIsSelected) {
    std::array<std::uint8_t, 258> edid{};
    edid[0x10] = 0xAA;
    edid[0x11] = 0xBB;
    edid[0x101] = 0xCC;
    sim::Plug(edid);
    std::array<std::uint8_t, 2> bytes{};
    Transfers();
    Quietly([&] { EXPECT_EQ(BlockReadEDID(2, 0x10, bytes.data()), 0); });
    EXPECT_EQ(Transfers(), "hdmi1 r ee 00\nhdmi1 w f3 09\n"
                           "hdmi1 w ed a0\nhdmi1 w ee 00\nhdmi1 w ef 10\nhdmi1 w f0 02\nhdmi1 w f1 00\nhdmi1 w f2 00\n"
                           "hdmi1 w f3 02\nhdmi1 r f2 00\nhdmi1 r f4 aa\nhdmi1 r f4 bb\nhdmi1 r f2 00\n");

    sim::TxRegister(sim::Page::Hdmi1, 0xEE) = 1;
    Quietly([&] { EXPECT_EQ(BlockReadEDID(1, 0x01, bytes.data()), 0); });
    EXPECT_EQ(Transfers(), "hdmi1 r ee 01\nhdmi1 w f3 09\n"
                           "hdmi1 w ed a0\nhdmi1 w ee 01\nhdmi1 w ef 01\nhdmi1 w f0 01\nhdmi1 w f1 00\nhdmi1 w f2 00\n"
                           "hdmi1 w f3 04\nhdmi1 r f2 00\nhdmi1 r f4 cc\nhdmi1 r f2 00\n");

    Quietly([&] { EXPECT_EQ(BlockWriteEDID(2, 0x20, bytes.data()), 0); });
    EXPECT_EQ(Transfers(), "hdmi1 w f3 09\n"
                           "hdmi1 w ed a0\nhdmi1 w ee 00\nhdmi1 w ef 20\nhdmi1 w f0 02\nhdmi1 w f1 00\nhdmi1 w f2 00\n"
                           "hdmi1 w f3 06\nhdmi1 w f4 cc\nhdmi1 w f5 bb\nhdmi1 r f2 00\nhdmi1 r f2 00\n");
}

TEST_F(Mddc, PollsAreBoundedAndErrorsAreAborted) {
    constexpr std::uint32_t kForever = 1000;
    struct Case {
        std::uint8_t count;
        std::uint32_t busy;
        std::uint8_t error;
        bool requestsFail;
        // expected
        std::uint8_t result;
        std::size_t statusReads; // the final one included
        bool aborted, filled;
    };
    // clang-format off
    for (const Case& c : {
             //    count  busy      error  failing   result  reads  aborted  filled
             Case{ 8,     0,        0x00,  false,    0,      2,     false,   true},
             Case{ 8,     18,       0x00,  false,    0,      20,    false,   true},
             Case{ 8,     19,       0x00,  false,    0,      20,    true,    false}, // late by one read
             Case{ 8,     kForever, 0x00,  false,    0,      20,    true,    false},
             Case{ 1,     kForever, 0x00,  false,    0,      13,    true,    false},
             Case{ 0,     kForever, 0x00,  false,    0,      12,    true,    false},
             Case{ 246,   kForever, 0x00,  false,    0,      2,     true,    false}, // the budget has 8 bits
             Case{ 8,     0,        0x48,  false,    3,      2,     true,    true},
             Case{ 8,     0,        0x28,  false,    4,      2,     true,    true},
             Case{ 8,     3,        0x08,  false,    5,      5,     true,    true},
             Case{ 8,     0,        0x00,  true,     3,      20,    true,    false},
         }) {
        // clang-format on
        SCOPED_TRACE(testing::Message() << "count " << +c.count << " busy " << c.busy << " error " << +c.error);
        sim::Reset();
        sim::KeepJournal(true);
        sim::Plug(sim::kBuiltInEdid);
        sim::SetDdcBusy(c.busy);
        sim::SetDdcError(c.error);
        std::array<std::uint8_t, 256> bytes{};
        bytes.fill(0x77);
        sim::FailEvery(c.requestsFail ? 1 : 0);
        Quietly([&] { EXPECT_EQ(BlockReadEDID(c.count, 0, bytes.data()), c.result); });
        const std::string journal = Transfers();
        EXPECT_EQ(Count(journal, "hdmi1 r f2"), c.statusReads);
        EXPECT_EQ(bytes[0] != 0x77, c.filled);
        const std::string abort = c.requestsFail ? "hdmi1 w f3 0f failed\nhdmi1 w f3 0a failed\nhdmi1 w ec 00 failed\n"
                                                 : "hdmi1 w f3 0f\nhdmi1 w f3 0a\nhdmi1 w ec 00\n";
        EXPECT_EQ(journal.ends_with(abort), c.aborted);
    }
}

TEST(Crc16, ItsCheckValues) {
    const auto crc = [](std::string_view text, std::uint16_t value = 0) {
        UpdateCRC16WithBlock(&value, static_cast<std::uint8_t>(text.size()),
                             reinterpret_cast<const std::uint8_t*>(text.data()));
        return value;
    };
    EXPECT_EQ(crc("123456789"), 0x0C73);
    EXPECT_EQ(crc("56789", crc("1234")), 0x0C73);
    EXPECT_EQ(crc({"\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00", 8}), 0x038E);
    EXPECT_EQ(crc("\x01"), 0x17CE);
    EXPECT_EQ(crc({"\0\0\0\0\0", 5}), 0);
    EXPECT_EQ(crc("", 0xABCD), 0xABCD);

    // No two bytes in the same place are taken for each other.
    std::array<char, 256> all{};
    std::iota(all.begin(), all.end(), '\0');
    std::set<std::uint16_t> values;
    std::transform(all.begin(), all.end(), std::inserter(values, values.end()), [&](const char& byte) {
        return crc({&byte, 1}, 0x1234);
    });
    EXPECT_EQ(values.size(), all.size());
}

} // namespace
