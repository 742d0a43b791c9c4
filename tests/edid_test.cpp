#include "edid/CRC16.h"
#include "edid/EDIDParse.h"
#include "kova/formats.h"
#include "tests/board.h"
#include "tests/edid_builder.h"

#include <algorithm>
#include <functional>
#include <random>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using edid::Base;
using edid::Bytes;
using edid::Cea;
using edid::Join;

/// One DDC read. Those that are not fed to the check value say so.
struct Read {
    unsigned segment, offset, count;
    bool fed = true;

    bool operator==(const Read& other) const {
        return segment == other.segment && offset == other.offset && count == other.count;
    }
};
using Reads = std::vector<Read>;

void PrintTo(const Read& read, std::ostream* out) { *out << read.segment << ":" << read.offset << "+" << read.count; }

Reads Pass(unsigned segment, unsigned block) {
    Reads reads;
    for (unsigned at = 0; at < 128; at += 8) {
        reads.push_back({segment, block + at, 8});
    }
    return reads;
}

Reads operator+(Reads reads, const Reads& more) {
    reads.insert(reads.end(), more.begin(), more.end());
    return reads;
}

Reads BaseReads() { return Reads{{0, 0, 8}} + Pass(0, 0) + Reads{{0, 18, 2}, {0, 126, 1}}; }

std::string Dump(std::span<const std::uint8_t> block) {
    std::string text = " \n\r[Read EDID Data]";
    for (std::size_t i = 0; i < 128; ++i) {
        std::array<char, 16> item{};
        std::snprintf(item.data(), item.size(), "%s 0x%02X, ", i % 8 == 0 ? " \n\r" : "", unsigned{block[i]});
        text += item.data();
    }
    return text;
}

/// Shows the source's line numbers as N.
std::string HideLineNumbers(std::string text) {
    for (std::size_t end = text.find(']'); end != std::string::npos; end = text.find(']', end + 1)) {
        const std::size_t start = text.find_last_not_of("0123456789", end - 1) + 1;
        if (start < end) {
            text.replace(start, end - start, "N");
            end = start + 1;
        }
    }
    return text;
}

/// The start of every report.
std::string BaseReport(std::span<const std::uint8_t> edid) {
    return "DecodeHeader[N](0)(FF)(FF)(FF)(FF)(FF)(FF)(0)\n" + Dump(edid) + "CheckEDIDVersion[N](1)(3)\n";
}

struct Parsed {
    std::uint8_t transfer;
    EDIDParseResult record;
    Reads reads;
    std::string report;
};

Reads reads;
std::uint32_t failing; // the transfer that fails, 0 for none
std::function<void(std::uint32_t)> atTransfer;

void Hook(std::uint32_t number) {
    const auto reg = [](std::uint8_t r) -> unsigned { return sim::TxRegister(sim::Page::Hdmi1, r); };
    reads.push_back({reg(0xF3) == 0x04 ? reg(0xEE) : 0, reg(0xEF), reg(0xF0)});
    sim::SetDdcError(number == failing ? 0x20 : 0);
    if (atTransfer) {
        atTransfer(number);
    }
}

class Edid : public Board {
protected:
    void TearDown() override {
        atTransfer = nullptr;
        Board::TearDown();
    }

    static Parsed Parse(std::span<const std::uint8_t> edid, std::uint32_t failingTransfer = 0) {
        sim::Reset();
        sim::KeepJournal(true);
        sim::Plug(edid);
        sim::SetDdcHook(Hook);
        reads.clear();
        failing = failingTransfer;
        Parsed parsed{.transfer = 0xFF, .record = {0xFF, 0xFF, 0xFFFF}, .reads = {}, .report = {}};
        parsed.report = HideLineNumbers(Capture([&] { parsed.transfer = ParseEDID(&parsed.record); }).err);
        parsed.reads = reads;
        return parsed;
    }

    static std::uint16_t Crc(std::span<const std::uint8_t> edid, const Reads& fed) {
        std::uint16_t crc = 0;
        for (const Read& read : fed) {
            if (read.fed) {
                UpdateCRC16WithBlock(&crc, static_cast<std::uint8_t>(read.count),
                                     &edid[read.segment * 256 + read.offset]);
            }
        }
        return crc;
    }
};

// clang-format off
#define LINE " \n\r[Read EDID] "

TEST_F(Edid, ADviMonitorIsReportedByItsTimings) {
    const edid::Timing timing{1281, 370, 719, 30, 111, 300, 37, 50, 530, 300, 1, 2, 0xE0};
    const Bytes edid = Base{.established = {0xA1, 0x11, 0xFF},
                            .standard = {0x81, 0xC0, 1, 1, 0x01, 0x40, 0xFF, 0xBF, 1, 2, 1, 1, 1, 1, 1, 1},
                            .descriptors = Join({edid::NoTiming(), Detailed(timing)})}.Build();
    // The first bytes of the timing are read, and fed, twice.
    const Reads expected = BaseReads() + Reads{{0, 35, 3}, {0, 38, 8}, {0, 46, 8}, {0, 54, 4},
                                              {0, 72, 4}, {0, 74, 6}, {0, 80, 4}, {0, 84, 6}};
    const Parsed parsed = Parse(edid);
    EXPECT_EQ(parsed.reads, expected);
    EXPECT_EQ(parsed.record.CRC16, Crc(edid, expected));
    EXPECT_EQ(parsed.report, BaseReport(edid) +
              " \n720 x 400 @ 70Hz \n640 x 480 @ 60Hz \n800 x 600 @ 60Hz \n1024 x 768 @ 87Hz"
              " \n1280 x 1024 @ 75Hz \n1152 x 870 @ 75Hz"
              " \r\n[Read EDID] Standard Timing:"
              LINE "Mode 0 " LINE "Hor Act pixels 1280 " LINE "Aspect ratio:  16:9" LINE "Refresh rate 60 Hz "
              LINE "Mode 1   wasn't defined! "
              LINE "Mode 2 " LINE "Hor Act pixels 256 " LINE "Aspect ratio:  4:3" LINE "Refresh rate 60 Hz "
              LINE "Mode 3 " LINE "Hor Act pixels 2288 " LINE "Aspect ratio:  5:4" LINE "Refresh rate 123 Hz "
              LINE "Mode 4 " LINE "Hor Act pixels 256 " LINE "Aspect ratio:  16:10" LINE "Refresh rate 62 Hz "
              LINE "Mode 5   wasn't defined! " LINE "Mode 6   wasn't defined! " LINE "Mode 7   wasn't defined! "
              " \r\n[Read EDID] Detailed Timing: "
              " \r\n[Read EDID] Descriptor 0:\n \r\n[Read EDID] Descriptor 1:\n"
              LINE "H Active 1281,  H Blank 370   V Active 719   V Blank 30 "
              LINE "H Sync Offset 111,  H Sync Pulse W 300  V Sync Offset 37  V Sync Pulse W 50"
              LINE "H Image Size 530,  V Image Size 300  H Border 1  V Border 2"
              LINE "Interlaced" LINE "Table 3.17 for defenition  Analog"
              LINE "GetDVINativeVIC() : 4");
    EXPECT_EQ(gbNativeVIC, VIDOUT_1280x720p60);
}

TEST_F(Edid, AnHdmiMonitorBehindABlockMapIsReportedByItsCeaBlock) {
    const Bytes edid = Join(
        {Base{.extensions = 3}.Build(), edid::BlockMap(),
         Cea(0xEA, Join({edid::Video({1, 2, 0x83, 4, 5, 0x86, 7, 8, 9, 10, 11, 12}),
                         edid::Audio({0x0F, 0x07, 0x05, 0x17, 0x48, 0x50, 0x40, 0x37, 0x01, 0x78, 0x00, 0x00}),
                         edid::DataBlock(7, {5, 1}), edid::Speakers(0xFE), edid::Hdmi()}),
             Detailed(edid::k720p60)),
         edid::Other(0x40)});
    const std::span<const std::uint8_t> bytes = edid;
    const Parsed parsed = Parse(edid);
    EXPECT_EQ(parsed.report, BaseReport(edid) + LINE "gbExtensionBlockExist = 1" + Dump(bytes.subspan(128)) +
              Dump(bytes.subspan(256)) +
              LINE "NewCheckHDMISignature()" LINE "NewSearchForVendorSpecificBlock()"
              LINE "gbVendorSpecificBlockExist = 1" LINE "EDID VSB Address = 0x25" LINE "CEC Physical Address = 0x2143"
              LINE "Parse861BExtension()" LINE "CapN 0xEA" LINE "DTV monitor supports: "
              " \n\r          Underscan \n\r          Basic audio \n\r          YCbCr 4:4:4 and RGB"
              LINE "Native formats in detail descriptors 10" " \n\r         Set OutVideoMode to YUV444_8"
              LINE "[ParsingShortTimeDescriptorBlock()]"
              " \n\r            VIC 1  VIC 2  VIC 3 (Native VIC)  VIC 4  VIC 5  VIC 6 (Native VIC)  VIC 7  VIC 8"
              LINE "[ParsingShortTimeDescriptorBlock()]"
              " \n\r            VIC 9  VIC 10  VIC 11  VIC 12"
              LINE "Audio Format Code 1 :  Liniar PCM" LINE "Max N of channels 8" LINE "Fs:   32   44   48  KHz"
              " \r\n[Read EDID] Supported length:  16  24  bits"
              LINE "Audio Format Code 2 :  AC-3" LINE "Max N of channels 8" LINE "Fs:   88   192  KHz"
              LINE "Maximum bit rate 640 KHz"
              LINE "Audio Format Code 8 :  ATRAC" LINE "Max N of channels 1" LINE "Fs:   32   44   48   96  176  KHz"
              LINE "Maximum bit rate 8 KHz"
              LINE "Audio Format Code 15 :  reserved" LINE "Max N of channels 1" LINE "Fs:  KHz"
              LINE "Maximum bit rate 0 KHz"
              LINE "Speakers' allocation:  LFE FC RL/RR RC FLC/FRC RLC/RRC"
              LINE "H Active 1280,  H Blank 370   V Active 720   V Blank 30 "
              LINE "H Sync Offset 110,  H Sync Pulse W 40  V Sync Offset 5  V Sync Pulse W 5"
              LINE "H Image Size 530,  V Image Size 300  H Border 0  V Border 0"
              LINE "Non-interlaced" LINE "Normal Display:  Digital" + Dump(bytes.subspan(384)));
    EXPECT_EQ(gbMonCap, 0xEA);
    EXPECT_EQ(gbNativeVICtemp, 6);
    EXPECT_EQ(EdidVFmts, (std::array<std::uint8_t, 30>{9, 10, 11, 12}));
    EXPECT_EQ(CEAOnFisrtPage, 0);
    EXPECT_TRUE(JournalWith("hdmi1 w ee").ends_with("hdmi1 w ee 01\nhdmi1 w ee 00\n"));

    std::array<std::uint8_t, 8> formats{};
    std::uint8_t count = 0, native = 0;
    std::uint16_t address = 0;
    gbNativeVIC = 0x90;
    const std::string said = Capture([&] { LoadSupportHDMIVideoOut(formats.data(), &count); }).err
                             + Capture([&] { native = GetEDIDNativeVIC(); }).err;
    EXPECT_EQ(HideLineNumbers(said), "\n[EDID.cpp(LoadSupportHDMIVideoOut):N] EdidVFmtsCount = 8 \n"
                                     LINE "GetEDIDNativeVIC() : 16");
    EXPECT_EQ(native, 0x10);
    EXPECT_EQ(count, 8);
    EXPECT_EQ(formats, (std::array<std::uint8_t, 8>{9, 10, 11, 12}));
    GetNativeVIC(&native);
    EXPECT_EQ(native, 0x90);
    EXPECT_TRUE(ReturnCECPhyAddr(&address) == 1 && address == 0x2143);
    gbExtensionBlockExist = 0;
    EXPECT_TRUE(ReturnCECPhyAddr(&address) == 0 && address == 0);
}

TEST_F(Edid, EveryReadIsFedButTwo) {
    const Reads expected = BaseReads() + Pass(0, 128) +
        Reads{{0, 130, 2}, {0, 132, 1}, {0, 140, 1}, {0, 144, 1}, {0, 148, 1}, {0, 149, 3}, {0, 152, 2, false},
              {0, 131, 1}, {0, 130, 1, false},
              {0, 132, 1}, {0, 132, 1}, {0, 133, 7}, // video
              {0, 140, 1}, {0, 140, 1}, {0, 141, 3}, // audio
              {0, 144, 1}, {0, 145, 1},              // speakers
              {0, 148, 1},
              {0, 130, 1}, {0, 154, 2}, {0, 156, 6}, {0, 162, 4}, {0, 166, 6}, {0, 172, 2}};
    CEAOnFisrtPage = 1; // left by a parse that failed
    const Parsed parsed = Parse(sim::kBuiltInEdid);
    EXPECT_TRUE(Writes().ends_with("hdmi1 w f3 02\nhdmi1 w ee 00\n"));
    EXPECT_EQ(parsed.reads, expected);
    EXPECT_EQ(parsed.record.CRC16, Crc(sim::kBuiltInEdid, expected));
    // Every byte counts.
    for (std::size_t i = 0; i < sim::kBuiltInEdid.size(); ++i) {
        auto changed = sim::kBuiltInEdid;
        changed[i] ^= 0x10;
        EXPECT_NE(Parse(changed).record.CRC16, parsed.record.CRC16) << i;
    }
}
// clang-format on

TEST_F(Edid, WhatKindOfMonitorItIs) {
    const Bytes hdmi = Cea(0x50, edid::Hdmi());
    const Bytes plain = Cea(0x50, edid::Video({1}));
    const Bytes one = Base{.extensions = 1}.Build();
    const Bytes two = Join({Base{.extensions = 2}.Build(), edid::BlockMap()});
    const Bytes three = Join({Base{.extensions = 3}.Build(), edid::BlockMap()});
    const Bytes other = edid::Other(0x40);
    const auto with = [](Bytes edid, std::size_t at, std::uint8_t value) {
        edid[at] = value;
        return edid;
    };
    constexpr std::uint8_t kUntouched = 0xEE;
    struct Case {
        const char* what;
        Bytes edid;
        std::uint8_t err, mode, extension, colours;
        std::size_t reads;
    };
    // clang-format off
    for (const Case& c : {
             Case{"header, first byte",   with(one, 0, 1),                               8,  0, kUntouched, kUntouched, 1},
             Case{"header, last byte",    with(one, 7, 1),                               8,  0, kUntouched, kUntouched, 1},
             Case{"sum of block 0",       with(one, 60, 1),                              10, 0, kUntouched, kUntouched, 17},
             Case{"sum, then version",    with(one, 19, 2),                              10, 0, kUntouched, kUntouched, 17},
             Case{"version 1.2",          Base{.version = {1, 2}}.Build(),               9,  0, kUntouched, kUntouched, 18},
             Case{"version 2.3",          Base{.version = {2, 3}}.Build(),               9,  0, kUntouched, kUntouched, 18},
             Case{"version 1.4",          Base{.version = {1, 4}}.Build(),               12, 0, 0, RGB444_8,   26},
             Case{"no timing at all",     Base{.descriptors = {}}.Build(),               12, 0, 0, RGB444_8,   26},
             Case{"sum of block 1",       with(Join({one, hdmi}), 200, 1),               10, 0, 1, kUntouched, 35},
             Case{"block 1 missing",      one,                                           10, 0, 1, kUntouched, 35},
             Case{"one, HDMI",            Join({one, hdmi}),                             0,  2, 1, SEP422_8,   44},
             Case{"one, HDMI, RGB only",  Join({one, Cea(0x4F, edid::Hdmi())}),           0,  2, 1, RGB444_8,   44},
             Case{"no video formats",     Join({one, Cea(0, Join({edid::Video({}), edid::Hdmi()}))}), 0, 2, 1, RGB444_8, 48},
             Case{"a group of formats",   Join({one, Cea(0, Join({edid::Video(Bytes(8)), edid::Hdmi()}))}), 0, 2, 1, RGB444_8, 48},
             Case{"one, not HDMI",        Join({one, plain}),                            13, 0, 1, RGB444_8,   46},
             Case{"one, other OUI",       Join({one, Cea(0, edid::DataBlock(3, {3, 12, 1}))}), 13, 0, 1, RGB444_8, 46},
             Case{"one, not a CEA block", Join({one, other}),                            13, 0, 1, RGB444_8,   45},
             Case{"HDMI despite its tag", Join({one, edid::Block(Join({{0x40, 3, 10, 0}, edid::Hdmi()}))}),
                                                                                         0,  2, 1, RGB444_8,   44},
             Case{"no block map",         Join({Base{.extensions = 2}.Build(), hdmi, hdmi}), 14, 0, 1, kUntouched, 36},
             Case{"a map of nothing",     Join({two, other, other, other, other}),       0,  0, 1, kUntouched, 39},
             Case{"255 extensions",       Join({Base{.extensions = 255}.Build(), edid::BlockMap()}),
                                                                                         0,  0, 1, kUntouched, 292},
             Case{"CEA in block 3",       Join({three, other, hdmi}),                    0,  0, 1, kUntouched, 40},
             Case{"CEA in block 4",       Join({two, other, other, hdmi, other}),        0,  2, 1, SEP422_8,   79},
             Case{"sum of block 2",       Join({two, with(hdmi, 50, 1), other}),         10, 0, 1, kUntouched, 53},
             Case{"sum of block 3",       Join({two, hdmi, with(other, 50, 1)}),         10, 2, 1, SEP422_8,   78},
             Case{"block 2, not HDMI",    Join({two, plain, other}),                     13, 0, 1, kUntouched, 57},
             // Without a vendor-specific block the start of the segment passes for one.
             Case{"signature by chance",  Join({two, Cea(0, Bytes(8)), other}),          0,  2, 1, RGB444_8,   92},
         }) {
        // clang-format on
        SCOPED_TRACE(c.what);
        gbExtensionBlockExist = OutVideoMode = gbNativeVIC = gbNativeVICtemp = kUntouched;
        const Parsed parsed = Parse(c.edid);
        EXPECT_EQ(parsed.transfer, 0);
        EXPECT_EQ(parsed.record.ErrCode, c.err);
        EXPECT_EQ(parsed.record.OutMode, c.mode);
        EXPECT_EQ(gbExtensionBlockExist, c.extension);
        EXPECT_EQ(OutVideoMode, c.colours);
        EXPECT_EQ(gbNativeVICtemp, c.mode == 2 ? 0 : kUntouched);
        EXPECT_EQ(gbNativeVIC == 0, c.mode == 2);
        EXPECT_EQ(parsed.reads.size(), c.reads);
        EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi1, 0xEE), 0);
        EXPECT_EQ(Parse(c.edid).record.CRC16, parsed.record.CRC16);
    }
}

TEST_F(Edid, TheOffsetOfTheTimingsIsData) {
    const auto monitor = [](std::uint8_t timings, const Bytes& blocks, const Bytes& rest = {}) {
        return Join({Base{.extensions = 1}.Build(), edid::Block(Join({{2, 3, timings, 0}, blocks, rest}))});
    };
    const auto says = [](const Parsed& parsed, const char* text) {
        return parsed.report.find(text) != std::string::npos;
    };

    // Without data blocks the search ends without its two lines; with none before the timings, with them.
    for (std::uint8_t end = 0; end < 4; ++end) {
        EXPECT_TRUE(says(Parse(monitor(end, edid::Hdmi())),
                         LINE "NewSearchForVendorSpecificBlock()" LINE "CEC Physical Address = 0xFFFF"));
    }
    EXPECT_TRUE(says(Parse(monitor(4, edid::Hdmi())), "Exist = 0" LINE "EDID VSB Address = 0x84"));

    // The walk goes on beyond the block, and beyond the segment, where it wraps. The address shows where it ended.
    Parsed parsed = Parse(Join({Base{.extensions = 1, .descriptors = {}}.Build(), edid::Block({2, 3, 255, 0})}));
    EXPECT_TRUE(says(parsed, "Exist = 0" LINE "EDID VSB Address = 0x180"));
    EXPECT_NE(std::find(parsed.reads.begin(), parsed.reads.end(), Read{0, 34, 1}), parsed.reads.end());

    // An HDMI block that reaches past the timings ends the collection; the first timing begins inside it.
    parsed = Parse(monitor(6, edid::Hdmi()));
    EXPECT_EQ(parsed.reads.size(), 35 + 13);
    EXPECT_EQ(parsed.reads.back(), (Read{0, 128 + 6 + 18, 2}));

    // Without data blocks the collection is not read. Below 4, the first one is.
    const std::array<std::size_t, 6> kReads{1, 4, 4, 4, 1, 4};
    for (std::size_t end = 0; end < kReads.size(); ++end) {
        const Bytes edid = monitor(static_cast<std::uint8_t>(end), edid::Video({1}));
        Parse(edid);
        reads.clear();
        std::uint16_t crc = 0;
        Quietly([&] { ParsingCEADataBlockCollection(&crc); });
        EXPECT_EQ(reads.size(), kReads[end]) << end;
    }

    // Timings to the end of the block and beyond: the first that begins above 108 is the last.
    Bytes timings;
    for (int i = 0; i < 6; ++i) {
        timings = Join({timings, Detailed(edid::k720p60)});
    }
    parsed = Parse(monitor(19, Join({edid::Hdmi(), Bytes(9)}), timings));
    EXPECT_EQ(parsed.reads.back(), (Read{0, 128 + 109 + 12, 6}));
    parsed = Parse(monitor(18, Join({edid::Hdmi(), Bytes(8)}), timings)); // at 108, and then at 126
    EXPECT_EQ(parsed.reads.back(), (Read{0, 126 + 12 - 128, 6}));
}

TEST_F(Edid, AFailureEndsTheParse) {
    const Bytes dvi = Base{}.Build();
    const Bytes hdmi = Bytes(sim::kBuiltInEdid.begin(), sim::kBuiltInEdid.end());
    const Bytes behindMap =
        Join({Base{.extensions = 2}.Build(), edid::BlockMap(), Cea(0, edid::Hdmi()), edid::Other(0x40)});
    // Except in the search for the vendor-specific block, which then has found none, and at the signature, which
    // then is as good as right. The physical address decides. Without a signature block 0's timings are parsed.
    struct Exception {
        const Bytes* edid;
        std::uint32_t failing;
        std::uint8_t err, mode;
        std::size_t reads;
    };
    const std::array exceptions{Exception{&hdmi, 36, 13, 0, 45},      Exception{&hdmi, 37, 13, 0, 46},
                                Exception{&hdmi, 38, 13, 0, 47},      Exception{&hdmi, 39, 13, 0, 48},
                                Exception{&hdmi, 40, 13, 0, 49},      Exception{&hdmi, 41, 0, 2, 59},
                                Exception{&behindMap, 54, 13, 0, 56}, Exception{&behindMap, 55, 13, 0, 57},
                                Exception{&behindMap, 56, 0, 2, 78}};
    for (const Bytes* edid : {&dvi, &hdmi, &behindMap}) {
        for (std::uint32_t k = static_cast<std::uint32_t>(Parse(*edid).reads.size()); k > 0; --k) {
            SCOPED_TRACE(testing::Message() << edid->size() << " bytes, transfer " << k);
            const Parsed parsed = Parse(*edid, k);
            EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi1, 0xEE), 0);
            const auto e = std::find_if(exceptions.begin(), exceptions.end(),
                                        [&](const Exception& x) { return x.edid == edid && x.failing == k; });
            const bool goesOn = e != exceptions.end();
            EXPECT_EQ(parsed.transfer, goesOn ? 0 : 4);
            EXPECT_EQ(parsed.reads.size(), goesOn ? e->reads : k);
            if (goesOn) {
                EXPECT_EQ(parsed.record.ErrCode, e->err);
                EXPECT_EQ(parsed.record.OutMode, e->mode);
            } else if (edid == &dvi) { // where every read is fed, but for the one that failed
                EXPECT_EQ(parsed.record.CRC16, Crc(dvi, Reads(parsed.reads.begin(), parsed.reads.end() - 1)));
            }
            if (edid == &dvi && k > 19) {
                EXPECT_TRUE(parsed.report.ends_with(LINE "GetDVINativeVIC() : 24"));
            } else if (k >= 2 && k <= 17) {
                EXPECT_TRUE(parsed.report.ends_with(" \n\r"));
            } else if (edid == &hdmi && k == 42) {
                EXPECT_TRUE(parsed.report.ends_with(LINE "CEC Physical Address = 0x0000"));
            }
        }
    }
}

// A read of the segment register that fails shows another segment, and the request selects it.
TEST_F(Edid, ALostSegmentIsFoundAgain) {
    EDIDParseResult result{};
    const auto parse = [&] {
        std::uint8_t transfer = 0xFF;
        Quietly([&] { transfer = ParseEDID(&result); });
        return transfer;
    };
    sim::Plug(sim::kBuiltInEdid);
    Transfers();
    EXPECT_EQ(parse(), 0);
    const std::string journal = Transfers();
    for (auto n = static_cast<std::uint32_t>(std::count(journal.begin(), journal.end(), '\n')); n > 0; --n) {
        sim::FailRequests(n, 1);
        parse();
        EXPECT_EQ(sim::TxRegister(sim::Page::Hdmi1, 0xEE), 0) << n;
    }
    sim::FailRequests(0, 0);
    sim::TxRegister(sim::Page::Hdmi1, 0xEE) = 1;
    EXPECT_EQ(parse(), 3);
    EXPECT_EQ(parse(), 0);
    EXPECT_EQ(result.OutMode, EDID_OUTMODE_HDMI);
}

TEST_F(Edid, ATimedOutReadGivesZeros) {
    atTransfer = [](std::uint32_t number) { sim::SetDdcBusy(number == 19 ? 1000 : 0); };
    EXPECT_EQ(Parse(sim::kBuiltInEdid).record.ErrCode, EDID_ERR_NO_EXTENSION);
    atTransfer = [](std::uint32_t /*number*/) { sim::SetDdcBusy(1000); };
    const Parsed parsed = Parse(sim::kBuiltInEdid);
    EXPECT_EQ(parsed.transfer, 0);
    EXPECT_EQ(parsed.report, "DecodeHeader[N](0)(0)(0)(0)(0)(0)(0)(0)\n");
}

TEST(EdidTimings, TheVideoProcessorsFormatsAreRecognised) {
    for (std::uint8_t frmt = VIDOUT_720x480p60; frmt <= VIDOUT_1280x1024p75; ++frmt) {
        const SyncTiming& sync = defKOVAOutSync[frmt];
        const bool interlaced = sync[SYNC_V2_ACTIVE_START] != 0;
        const NativeTiming timing{sync[SYNC_H_TOTAL],
                                  static_cast<std::uint16_t>(sync[SYNC_V_TOTAL] / (interlaced ? 2 : 1)),
                                  static_cast<std::uint16_t>(sync[SYNC_H_TOTAL] - sync[SYNC_H_ACTIVE_END] + 1)};
        EXPECT_EQ(SearchNativeFormat(timing), frmt);
        for (const int d : {-1, 1, -2, 2}) {
            const auto off = [d](std::uint16_t value) { return static_cast<std::uint16_t>(value + d); };
            const bool near = d == 1 || d == -1;
            EXPECT_EQ(SearchNativeFormat({off(timing.hTotal), off(timing.vTotal), off(timing.hFrontPorch)}),
                      near ? frmt : kNoNativeFormat);
        }
    }
    EXPECT_EQ(SearchNativeFormat({0, 0, 0}), kNoNativeFormat);
}

TEST_F(Edid, TheCostliestMonitorTakesAllReadsOfTheBound) {
    static std::array<std::uint8_t, 256> edid;
    // It knows which read it answers, and changes accordingly: all bytes, or those from an offset on.
    struct Answer {
        std::uint32_t first, last;
        std::size_t offset;
        Bytes bytes;
    };
    constexpr std::uint32_t kCollection = 565, kTimings = kCollection + 251 * 13;
    static const std::array answers{
        Answer{1, 1, 1, Bytes(6, 0xFF)},
        Answer{18, 18, 18, {1, 3}},
        Answer{19, 19, 126, {255}},        // extensions
        Answer{36, 36, 128, {0xF0}},       // block map
        Answer{292, 292, 0, {0x02}},       // segment 0, the last one to be asked, has the CEA block
        Answer{309, 309, 2, {255}},        // a collection up to 255 without a vendor-specific block
        Answer{561, 561, 1, {3, 0x0C, 0}}, // yet a signature
        Answer{564, 564, 2, {255}},        // a collection up to 255, of
        Answer{kCollection, kTimings - 1, 0, Bytes(256, 0x20)}, // audio blocks without payload
        Answer{kTimings, kTimings + 28, 0, Bytes(256, 1)},      // timings from 1 on
    };
    atTransfer = [](std::uint32_t number) {
        edid = {};
        for (const Answer& answer : answers) {
            if (number >= answer.first && number <= answer.last) {
                std::copy(answer.bytes.begin(), answer.bytes.end(), edid.begin() + static_cast<long>(answer.offset));
            }
        }
        if (number >= kCollection && number < kTimings && (number - kCollection) % 13 == 1) {
            edid.fill(0x3F); // whose length is 31 when it is asked for again
        }
    };
    const Parsed parsed = Parse(edid);
    EXPECT_EQ(parsed.record.ErrCode, 0);
    EXPECT_EQ(parsed.record.OutMode, EDID_OUTMODE_HDMI);
    EXPECT_EQ(parsed.reads.size(), kMostEDIDReads);
}

TEST_F(Edid, NoMutilatedMonitorBreaksTheParse) {
    const Bytes blocks =
        Join({edid::Video(Bytes(20, 0x84)), edid::Audio(Bytes(9, 0x0F)), edid::Speakers(1), edid::Hdmi()});
    const Bytes cea = Cea(0xF1, blocks, Detailed(edid::k720p60));
    const std::array<Bytes, 3> monitors{Base{}.Build(), Join({Base{.extensions = 1}.Build(), cea}),
                                        Join({Base{.extensions = 2}.Build(), edid::BlockMap(), cea, cea})};
    std::mt19937 random(861); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same mutations in every run
    const auto any = [&](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    const auto anyByte = [&] { return static_cast<std::uint8_t>(random()); };
    for (unsigned i = 0; i < 300; ++i) {
        Bytes input = Join({{static_cast<std::uint8_t>(any(16) == 0 ? 1 : any(4) * 2), 0, anyByte(), 0},
                            monitors[i % monitors.size()]});
        input[1] = any(2) == 0 ? anyByte() : 0;
        input[3] = any(4) == 0 ? anyByte() : 0;
        for (std::size_t mutations = any(8); mutations > 0; --mutations) {
            input[4 + any(input.size() - 4)] = anyByte();
        }
        input[4 + 128 * any(input.size() / 128) + 2] = anyByte(); // the offset of the timings, in a CEA block
        Quietly([&] { LLVMFuzzerTestOneInput(input.data(), input.size()); });
    }
}

} // namespace
