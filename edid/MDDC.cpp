#include "edid/MDDC.h"

#include "edid/EDIDParse.h"
#include "hdmitx/hdmitx_i2c.h"

#include <array>

MDDCRequest TmpD{};

namespace {

// Page 0
constexpr std::uint8_t kAbortEnd = 0xEC;
constexpr std::uint8_t kRequest = 0xED; // first of the seven registers of an MDDCRequest
constexpr std::uint8_t kSegment = 0xEE;
constexpr std::uint8_t kStatus = 0xF2;
constexpr std::uint8_t kCommand = 0xF3;
constexpr std::uint8_t kFifo = 0xF4;

// Bits of kStatus
constexpr std::uint8_t kInProgress = 0x10;

// Values of kCommand
constexpr std::uint8_t kPrepare = 0x09;
constexpr std::uint8_t kRead = 0x02;
constexpr std::uint8_t kReadSegment = 0x04;
constexpr std::uint8_t kWrite = 0x06;
constexpr std::array<std::uint8_t, 2> kAbort{0x0F, 0x0A};

constexpr std::uint8_t kEdidDevice = 0xA0;
constexpr std::uint8_t kPollsBeyondCount = 10;

std::uint8_t Start(const MDDCRequest& request) {
    HDTX_RegWrite(HDTX_SLV0, kCommand, kPrepare);
    const std::array<std::uint8_t, 7> registers{request.deviceAddress, request.segment,   request.offset,
                                                request.countLow,      request.countHigh, request.status,
                                                request.command};
    return BlockWriteHDMITXP0(kRequest, registers.size(), registers.data());
}

// Reads the status until the transfer has ended. Returns false after a time-out. The loop needs no delay, because each
// read is a driver call and takes time.
bool Completes(const MDDCRequest& request) {
    auto budget = static_cast<std::uint8_t>(request.countLow + kPollsBeyondCount);
    while ((HDTX_RegRead(HDTX_SLV0, kStatus) & kInProgress) != 0) {
        if (budget == 0) {
            return false;
        }
        --budget;
    }
    return true;
}

void Abort() {
    for (const std::uint8_t command : kAbort) {
        HDTX_RegWrite(HDTX_SLV0, kCommand, command);
    }
    HDTX_RegWrite(HDTX_SLV0, kAbortEnd, 0x00);
}

std::uint8_t Finish(bool completed) {
    std::uint8_t state = HDTX_RegRead(HDTX_SLV0, kStatus);
    ConvertMDDCStateIntoErrCode(state);
    if (!completed || state != MDDC_DONE) {
        Abort();
    }
    return state;
}

// Clears the buffer pointer after a transfer, because the caller's buffer may no longer exist later.
std::uint8_t ReleaseBuffer(std::uint8_t result) {
    TmpD.data = nullptr;
    return result;
}

} // namespace

std::uint8_t BlockWriteHDMITXP0(std::uint8_t reg, std::uint8_t count, const std::uint8_t* data) {
    return HDTX_MultiWrite(HDTX_SLV0, reg, data, count);
}

std::uint8_t BlockReadHDMITXP0(std::uint8_t reg, std::uint8_t count, std::uint8_t* data) {
    return HDTX_MultiRead(HDTX_SLV0, reg, data, count);
}

void ConvertMDDCStateIntoErrCode(std::uint8_t& state) {
    if ((state & 0x40) != 0) {
        state = MDDC_ERROR_BIT6;
    } else if ((state & 0x20) != 0) {
        state = MDDC_ERROR_BIT5;
    } else if ((state & 0x08) != 0) {
        state = MDDC_ERROR_BIT3;
    } else {
        state = MDDC_DONE;
    }
}

std::uint8_t BlockRead_MDDC(MDDCRequest* request) {
    if (const std::uint8_t result = Start(*request); result != 0) {
        return result;
    }
    const bool completed = Completes(*request);
    if (completed) {
        if (const std::uint8_t result = BlockReadHDMITXP0(kFifo, request->countLow, request->data); result != 0) {
            return result;
        }
    }
    return Finish(completed);
}

std::uint8_t BlockWrite_MDDC(MDDCRequest* request) {
    if (const std::uint8_t result = Start(*request); result != 0) {
        return result;
    }
    if (const std::uint8_t result = BlockWriteHDMITXP0(kFifo, request->countLow, request->data); result != 0) {
        return result;
    }
    return Finish(Completes(*request));
}

namespace edid {

void SelectSegment(std::uint8_t segment) {
    HDTX_RegWrite(HDTX_SLV0, kSegment, segment);
    TmpD.segment = segment;
}

} // namespace edid

std::uint8_t BlockReadEDID(std::uint8_t count, std::uint8_t offset, std::uint8_t* buffer) {
    const std::uint8_t segment = HDTX_RegRead(HDTX_SLV0, kSegment);
    TmpD = {.deviceAddress = kEdidDevice,
            .segment = segment,
            .offset = offset,
            .countLow = count,
            .countHigh = 0,
            .status = 0,
            // Segment 0 is read without the segment pointer, because a monitor without segments may not support it.
            .command = segment != 0 ? kReadSegment : kRead,
            .data = buffer};
    return ReleaseBuffer(BlockRead_MDDC(&TmpD));
}

std::uint8_t BlockWriteEDID(std::uint8_t count, std::uint8_t offset, std::uint8_t* buffer) {
    TmpD = {.deviceAddress = kEdidDevice,
            .segment = 0,
            .offset = offset,
            .countLow = count,
            .countHigh = 0,
            .status = 0,
            .command = kWrite,
            .data = buffer};
    return ReleaseBuffer(BlockWrite_MDDC(&TmpD));
}
