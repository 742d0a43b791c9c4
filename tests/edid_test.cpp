#include "edid/EDIDParse.h"
#include "tests/board.h"
#include "tests/edid_builder.h"

#include <algorithm>
#include <functional>
#include <random>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using edid::Base, edid::Block, edid::BlockMap, edid::Bytes, edid::Cea, edid::Hdmi, edid::Join, edid::Other, edid::Video;

// The DDC reads of a parse, each as " segment:offset+count". A read that begins where the read before ended is only
// "+count".
std::string reads;
unsigned endOfRead;
std::function<void(std::uint32_t)> atTransfer;

void NoteDdcTransfer(std::uint32_t number) {
    const auto reg = [](std::uint8_t r) -> unsigned { return sim::TxRegister(sim::Page::Hdmi1, r); };
    const unsigned segment = reg(0xF3) == 0x04 ? reg(0xEE) : 0;
    if (reads.empty() || endOfRead != (segment << 8 | reg(0xEF))) {
        reads += " " + std::to_string(segment) + ":" + std::to_string(reg(0xEF));
    }
    reads += "+" + std::to_string(reg(0xF0));
    endOfRead = segment << 8 | ((reg(0xEF) + reg(0xF0)) & 0xFF);
    atTransfer(number);
}

/// Removes the line numbers of the source, which stand before a bracket.
std::string HideLineNumbers(std::string text) {
    for (std::size_t end = text.find(']'); end != std::string::npos; end = text.find(']', end + 1)) {
        const std::size_t start = text.find_last_not_of("0123456789", end - 1) + 1;
        text.erase(start, end - start);
        end = start;
    }
    return text;
}

struct Parsed {
    EDIDParseResult record{0xFF, 0xFF, 0xFFFF};
    std::size_t reads = 0;
    std::string report, outcome;
};

Parsed Parse(
    std::span<const std::uint8_t> edid, const std::function<void(std::uint32_t)>& hook = [](auto) {}) {
    sim::Reset();
    sim::KeepJournal(true);
    sim::Plug(edid);
    sim::SetDdcHook(NoteDdcTransfer);
    atTransfer = hook;
    reads.clear();
    CEAOnFisrtPage = 1;                                                        // the value that a failed parse leaves
    gbExtensionBlockExist = OutVideoMode = gbNativeVIC = gbNativeVICtemp = 99; // 99 in the outcome: not written
    Parsed parsed;
    std::uint8_t transfer = 0xFF;
    parsed.report = HideLineNumbers(Capture([&] { transfer = ParseEDID(&parsed.record); }).err);
    parsed.reads = static_cast<std::size_t>(std::count(reads.begin(), reads.end(), '+'));
    std::array<char, 160> line{};
    std::snprintf(line.data(), line.size(),
                  "transfer %d, error %2d, mode %d, extension %2d, colours %2d, native %2d %2d; check value %04X, "
                  "segment %d, %3zu reads\n",
                  transfer, parsed.record.ErrCode, parsed.record.OutMode, gbExtensionBlockExist, OutVideoMode,
                  gbNativeVIC, gbNativeVICtemp, unsigned{parsed.record.CRC16}, sim::TxRegister(sim::Page::Hdmi1, 0xEE),
                  parsed.reads);
    parsed.outcome = line.data();
    return parsed;
}

using Edid = Board;

// clang-format off
TEST_F(Edid, ReportsTimingsOfDviMonitor) {
    // Descriptor 0 is not a detailed timing. Descriptor 1 is interlaced. Active + blanking: H 1281 + 370, V 719 + 30.
    // Sync offset + width: H 111 + 300, V 37 + 50. Size 530 x 300 mm, borders 1 and 2. Bytes 2 and 3 of the descriptor
    // are read and added to the CRC twice.
    const Bytes timing{1, 29, 1, 0x72, 0x51, 0xCF, 30, 0x20, 111, 0x2C, 0x52, 0x1B, 0x12, 0x2C, 0x21, 1, 2, 0xE0};
    Base base{.established = {0xA1, 0x11, 0xFF},
              .standard = {0x81, 0xC0, 1, 1, 0x01, 0x40, 0xFF, 0xBF, 1, 2, 1, 1, 1, 1, 1, 1},
              .descriptors = Join({{0, 0, 0, 0x10, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, timing})};
    const Parsed parsed = Parse(base.Build());
    log << parsed.outcome << reads << '\n' << parsed.report << '\n';
    base = {.established = {0x5E, 0xEE, 0}}; // the other established timings
    log << Parse(base.Build()).report << '\n' << Parse(Bytes{1, 2, 3, 4, 5, 6, 7, 0xF8}).report; // not an EDID header
}

TEST_F(Edid, ReportsCeaBlockBehindBlockMap) {
    const Bytes audio{0x0F, 0x07, 0x05, 0x17, 0x48, 0x50, 0x40, 0x37, 0x01, 0x78, 0x00, 0x00, 0x18, 0,
                      0,    0x20, 0,    0,    0x28, 0,    0,    0x30, 0,    0,    0x38, 0,    0};
    const Bytes blocks = Join({Video({1, 2, 0x83, 4, 5, 0x86, 7, 8, 9, 10, 11, 12}), edid::Audio(audio),
                               edid::DataBlock(7, {5, 1}), edid::Speakers(0xFE), Hdmi()});
    const Parsed parsed = Parse(Join({Base{.extensions = 3}.Build(), BlockMap(), Cea(0xAA, blocks, edid::Hd720()),
                                      Other(0x40)}));
    EXPECT_EQ(gbMonCap, 0xAA);
    EXPECT_EQ(CEAOnFisrtPage, 0);
    EXPECT_TRUE(JournalWith("hdmi1 w ee").ends_with("hdmi1 w ee 01\nhdmi1 w ee 00\n"));

    std::array<std::uint8_t, 8> formats{};
    std::uint8_t count = 0, native = 0;
    std::uint16_t address = 0;
    gbNativeVIC = 0x90;
    const Printed said = Capture([&] {
        LoadSupportHDMIVideoOut(formats.data(), &count);
        EXPECT_EQ(GetEDIDNativeVIC(), 0x10);
    });
    log << parsed.outcome << reads << '\n' << parsed.report << HideLineNumbers(said.err) << '\n';
    EXPECT_EQ(Bytes(formats.data(), formats.data() + count), (Bytes{9, 10, 11, 12, 0, 0, 0, 0}));
    GetNativeVIC(&native);
    EXPECT_EQ(native, 0x90);
    EXPECT_TRUE(ReturnCECPhyAddr(&address) == 1 && address == 0x2143);
    gbExtensionBlockExist = 0;
    EXPECT_TRUE(ReturnCECPhyAddr(&address) == 0 && address == 0);
}

struct Case {
    std::string name;
    Bytes edid;
};

TEST_F(Edid, MonitorKindIsRecognised) {
    const Bytes hdmi = Cea(0x50, Hdmi()), plain = Cea(0x50, Video({1})), other = Other(0x40);
    const Bytes one = Base{.extensions = 1}.Build(), two = Join({Base{.extensions = 2}.Build(), BlockMap()});
    const auto with = [](Bytes edid, std::size_t at, std::uint8_t value) {
        edid[at] = value;
        return edid;
    };
    const std::vector<Case> cases{
        {"header, first byte", with(one, 0, 1)}, {"header, last byte", with(one, 7, 1)},
        {"checksum of block 0", with(one, 60, 1)}, {"checksum and version", with(one, 19, 2)},
        {"version 1.2", Base{.version = {1, 2}}.Build()}, {"version 2.3", Base{.version = {2, 3}}.Build()},
        {"version 1.4", Base{.version = {1, 4}}.Build()}, {"version 0.3", Base{.version = {0, 3}}.Build()},
        {"no timings", Base{.descriptors = {}}.Build()},
        {"checksum of block 1", with(Join({one, hdmi}), 200, 1)}, {"block 1 missing", one},
        {"1 extension, HDMI", Join({one, hdmi})}, {"HDMI, only RGB", Join({one, Cea(0x4F, Hdmi())})},
        {"no video formats", Join({one, Cea(0, Join({Video({}), Hdmi()}))})},
        {"8 video formats", Join({one, Cea(0, Join({Video(Bytes(8)), Hdmi()}))})},
        {"1 extension, no HDMI", Join({one, plain})},
        {"wrong HDMI OUI", Join({one, Cea(0, edid::DataBlock(3, {3, 12, 1}))})},
        {"HDMI, wrong block tag", Join({one, Block(Join({{0x40, 3, 10, 0}, Hdmi()}))})},
        {"block map missing", Join({Base{.extensions = 2}.Build(), hdmi, hdmi})},
        {"not a CEA block", Join({one, other})}, {"block map, no CEA", Join({two, other, other, other, other})},
        {"255 extensions", Join({Base{.extensions = 255}.Build(), BlockMap()})},
        {"CEA in block 3", Join({Base{.extensions = 3}.Build(), BlockMap(), other, hdmi})},
        {"CEA in block 4", Join({two, other, other, hdmi, other})}, {"block 2, not HDMI", Join({two, plain, other})},
        {"checksum of block 2", Join({two, with(hdmi, 50, 1), other})},
        {"checksum of block 3", Join({two, hdmi, with(other, 50, 1)})},
        // Without a vendor-specific block, bytes 1 to 3 of the segment are compared with the HDMI signature.
        {"signature by chance", Join({two, Cea(0, Bytes(8)), other})}};
    for (const Case& c : cases) {
        const std::string outcome = Parse(c.edid).outcome;
        log << c.name << std::string(22 - c.name.size(), ' ') << outcome;
        EXPECT_EQ(Parse(c.edid).outcome, outcome) << c.name;
    }
}

TEST_F(Edid, ParseHandlesAnyTimingsOffset) {
    const auto monitor = [](std::uint8_t timings, const Bytes& rest) {
        return Join({Base{.extensions = 1}.Build(), Block(Join({{2, 3, timings, 0}, rest}))});
    };
    const Bytes builtIn(sim::kBuiltInEdid.begin(), sim::kBuiltInEdid.end());
    const Bytes hdmi = Hdmi(), video = Video({1}), t = edid::Hd720(), timings = Join({t, t, t, t, t, t});
    const std::vector<Case> cases{ // each name: the content, then the offset of the timings
        {"built in", builtIn},
        // The search finds no HDMI block when the timings start at offset 4 or below.
        {"HDMI, 0", monitor(0, hdmi)}, {"HDMI, 1", monitor(1, hdmi)}, {"HDMI, 2", monitor(2, hdmi)},
        {"HDMI, 3", monitor(3, hdmi)}, {"HDMI, 4", monitor(4, hdmi)},
        // ParsingCEADataBlockCollection, called alone, finds no data block at offset 0 or 4. At offset 1, 2 or 3 it
        // reads the first data block.
        {"video, 0", monitor(0, video)}, {"video, 1", monitor(1, video)}, {"video, 2", monitor(2, video)},
        {"video, 3", monitor(3, video)}, {"video, 4", monitor(4, video)}, {"video, 5", monitor(5, video)},
        // An HDMI block that is longer than the collection ends the collection. The first timing begins in that block.
        {"HDMI, 6", monitor(6, hdmi)},
        // The search goes past the end of the block. At the end of the segment its address wraps to 0.
        {"nothing, 255", Join({Base{.extensions = 1, .descriptors = {}}.Build(), Block({2, 3, 255, 0})})},
        // Timings up to the end of the block and beyond. The parse ends after the first timing that begins above offset
        // 108.
        {"timings to 109", monitor(19, Join({hdmi, Bytes(9), timings}))},
        {"timings to 108 and then at 126", monitor(18, Join({hdmi, Bytes(8), timings}))}};
    for (const Case& c : cases) {
        log << c.name << ": " << Parse(c.edid).outcome << reads;
        reads.clear();
        std::uint16_t crc = 0;
        Quietly([&] { ParsingCEADataBlockCollection(&crc); });
        log << "\nthe collection alone:" << reads << '\n';
    }
}

// A failed read ends the parse, and a read that times out gives zeros. There are three exceptions. If a read of the
// search for the vendor-specific block fails, no block is found. If the read of the signature fails, the signature
// counts as right. The parse then ends only if the read of the physical address fails too. An EDID without the
// signature is a DVI monitor's: the timings of block 0 are parsed, even if the read of the physical address fails.
TEST_F(Edid, FailedReadEndsTheParse) {
    const std::vector<Case> cases{
        {"DVI", Base{}.Build()}, {"HDMI", Bytes(sim::kBuiltInEdid.begin(), sim::kBuiltInEdid.end())},
        {"behind a block map", Join({Base{.extensions = 2}.Build(), BlockMap(), Cea(0, Hdmi()), Other(0x40)})}};
    std::string last;
    const auto kind = [](const Parsed& parsed) { return parsed.outcome.substr(0, parsed.outcome.find(';')); };
    for (const Case& c : cases) {
        for (std::size_t k = Parse(c.edid).reads; k > 0; --k) {
            const Parsed parsed = Parse(c.edid, [k](std::uint32_t n) { sim::SetDdcError(n == k ? 0x20 : 0); });
            const Parsed late = Parse(c.edid, [k](std::uint32_t n) { sim::SetDdcBusy(n == k ? 1000 : 0); });
            const std::string line = c.name + ", late: " + kind(late) + "\n    failed: \""
                                   + parsed.report.substr(parsed.report.find_last_of("\r\n") + 1) + "\" " + kind(parsed);
            log << (line != last ? line + '\n' : ""); // the same line of several reads in a row is logged once
            last = line;
        }
    }
    sim::Reset(); // no monitor
    std::uint8_t offset = 0x84;
    std::uint16_t crc = 0;
    Quietly([&] { EXPECT_NE(GetCEA861BBlockTag(&crc, &offset), 0); });
    EXPECT_EQ(offset, 0x84);
}
// clang-format on

// A failed read of the segment register gives segment 0xFF, and the request selects that segment. Segment 0 is selected
// after the parse, whichever request of the parse fails.
TEST_F(Edid, SegmentZeroIsSelectedAgainAfterFailure) {
    EDIDParseResult result{};
    std::uint8_t transfer = 0xFF;
    const auto parse = [&] { transfer = ParseEDID(&result); };
    Parse(sim::kBuiltInEdid);
    const std::string journal = Transfers();
    for (auto n = static_cast<std::uint32_t>(std::count(journal.begin(), journal.end(), '\n')); n > 0; --n) {
        sim::FailRequests(n, 1);
        Quietly(parse);
        EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi1, 0xEE), 0) << n;
    }
    sim::FailRequests(0, 0);
    sim::TxRegister(sim::Page::Hdmi1, 0xEE) = 1;
    Quietly(parse);
    EXPECT_EQ(transfer, 3);
    Quietly(parse);
    EXPECT_EQ(transfer, 0);
    EXPECT_EQ(result.OutMode, EDID_OUTMODE_HDMI);
}

TEST(EdidTimings, RecognisesFormatsOfVideoProcessor) {
    for (std::uint8_t frmt = VIDOUT_720x480p60; frmt <= VIDOUT_1280x1024p75; ++frmt) {
        const SyncTiming& sync = defKOVAOutSync[frmt];
        const int frontPorch = sync[SYNC_H_TOTAL] - sync[SYNC_H_ACTIVE_END] + 1;
        const int vTotal = sync[SYNC_V_TOTAL] / (sync[SYNC_V2_ACTIVE_START] != 0 ? 2 : 1);
        for (const int d : {0, -1, 1, -2, 2}) {
            const auto off = [d](int value) { return static_cast<std::uint16_t>(value + d); };
            EXPECT_EQ(SearchNativeFormat({off(sync[SYNC_H_TOTAL]), off(vTotal), off(frontPorch)}),
                      std::abs(d) < 2 ? frmt : edid::kNoNativeFormat);
        }
    }
}

TEST_F(Edid, ParseSurvivesDamagedEdids) {
    const std::vector<Bytes> monitors = edid::ValidEdids();
    std::mt19937 random(861); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same mutations in every run
    for (unsigned i = 0; i < 300; ++i) {
        Bytes input = Join({Bytes(4), monitors[i % monitors.size()]}); // a DDC channel without faults
        for (unsigned mutations = i % 8; mutations > 0; --mutations) {
            // Every second mutation changes one of the four bytes that set the faults. The others change one of the
            // first 24 bytes of a block, where tags, lengths and offsets are, or any byte if the input is too short.
            const std::size_t at = mutations % 2 == 0 ? random() % 4 : 4 + 128 * (random() % 4) + random() % 24;
            input[at < input.size() ? at : random() % input.size()] = static_cast<std::uint8_t>(random());
        }
        Quietly([&] { LLVMFuzzerTestOneInput(input.data(), input.size()); });
    }
}

} // namespace
