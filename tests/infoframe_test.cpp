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

TEST_F(InfoFrames, LoadingAndSwitching) {
    std::string all;
    const auto note = [&all](const std::string& name, auto operation) {
        Transfers();
        const std::string said = Capture(operation).err;
        all += "== " + name + "\n" + said + "\n" + Transfers();
    };
    stOutVideoInfo.frmt = VIDOUT_1280x720p60;
    RequireConfigInfoFrame = 1;
    note("AVI, required", SendAVIInfoFrame);
    note("AVI, not required", SendAVIInfoFrame);
    note("audio", SendAUDInfoFrame);
    struct Case {
        std::uint8_t code, hdmi, control1, result;
    };
    // clang-format off
    for (const Case& c : {Case{0x82, 1, 0x00, 0}, Case{0x84, 1, 0x03, 0}, Case{0x83, 1, 0x80, 0}, Case{0x85, 1, 0x00, 0},
                          Case{255, 1, 0xFF, 0}, Case{0x82, 0, 0x33, 0}, Case{0, 1, 0x00, 0}, Case{7, 1, 0x00, 1}}) {
        // clang-format on
        sim::TxRegister(sim::Page::Hdmi2, 0x2F) = c.hdmi;
        sim::TxRegister(sim::Page::Hdmi2, 0x3E) = c.control1;
        sim::TxRegister(sim::Page::Hdmi2, 0x3F) = 0x54;
        note(std::string(c.hdmi != 0 ? "HDMI" : "DVI") + " mode, code " + std::to_string(c.code),
             [&] { EXPECT_EQ(EnableInfoFrame(c.code), c.result); });
    }
    sim::TxRegister(sim::Page::Hdmi2, 0x3E) = 0xFF;
    note("off", DisableInfoFrame);
    sim::TxRegister(sim::Page::Hdmi2, 0x3F) = 0x52;
    note("mute", [] { SendCP_Packet(2); });
    sim::TxRegister(sim::Page::Hdmi2, 0x3F) = 0x55;
    sim::FailRequests(2, 1); // the write that clears the bit: the transmitter does not take it
    note("mute cleared, without an answer", [] { SendCP_Packet(0); });
    ExpectGolden("infoframes.txt", all);
}

} // namespace
