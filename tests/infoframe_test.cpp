#include "tests/board.h"

namespace {

using InfoFrames = Board;

TEST_F(InfoFrames, AviDescribesFormatColoursAndAspect) {
    struct Case {
        std::uint8_t frmt, mode, activeAspect;
    };
    sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0x01;
    for (const Case& c : {
             Case{VIDOUT_1280x720p60, RGB444_8, 0},
             Case{VIDOUT_1920x1080i60, YUV444_8, 0}, // BT.601, since the table's 562 lines of a field count as SD
             Case{VIDOUT_1920x1080p60, SEP422_8, 0}, Case{VIDOUT_1024x768p60, RGB444_8, 0},
             Case{VIDOUT_720x480i60, YUV444_8, 0},
             Case{VIDOUT_1280x720p60, EMB422_8, 2}, // only RGB444_8 and SEP422_8 do not count as 4:4:4
             Case{VIDOUT_720x480p60, RGB444_8, 2}, Case{VIDOUT_720x480p60, RGB444_8, 1},
             Case{VIDOUT_640x480p60, YUV444_8, 0}, // a PC timing is underscanned
             Case{23, RGB444_8, 0},                // a format without a timing
         }) {
        stOutVideoInfo.frmt = c.frmt;
        OutVideoMode = c.mode;
        DefaultActiveAspect = c.activeAspect;
        RequireConfigInfoFrame = 1;
        Log("format " + std::to_string(c.frmt) + ", mode " + std::to_string(c.mode) + ", aspect "
                + std::to_string(c.activeAspect),
            SendAVIInfoFrame);
    }
}

TEST_F(InfoFrames, FramesAreLoadedAndSwitched) {
    sim::TxRegister(sim::Page::Hdmi2, 0x2F) = 0x01;
    stOutVideoInfo.frmt = VIDOUT_1280x720p60;
    Log("AVI, required", SendAVIInfoFrame);
    Log("AVI, not required", SendAVIInfoFrame);
    Log("audio", SendAUDInfoFrame);
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
        Log(std::string(c.hdmi != 0 ? "HDMI" : "DVI") + " mode, code " + std::to_string(c.code),
            [&] { EXPECT_EQ(EnableInfoFrame(c.code), c.result); });
    }
    sim::TxRegister(sim::Page::Hdmi2, 0x3E) = 0xFF;
    Log("off", DisableInfoFrame);
    sim::TxRegister(sim::Page::Hdmi2, 0x3F) = 0x52;
    Log("mute", [] { SendCP_Packet(2); });
    sim::TxRegister(sim::Page::Hdmi2, 0x3F) = 0x55;
    sim::FailRequests(2, 1); // the write that switches the packet off fails
    Log("mute cleared, one write fails", [] { SendCP_Packet(0); });
}

} // namespace
