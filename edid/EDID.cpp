// The order in which a sink's EDID is parsed, and the accessors of the results.

#include "edid/EDIDParse.h"

#include <algorithm>
#include <cstdio>

using namespace edid;

std::uint8_t gbExtensionBlockExist = 0;
std::uint8_t gbNativeVIC = 0;
std::uint8_t CEAOnFisrtPage = 0;

namespace {

// The result of a parse whose last request used another segment than 0.
constexpr std::uint8_t kWrongSegment = MDDC_ERROR_BIT6;

// The report prints this name. __FILE__ would be the path that the compiler was given.
constexpr const char* kFile = "EDID.cpp";

// A sink without an extension is a DVI sink. Only the timings of block 0 describe it.
std::uint8_t ParseWithoutExtension(EDIDParseResult* result) {
    result->ErrCode = EDID_ERR_NO_EXTENSION;
    const std::uint8_t transfer = ParseTimingDescriptors(&result->CRC16);
    gbExtensionBlockExist = 0;
    return transfer;
}

// Block 1 is parsed as a CEA block, whatever its tag is. The HDMI signature decides whether the sink is an HDMI sink.
std::uint8_t ParseOneExtension(EDIDParseResult* result) {
    std::uint8_t transfer = NewCheckHDMISignature(&result->ErrCode, &result->CRC16);
    if (result->ErrCode != 0) {
        return ParseTimingDescriptors(&result->CRC16);
    }
    if (transfer != 0) {
        return transfer;
    }
    result->OutMode = EDID_OUTMODE_HDMI;
    transfer = Parse861BExtension(&result->CRC16);
    if (transfer == 0) {
        SelectSegment(0);
    }
    return transfer;
}

// Parses the first block of a segment if it is a CEA block, and then checks the checksum of the second block. If the
// first block is not a CEA block, only its tag is read.
std::uint8_t ParseSegment(std::uint8_t segment, EDIDParseResult* result) {
    SelectSegment(segment);
    std::uint8_t isCEA = 0;
    std::uint8_t transfer = CheckFor861BExtensionOffset(&isCEA, 0, &result->CRC16);
    if (transfer != 0 || isCEA == 0) {
        return transfer;
    }
    transfer = CheckCRCof1stEDIDBlock(&result->ErrCode, &result->CRC16);
    if (Ends(transfer, result->ErrCode)) {
        return transfer;
    }
    CEAOnFisrtPage = 1;
    transfer = NewCheckHDMISignature(&result->ErrCode, &result->CRC16);
    if (Ends(transfer, result->ErrCode)) {
        return transfer;
    }
    result->OutMode = EDID_OUTMODE_HDMI;
    transfer = Parse861BExtension(&result->CRC16);
    if (transfer != 0) {
        return transfer;
    }
    CEAOnFisrtPage = 0;
    return CheckCRCof2ndEDIDBlock(&result->ErrCode, &result->CRC16);
}

// Parses the segments from 1 on, until a CEA block is found. Makes at most one pass more than there are extensions. The
// segment number has 8 bits, so the last of 256 passes uses segment 0.
std::uint8_t WalkSegments(std::uint8_t extensions, EDIDParseResult* result) {
    std::uint8_t segment = 1;
    for (unsigned pass = 0; pass < extensions + 1U; ++pass) {
        const std::uint8_t transfer = ParseSegment(segment, result);
        if (Ends(transfer, result->ErrCode) || result->OutMode == EDID_OUTMODE_HDMI) {
            return transfer;
        }
        ++segment;
    }
    return 0;
}

std::uint8_t ParseSeveralExtensions(std::uint8_t extensions, EDIDParseResult* result) {
    std::uint8_t transfer = GetBlockMapTAG(&result->ErrCode, &result->CRC16);
    if (!Ends(transfer, result->ErrCode)) {
        transfer = WalkSegments(extensions, result);
    }
    SelectSegment(0);
    return transfer;
}

std::uint8_t ParseSink(EDIDParseResult* result) {
    *result = {};
    std::uint8_t transfer = BasicParse(&result->ErrCode, &result->CRC16);
    if (Ends(transfer, result->ErrCode)) {
        return transfer;
    }
    std::uint8_t extensions = 0;
    transfer = CheckFor861BExtension(&extensions, &result->CRC16);
    if (transfer != 0) {
        return transfer;
    }
    if (extensions == 0) {
        return ParseWithoutExtension(result);
    }
    gbExtensionBlockExist = 1;
    std::fprintf(stderr, " \n\r[Read EDID] gbExtensionBlockExist = %d", gbExtensionBlockExist);
    transfer = CheckCRCof2ndEDIDBlock(&result->ErrCode, &result->CRC16);
    if (Ends(transfer, result->ErrCode)) {
        return transfer;
    }
    return extensions == 1 ? ParseOneExtension(result) : ParseSeveralExtensions(extensions, result);
}

} // namespace

std::uint8_t ParseEDID(EDIDParseResult* result) {
    CEAOnFisrtPage = 0;
    const std::uint8_t transfer = ParseSink(result);
    if (TmpD.segment == 0) {
        return transfer;
    }
    // The last request used another segment than 0. A failed read of the segment register can cause this: it gives
    // 0xFF, and the request then selects segment 0xFF. The result of this parse is therefore not valid. Segment 0 is
    // selected again, because every later parse would otherwise read the wrong segment too.
    SelectSegment(0);
    return transfer != 0 ? transfer : kWrongSegment;
}

std::uint8_t ReturnCECPhyAddr(std::uint16_t* address) {
    const bool known = gbExtensionBlockExist != 0 && gbVendorSpecificBlockExist != 0;
    *address = known ? gwCECPhysicalAddr : 0;
    return known ? 1 : 0;
}

void LoadSupportHDMIVideoOut(std::uint8_t* destination, std::uint8_t* count) {
    *count = EdidVFmtsCount;
    std::fprintf(stderr, "\n[%s(%s):%d] EdidVFmtsCount = %d \n", kFile, __func__, __LINE__, EdidVFmtsCount);
    std::copy_n(EdidVFmts.begin(), EdidVFmtsCount, destination);
}

std::uint8_t GetEDIDNativeVIC() {
    const std::uint8_t vic = gbNativeVIC & 0x7F;
    std::fprintf(stderr, " \n\r[Read EDID] GetEDIDNativeVIC() : %d", vic);
    return vic;
}

void GetNativeVIC(std::uint8_t* vic) { *vic = gbNativeVIC; }
