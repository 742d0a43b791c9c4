#include "hdmitx/hdmitx.h"
#include "kova/api.h"
#include "tests/board.h"

namespace {

class InfoFrames : public Board {
protected:
    void SetUp() override {
        Board::SetUp();
        stOutVideoInfo = {};
        OutVideoMode = RGB444_8;
        DefaultActiveAspect = 0;
        sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0x01;
    }
    void TearDown() override {
        InfoFrames::SetUp();
        Board::TearDown();
    }
    /// The packet registers from reg on, as hexadecimal.
    static std::string Loaded(std::uint8_t reg, unsigned count) {
        std::string text;
        for (unsigned i = 0; i < count; ++i) {
            std::array<char, 4> byte{};
            std::snprintf(byte.data(), byte.size(), "%02X ",
                          unsigned{sim::TxRegister(sim::Page::Hdmi2, static_cast<std::uint8_t>(reg + i))});
            text += byte.data();
        }
        return text;
    }
};

TEST_F(InfoFrames, TheAviInfoFrameDescribesFormatColoursAndAspect) {
    struct Case {
        std::uint8_t frmt, mode, activeAspect;
        const char* packet; // header, checksum, data bytes 1 to 4
    };
    for (const Case& c : {
             Case{VIDOUT_1280x720p60, RGB444_8, 0, "82 02 0D 3E 01 29 03 04 "},
             Case{VIDOUT_1920x1080i60, YUV444_8, 0, "82 02 0D BD 41 69 03 05 "}, // BT.601: its lines are a field's
             Case{VIDOUT_1920x1080p60, SEP422_8, 0, "82 02 0D 92 21 A9 03 10 "},
             Case{VIDOUT_1024x768p60, RGB444_8, 0, "82 02 0D 18 02 18 03 3A "},
             Case{VIDOUT_720x480i60, YUV444_8, 0, "82 02 0D CD 41 58 03 06 "},
             Case{VIDOUT_1280x720p60, EMB422_8, 2, "82 02 0D 7F 41 A8 03 04 "}, // every mode but one counts as 4:4:4
             Case{VIDOUT_720x480p60, RGB444_8, 2, "82 02 0D 4F 01 1A 03 02 "},
             Case{VIDOUT_720x480p60, RGB444_8, 1, "82 02 0D 59 01 10 03 02 "},
             Case{VIDOUT_640x480p60, YUV444_8, 0, "82 02 0D A9 42 58 03 29 "}, // a PC timing, underscanned
             Case{23, RGB444_8, 0, "82 02 0D 52 02 18 03 00 "},                // without a timing
         }) {
        stOutVideoInfo.frmt = c.frmt;
        OutVideoMode = c.mode;
        DefaultActiveAspect = c.activeAspect;
        RequireConfigInfoFrame = 1;
        Quietly(SendAVIInfoFrame);
        EXPECT_EQ(Loaded(0x40, 8), c.packet) << int{c.frmt};
        EXPECT_EQ(Loaded(0x48, 9), "00 00 00 00 00 00 00 00 00 ");
        unsigned sum = 0;
        for (unsigned reg = 0x40; reg <= 0x50; ++reg) {
            sum += sim::TxRegister(sim::Page::Hdmi2, static_cast<std::uint8_t>(reg));
        }
        EXPECT_EQ(sum & 0xFF, 0) << int{c.frmt};
    }
}

TEST_F(InfoFrames, TheAviInfoFrameIsLoadedOnceWhenRequired) {
    stOutVideoInfo.frmt = VIDOUT_1280x720p60;
    RequireConfigInfoFrame = 1;
    EXPECT_EQ(Capture(SendAVIInfoFrame).err, " \n\rHDMI TX : SendAVIInfoFrame()"
                                             " \n\rHDMI TX : DefaultAVIInfoFrame[0] = 0x1"
                                             " \n\rHDMI TX : DefaultAVIInfoFrame[1] = 0x29");
    EXPECT_EQ(Transfers(), "hdmi2 w 40 82\nhdmi2 w 41 02\nhdmi2 w 42 0d\nhdmi2 w 43 3e\nhdmi2 w 44 01\nhdmi2 w 45 29\n"
                           "hdmi2 w 46 03\nhdmi2 w 47 04\nhdmi2 w 48 00\nhdmi2 w 49 00\nhdmi2 w 4a 00\nhdmi2 w 4b 00\n"
                           "hdmi2 w 4c 00\nhdmi2 w 4d 00\nhdmi2 w 4e 00\nhdmi2 w 4f 00\nhdmi2 w 50 00\n");
    EXPECT_EQ(Capture(SendAVIInfoFrame).err, " \n\rHDMI TX : SendAVIInfoFrame()");
    EXPECT_EQ(Transfers(), "");
}

TEST_F(InfoFrames, TheAudioInfoFrameLeavesEverythingToTheStream) {
    EXPECT_EQ(Capture(SendAUDInfoFrame).err, " \n\rHDMI TX : SendAUDInfoFrame()");
    EXPECT_EQ(Transfers(), "hdmi2 w 80 84\nhdmi2 w 81 01\nhdmi2 w 82 0a\nhdmi2 w 83 71\nhdmi2 w 84 00\nhdmi2 w 85 00\n"
                           "hdmi2 w 86 00\nhdmi2 w 87 00\nhdmi2 w 88 00\nhdmi2 w 89 00\nhdmi2 w 8a 00\nhdmi2 w 8b 00\n"
                           "hdmi2 w 8c 00\nhdmi2 w 8d 00\n");
}

TEST_F(InfoFrames, SendingIsSwitchedByTypeAndMode) {
    constexpr const char* kHead = " \n\rHDMI TX : EnableInfoFrame(";
    struct Case {
        std::uint8_t code, hdmi, control1;
        std::uint8_t result;
        std::string transfers, text; // after the two reads, after the head
    };
    for (const Case& c : {
             Case{0x82, 1, 0x00, 0, "hdmi2 r 2f 01\nhdmi2 r 3e 00\nhdmi2 w 3e 03\nhdmi2 r 3e 03\n",
                  " AVI InfoFram) --> INF_CTRL1=0x03"},
             Case{0x84, 1, 0x03, 0, "hdmi2 r 2f 01\nhdmi2 r 3e 03\nhdmi2 w 3e 33\nhdmi2 r 3e 33\n",
                  " AUD InfoFram) --> INF_CTRL1=0x33"},
             Case{0x83, 1, 0x80, 0, "hdmi2 r 2f 01\nhdmi2 r 3e 80\nhdmi2 w 3e 8c\nhdmi2 r 3e 8c\n",
                  " --> INF_CTRL1=0x8C"},
             Case{0x85, 1, 0x00, 0, "hdmi2 r 2f 01\nhdmi2 r 3e 00\nhdmi2 w 3e c0\nhdmi2 r 3e c0\n",
                  " --> INF_CTRL1=0xC0"},
             Case{255, 1, 0xFF, 0, "hdmi2 w 3e ee\nhdmi2 r 2f 01\nhdmi2 r 3e ee\nhdmi2 w 3e ee\nhdmi2 r 3e ee\n",
                  " --> INF_CTRL1=0xEE"},
             Case{0x82, 0, 0x33, 0, "hdmi2 r 2f 00\nhdmi2 w 3e 00\n", " AVI InfoFram)"},
             Case{0, 1, 0x00, 0, "hdmi2 w 3f 57\n", ""},
             Case{7, 1, 0x00, 1, "", ""},
         }) {
        sim::TxRegister(sim::Page::Hdmi2, 0x2F) = c.hdmi;
        sim::TxRegister(sim::Page::Hdmi2, 0x3E) = c.control1;
        sim::TxRegister(sim::Page::Hdmi2, 0x3F) = 0x54;
        const Printed printed = Capture([&] { EXPECT_EQ(EnableInfoFrame(c.code), c.result); });
        EXPECT_EQ(printed.err, kHead + c.text);
        const std::string transfers = Transfers();
        EXPECT_EQ(transfers.substr(transfers.find("hdmi2 r 3f 54\n") + 14), c.transfers) << int{c.code};
        EXPECT_EQ(transfers.find("hdmi2 r 3e "), 0U);
    }
    sim::TxRegister(sim::Page::Hdmi2, 0x3E) = 0xFF;
    EXPECT_EQ(Capture(DisableInfoFrame).err, " \n\rHDMI TX : DisableInfoFrame() ");
    EXPECT_EQ(Transfers(), "hdmi2 r 3e ff\nhdmi2 w 3e cc\n");
}

TEST_F(InfoFrames, TheGeneralControlPacketStaysOffWhenTheTransmitterDoesNotTakeIt) {
    sim::TxRegister(sim::Page::Hdmi2, 0x3F) = 0x55;
    sim::FailRequests(2, 1); // the write that clears the bit: the value kept has it still
    Quietly([] {
        SendCP_Packet(2);
        sim::TxRegister(sim::Page::Hdmi2, 0x3F) = 0x52;
        SendCP_Packet(1);
    });
    const std::string transfers = Transfers();
    EXPECT_EQ(transfers.find("hdmi2 r 3f 55\nhdmi2 w 3f 51 failed\nhdmi2 w df 01\nhdmi2 r 3f 55\nhdmi2 r 3f 55\n"), 0U);
    EXPECT_EQ(transfers.substr(transfers.find("hdmi2 r 3f 52\nhdmi2 w")),
              "hdmi2 r 3f 52\nhdmi2 w 3f 52\nhdmi2 w df 01\nhdmi2 r 3f 52\nhdmi2 w 3f 5e\n");
    sim::FailEvery(1); // every read gives 0xFF
    Quietly([] { SendCP_Packet(0); });
    std::string expected = "hdmi2 r 3f 00 failed\nhdmi2 w 3f fb failed\nhdmi2 w df 10 failed\n";
    for (int i = 0; i < 64; ++i) {
        expected += "hdmi2 r 3f 00 failed\n";
    }
    EXPECT_EQ(Transfers(), expected);
}

} // namespace
