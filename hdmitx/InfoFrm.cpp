// InfoFrames (CEA-861) and the general control packet. The InfoFrames tell the sink the format of the video and of the
// audio. The general control packet sets or clears the mute of both.

#include "hdmitx/hdmitx.h"

#include "hdmitx/bits.h"
#include "hdmitx/vmode.h"
#include "kova/api.h"

#include <cstdio>
#include <span>

using namespace hdmitx;

std::array<std::uint8_t, 13> DefaultAVIInfoFrame{0x41, 0xA8, 0x03, 0x04};
std::array<std::uint8_t, 10> DefaultAUDInfoFrame{};
std::uint8_t RequireConfigInfoFrame = 0;

namespace {

// Page 1
constexpr std::uint8_t kInfCtrl1 = 0x3E; // two bits for each packet type; both set: sent repeatedly
constexpr std::uint8_t kInfCtrl2 = 0x3F;
constexpr std::uint8_t kAviPacket = 0x40;
constexpr std::uint8_t kAudioPacket = 0x80;
constexpr std::uint8_t kGeneralControl = 0xDF;

// Bits of kInfCtrl1 and kInfCtrl2
constexpr std::uint8_t kSendAvi = 0x03, kSendSpd = 0x0C, kSendAudio = 0x30, kSendMpeg = 0xC0;
constexpr std::uint8_t kSendCode0 = 0x03;
constexpr std::uint8_t kGeneralControlOn = 0x04, kGeneralControlCompanion = 0x08;

constexpr std::uint8_t kSetMute = 0x01, kClearMute = 0x10; // values of kGeneralControl

// Packet types (CEA-861), and two codes that only EnableInfoFrame uses.
constexpr std::uint8_t kAvi = 0x82, kSpd = 0x83, kAudio = 0x84, kMpeg = 0x85;
constexpr std::uint8_t kCode0 = 0, kCode255 = 255;

// The header of a packet: type, version, length. The checksum follows the header.
struct Header {
    std::uint8_t type, version, length;
};

constexpr Header kAviHeader{kAvi, 2, 13};
constexpr Header kAudioHeader{kAudio, 1, 10};

void LoadPacket(std::uint8_t reg, const Header& header, std::span<const std::uint8_t> data) {
    // The sum of all bytes of a packet is 0 modulo 256.
    unsigned sum = unsigned{header.type} + header.version + header.length;
    for (const std::uint8_t byte : data) {
        sum += byte;
    }
    for (const unsigned byte :
         {unsigned{header.type}, unsigned{header.version}, unsigned{header.length}, 0x100 - (sum & 0xFF)}) {
        HDTX_RegWrite(HDTX_SLV1, reg++, static_cast<std::uint8_t>(byte));
    }
    for (const std::uint8_t byte : data) {
        HDTX_RegWrite(HDTX_SLV1, reg++, byte);
    }
}

// ---- Data bytes of the AVI InfoFrame ----

// Byte 1. Bits 7..5: colour format. Bits 1..0: overscan for a TV timing, underscan for a PC timing.
std::uint8_t ColourAndScan(std::uint8_t old, std::uint8_t videoMode, std::uint8_t row) {
    unsigned byte = old & 0x1CU;
    if (videoMode == SEP422_8) {
        byte |= 0x20;
    } else if (videoMode != RGB444_8) {
        byte |= 0x40;
    }
    byte |= IsCeaRow(row) ? 0x01 : 0x02;
    return static_cast<std::uint8_t>(byte);
}

// Byte 2: colorimetry, aspect ratio of the picture, aspect ratio of the active picture within it.
std::uint8_t AspectAndColorimetry(const VModeRow& timing, std::uint8_t videoMode) {
    constexpr std::uint8_t kWide = 2;
    constexpr std::uint16_t kFewestHdLines = 750;
    constexpr unsigned kBt709 = 0x80, kBt601 = 0x40;
    constexpr unsigned kWidePicture = 0x20, kNormalPicture = 0x10;
    constexpr unsigned kAsPicture = 0x08, kNormalCentred = 0x09, kWideCentred = 0x0A;

    const bool widePicture = timing.Aspect == kWide;
    unsigned byte = widePicture ? kWidePicture : kNormalPicture;
    if (DefaultActiveAspect == 0) {
        byte |= widePicture ? kNormalCentred : kAsPicture;
    } else if (DefaultActiveAspect == kWide) {
        byte |= widePicture ? kAsPicture : kWideCentred;
    }
    if (videoMode != RGB444_8) {
        byte |= timing.VTotal >= kFewestHdLines ? kBt709 : kBt601;
    }
    return static_cast<std::uint8_t>(byte);
}

std::uint8_t SendBitsOf(std::uint8_t code) {
    switch (code) {
    case kAvi:
        return kSendAvi;
    case kSpd:
        return kSendSpd;
    case kAudio:
        return kSendAudio;
    case kMpeg:
        return kSendMpeg;
    default:
        return 0; // no bits to set: the register is rewritten unchanged
    }
}

} // namespace

void SendAVIInfoFrame() {
    std::fputs(" \n\rHDMI TX : SendAVIInfoFrame()", stderr);
    if (RequireConfigInfoFrame == 0) {
        return;
    }
    RequireConfigInfoFrame = 0;

    const std::uint8_t row = KovaFrmt2VMIndex(stOutVideoInfo.frmt);
    const VModeRow& timing = VModeRowAt(row);
    auto& frame = DefaultAVIInfoFrame;
    frame[0] = ColourAndScan(frame[0], OutVideoMode, row);
    frame[1] = AspectAndColorimetry(timing, OutVideoMode);
    std::fprintf(stderr, " \n\rHDMI TX : DefaultAVIInfoFrame[0] = 0x%x", unsigned{frame[0]});
    std::fprintf(stderr, " \n\rHDMI TX : DefaultAVIInfoFrame[1] = 0x%x", unsigned{frame[1]});
    frame[3] = timing.Vic;
    LoadPacket(kAviPacket, kAviHeader, frame);
}

void SendAUDInfoFrame() {
    std::fputs(" \n\rHDMI TX : SendAUDInfoFrame()", stderr);
    LoadPacket(kAudioPacket, kAudioHeader, DefaultAUDInfoFrame);
}

std::uint8_t EnableInfoFrame(std::uint8_t code) {
    const unsigned control1 = HDTX_RegRead(HDTX_SLV1, kInfCtrl1);
    const unsigned control2 = HDTX_RegRead(HDTX_SLV1, kInfCtrl2);
    std::fputs(" \n\rHDMI TX : EnableInfoFrame(", stderr);
    switch (code) {
    case kAvi:
        std::fputs(" AVI InfoFram)", stderr);
        break;
    case kAudio:
        std::fputs(" AUD InfoFram)", stderr);
        break;
    case kSpd:
    case kMpeg:
        break;
    case kCode255:
        HDTX_RegWrite(HDTX_SLV1, kInfCtrl1, static_cast<std::uint8_t>(control1 & 0xEE));
        break;
    case kCode0:
        HDTX_RegWrite(HDTX_SLV1, kInfCtrl2, static_cast<std::uint8_t>(control2 | kSendCode0));
        return 0;
    default:
        return 1;
    }
    Control_INF_CTRL1(code);
    return 0;
}

void Control_INF_CTRL1(std::uint8_t code) {
    if (IsTXInHDMIMode() == 0) {
        HDTX_RegWrite(HDTX_SLV1, kInfCtrl1, 0); // a DVI sink accepts no data packets
        return;
    }
    WriteBits(HDTX_SLV1, kInfCtrl1, SendBitsOf(code), true);
    std::fprintf(stderr, " --> INF_CTRL1=0x%02X", unsigned{HDTX_RegRead(HDTX_SLV1, kInfCtrl1)});
}

void DisableInfoFrame() {
    std::fputs(" \n\rHDMI TX : DisableInfoFrame() ", stderr);
    WriteBits(HDTX_SLV1, kInfCtrl1, kSendAvi | kSendAudio, false);
}

void SendCP_Packet(std::uint8_t mute) {
    constexpr int kMostReads = 64;
    const unsigned control2 = HDTX_RegRead(HDTX_SLV1, kInfCtrl2);
    HDTX_RegWrite(HDTX_SLV1, kInfCtrl2, static_cast<std::uint8_t>(control2 & ~unsigned{kGeneralControlOn}));
    HDTX_RegWrite(HDTX_SLV1, kGeneralControl, mute != 0 ? kSetMute : kClearMute);
    for (int i = 0; i < kMostReads; ++i) {
        if (!AnyBit(HDTX_SLV1, kInfCtrl2, kGeneralControlOn)) {
            HDTX_RegWrite(HDTX_SLV1, kInfCtrl2,
                          static_cast<std::uint8_t>(control2 | kGeneralControlOn | kGeneralControlCompanion));
            return;
        }
    }
}
